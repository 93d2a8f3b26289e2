#include "tessel/fits_cards.h"
#include "tessel/fits_handle.h"
#include "tessel/fits_map.h"
#include "tessel/SafeFile.h"

#include <algorithm>
#include <vector>

namespace pavane
{

namespace
{

constexpr int maskAxes = 4;

int createImage(FitsHandle& fits, const std::string& name, int rows, int columns)
{
    LONGLONG lengths[maskAxes] = {columns, rows, 1, 1};
    fits_create_diskfile(&fits.file, FitsHandle::plainName(name).c_str(), &fits.status);
    fits_create_imgll(fits.file, FLOAT_IMG, maskAxes, lengths, &fits.status);
    return fits.status == 0;
}

void writeCards(FitsHandle& fits, const std::vector<std::string>& cards)
{
    for (const std::string& card : cards)
        fits_write_record(fits.file, card.c_str(), &fits.status);
}

void writeRow(FitsHandle& fits, int row, int columns, float* cells)
{
    LONGLONG pixel[maskAxes] = {1, row + 1, 1, 1};
    fits_write_pixll(fits.file, TFLOAT, pixel, columns, cells, &fits.status);
}

/// Writes an image through a temporary name; `fillRow(r, cells)` gives the cells of a row.
template <typename FillRow>
int writeImage(const std::string& name, int rows, int columns,
               const std::vector<std::string>& cards, FillRow fillRow, std::string& error)
{
    error.clear();
    if (rows < 1 || columns < 1) {
        error = "there is nothing to write";
        return 0;
    }
    SafeFile safe;
    FitsHandle fits;
    if (!safe.prepare(name) || !createImage(fits, safe.temporaryName(), rows, columns)) {
        error = "cannot be created";
        return 0;
    }
    writeCards(fits, cards);
    std::vector<float> cells(static_cast<std::size_t>(columns));
    for (int r = 0; r < rows && !fits.status; ++r) {
        fillRow(r, cells.data());
        writeRow(fits, r, columns, cells.data());
    }
    const int written = fits.status == 0;
    if (!fits.close() || !written || !safe.commit()) {
        error = "cannot be written whole";
        return 0;
    }
    return 1;
}

}  // namespace

int writeFitsMask(const std::string& file, const ABitMatrix& mask, const MapHeader& like,
                  std::string& error)
{
    const auto fillRow = [&](int r, float* cells) {
        for (int c = 0; c < mask.columns(); ++c)
            cells[c] = static_cast<float>(mask.get(r, c));
    };
    return writeImage(file, mask.rows(), mask.columns(), coordinateCards(like), fillRow, error);
}

int writeFitsMap(const std::string& file, const AMatrix<float>& cells, const MapHeader& header,
                 std::string& error)
{
    std::vector<std::string> cards = coordinateCards(header);
    appendMapCards(header, cards);
    const auto fillRow = [&](int r, float* row) {
        std::copy_n(cells.row(r), cells.columns(), row);
    };
    return writeImage(file, cells.rows(), cells.columns(), cards, fillRow, error);
}

}  // namespace pavane
