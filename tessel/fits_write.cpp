#include "tessel/fits_cards.h"
#include "tessel/fits_map.h"
#include "tessel/SafeFile.h"

#include <algorithm>
#include <bit>
#include <cstdint>
#include <vector>

namespace pavane
{

namespace
{

// An image of four axes needs none of what CFITSIO knows beyond this, and CFITSIO makes files only
// by names, where a file that is to be whole or nothing has none yet.

constexpr std::size_t cardBytes = 80;
constexpr std::size_t blockBytes = 2880;

std::string numberCard(const std::string& key, int value)
{
    const std::string text = std::to_string(value);
    return key + std::string(8 - key.size(), ' ') + "= " + std::string(20 - text.size(), ' ') +
           text;
}

std::string headerText(int rows, int columns, const std::vector<std::string>& cards)
{
    std::vector<std::string> all = {"SIMPLE  =                    T", numberCard("BITPIX", -32),
                                    numberCard("NAXIS", 4),           numberCard("NAXIS1", columns),
                                    numberCard("NAXIS2", rows),       numberCard("NAXIS3", 1),
                                    numberCard("NAXIS4", 1)};
    all.insert(all.end(), cards.begin(), cards.end());
    all.emplace_back("END");
    std::string text;
    for (std::string& card : all) {
        card.resize(cardBytes, ' ');
        text += card;
    }
    text.resize((text.size() + blockBytes - 1) / blockBytes * blockBytes, ' ');
    return text;
}

/// The bytes of cells in the order of the format, most significant first.
void toFileOrder(const float* cells, std::vector<std::uint32_t>& stored)
{
    for (std::size_t i = 0; i < stored.size(); ++i) {
        const auto bits = std::bit_cast<std::uint32_t>(cells[i]);
        stored[i] = std::endian::native == std::endian::little ? __builtin_bswap32(bits) : bits;
    }
}

/// Writes an image whole or not at all; `fillRow(r, cells)` gives the cells of a row.
template <typename FillRow>
int writeImage(const std::string& name, int rows, int columns,
               const std::vector<std::string>& cards, FillRow fillRow, std::string& error,
               const ProgressFunction& progress)
{
    error.clear();
    if (rows < 1 || columns < 1) {
        error = "there is nothing to write";
        return 0;
    }
    SafeFile safe;
    if (!safe.open(name)) {
        error = safe.fault();
        return 0;
    }
    const auto write = [&](const void* bytes, std::size_t count) {
        return safe.file().write(bytes, static_cast<std::int64_t>(count));
    };
    const std::string header = headerText(rows, columns, cards);
    int written = write(header.data(), header.size());
    std::vector<float> cells(static_cast<std::size_t>(columns));
    std::vector<std::uint32_t> stored(cells.size());
    const std::size_t rowBytes = stored.size() * sizeof(stored[0]);
    for (int r = 0; r < rows && written; ++r) {
        if (progress && !progress(static_cast<double>(r) / rows)) {
            error = writingGivenUp;
            return 0;
        }
        fillRow(r, cells.data());
        toFileOrder(cells.data(), stored);
        written = write(stored.data(), rowBytes);
    }
    const std::size_t last = rowBytes % blockBytes * (static_cast<std::size_t>(rows) % blockBytes);
    const std::string padding((blockBytes - last % blockBytes) % blockBytes, '\0');
    if (!written || !write(padding.data(), padding.size()) || !safe.commit()) {
        error = safe.fault();
        return 0;
    }
    return 1;
}

}  // namespace

int writeFitsMask(const std::string& file, const ABitMatrix& mask, const MapHeader& like,
                  std::string& error, const ProgressFunction& progress)
{
    const auto fillRow = [&](int r, float* cells) {
        for (int c = 0; c < mask.columns(); ++c)
            cells[c] = static_cast<float>(mask.get(r, c));
    };
    return writeImage(file, mask.rows(), mask.columns(), coordinateCards(like), fillRow, error,
                      progress);
}

int writeFitsMap(const std::string& file, const AMatrix<float>& cells, const MapHeader& header,
                 std::string& error, const ProgressFunction& progress)
{
    std::vector<std::string> cards = coordinateCards(header);
    appendMapCards(header, cards);
    const auto fillRow = [&](int r, float* row) {
        std::copy_n(cells.row(r), cells.columns(), row);
    };
    return writeImage(file, cells.rows(), cells.columns(), cards, fillRow, error, progress);
}

}  // namespace pavane
