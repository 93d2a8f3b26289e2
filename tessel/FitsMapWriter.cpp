#include "tessel/FitsMapWriter.h"

#include "posix/plain_file.h"
#include "tessel/fits_cards.h"

#include <bit>
#include <cerrno>

namespace pavane
{

namespace
{

// An image of four axes needs none of what CFITSIO knows beyond this, and CFITSIO makes files only
// by names, where a file that is to be whole or nothing has none yet.

constexpr std::size_t cardBytes = 80;
constexpr std::int64_t blockBytes = 2880;

std::string numberCard(const std::string& key, int value)
{
    const std::string text = std::to_string(value);
    return key + std::string(8 - key.size(), ' ') + "= " + std::string(20 - text.size(), ' ') +
           text;
}

std::string headerText(const std::vector<int>& lengths, const std::vector<std::string>& cards)
{
    std::vector<std::string> all = {"SIMPLE  =                    T", numberCard("BITPIX", -32),
                                    numberCard("NAXIS", static_cast<int>(lengths.size()))};
    for (std::size_t i = 0; i < lengths.size(); ++i)
        all.push_back(numberCard("NAXIS" + std::to_string(i + 1), lengths[i]));
    all.insert(all.end(), cards.begin(), cards.end());
    all.emplace_back("END");
    std::string text;
    for (std::string& card : all) {
        card.resize(cardBytes, ' ');
        text += card;
    }
    constexpr std::size_t block = blockBytes;
    text.resize((text.size() + block - 1) / block * block, ' ');
    return text;
}

}  // namespace

int FitsMapWriter::begin(AFile& file, int rows, int columns, const MapHeader& like, int isMap,
                         const std::vector<std::string>& history)
{
    std::vector<std::string> cards = coordinateCards(like);
    if (isMap)
        appendMapCards(like, cards);
    for (const std::string& line : history)
        appendHistory(line, cards);
    return begin(file, {columns, rows, 1, 1}, cards);
}

int FitsMapWriter::begin(AFile& file, const std::vector<int>& lengths,
                         const std::vector<std::string>& cards)
{
    file_ = &file;
    bytes_ = 0;
    stored_.resize(static_cast<std::size_t>(lengths.front()));
    const std::string header = headerText(lengths, cards);
    return file.write(header.data(), static_cast<std::int64_t>(header.size()));
}

int FitsMapWriter::write(const float* cells)
{
    // the most significant byte first
    for (std::size_t i = 0; i < stored_.size(); ++i) {
        const auto bits = std::bit_cast<std::uint32_t>(cells[i]);
        stored_[i] = std::endian::native == std::endian::little ? __builtin_bswap32(bits) : bits;
    }
    const auto bytes = static_cast<std::int64_t>(stored_.size() * sizeof stored_[0]);
    bytes_ += bytes;
    return file_->write(stored_.data(), bytes);
}

int FitsMapWriter::finish()
{
    const std::string padding(
        static_cast<std::size_t>((blockBytes - bytes_ % blockBytes) % blockBytes), '\0');
    return file_->write(padding.data(), static_cast<std::int64_t>(padding.size()));
}

std::string FitsMapWriter::fault() const { return systemFault("cannot be written", errno); }

}  // namespace pavane
