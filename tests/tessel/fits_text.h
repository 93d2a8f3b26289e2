#pragma once

#include <cstdint>
#include <fitsio.h>
#include <fstream>
#include <gtest/gtest.h>
#include <string>
#include <vector>

namespace pavane
{

inline void padTo2880(std::string& bytes, char with)
{
    bytes.resize((bytes.size() + 2879) / 2880 * 2880, with);
}

/// An HDU of the given cards and big-endian data, padded to whole blocks.
inline std::string hdu(const std::vector<std::string>& cards, std::string data)
{
    std::string bytes;
    for (std::string card : cards) {
        card.resize(80, ' ');
        bytes += card;
    }
    bytes += "END";
    padTo2880(bytes, ' ');
    padTo2880(data, '\0');
    return bytes + data;
}

inline std::vector<std::string> imageCards(int bitpix, const std::vector<int>& lengths,
                                           const std::vector<std::string>& more = {})
{
    std::vector<std::string> cards = {"SIMPLE  =                    T",
                                      "BITPIX  = " + std::to_string(bitpix),
                                      "NAXIS   = " + std::to_string(lengths.size())};
    for (std::size_t i = 0; i < lengths.size(); ++i)
        cards.push_back("NAXIS" + std::to_string(i + 1) + "  = " + std::to_string(lengths[i]));
    cards.insert(cards.end(), more.begin(), more.end());
    return cards;
}

/// `value` in `width` bytes, highest first.
inline std::string bigEndian(std::uint64_t value, int width)
{
    std::string bytes;
    for (int i = width - 1; i >= 0; --i)
        bytes += static_cast<char>(value >> (8 * i) & 255);
    return bytes;
}

inline std::string saved(const std::string& base, const std::string& bytes)
{
    const std::string name = testing::TempDir() + base;
    std::ofstream(name, std::ios::binary) << bytes;
    return name;
}

inline std::string contents(const std::string& name)
{
    std::ifstream file(name, std::ios::binary);
    return {std::istreambuf_iterator<char>(file), {}};
}

/// A file whose second HDU is a tile-compressed image of 30 rows x 40 columns, OBJECT M87: 16-bit
/// cells that count up from 0, with a BSCALE of 0.5.
inline std::string packedMap(int codec)
{
    const std::string name = testing::TempDir() + "packed.fits";
    std::remove(name.c_str());
    fitsfile* file = nullptr;
    int status = 0;
    long lengths[2] = {40, 30};
    double half = 0.5;
    char object[] = "M87";
    short cells[1200];
    for (short i = 0; i < 1200; ++i)
        cells[i] = i;
    fits_create_diskfile(&file, name.c_str(), &status);
    fits_set_compression_type(file, codec, &status);
    fits_create_img(file, SHORT_IMG, 2, lengths, &status);
    fits_write_img(file, TSHORT, 1, 1200, cells, &status);
    fits_write_key(file, TDOUBLE, "BSCALE", &half, nullptr, &status);
    fits_write_key(file, TSTRING, "OBJECT", object, nullptr, &status);
    fits_close_file(file, &status);
    EXPECT_EQ(status, 0);
    return contents(name);
}

}  // namespace pavane
