#include "tessel/fits_map.h"
#include "tessel/FitsMapWriter.h"
#include "tessel/made_map.h"
#include "tessel/SafeFile.h"

#include <algorithm>
#include <cmath>
#include <vector>

namespace pavane
{

namespace
{

/// Writes an image whole or not at all; `rowOf(r)` gives the cells of a row.
template <typename RowOf>
int writeImage(const std::string& name, int rows, int columns, const MapHeader& like, int isMap,
               RowOf rowOf, std::string& error, const ProgressFunction& progress,
               const std::vector<std::string>& history = {})
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
    FitsMapWriter writer;
    int written = writer.begin(safe.file(), rows, columns, like, isMap, history);
    for (int r = 0; r < rows && written; ++r) {
        if (progress && !progress(static_cast<double>(r) / rows)) {
            error = writingGivenUp;
            return 0;
        }
        const float* const cells = rowOf(r);
        if (!cells)
            return 0;  // who has the rows told why
        written = writer.write(cells);
    }
    if (!written || !writer.finish() || !safe.commit()) {
        error = safe.fault();
        return 0;
    }
    return 1;
}

}  // namespace

void fillMaskRow(const ABitMatrix& mask, int row, float* cells)
{
    for (int c = 0; c < mask.columns(); ++c)
        cells[c] = static_cast<float>(mask.get(row, c));
}

int writeFitsMask(const std::string& file, const ABitMatrix& mask, const MapHeader& like,
                  std::string& error, const ProgressFunction& progress)
{
    std::vector<float> cells(static_cast<std::size_t>(mask.columns()));
    const auto rowOf = [&](int r) {
        fillMaskRow(mask, r, cells.data());
        return cells.data();
    };
    return writeImage(file, mask.rows(), mask.columns(), like, 0, rowOf, error, progress);
}

int writeFitsMap(const std::string& file, const AMatrix<float>& cells, const MapHeader& header,
                 std::string& error, const ProgressFunction& progress)
{
    return writeImage(
        file, cells.rows(), cells.columns(), header, 1, [&](int r) { return cells.row(r); }, error,
        progress);
}

int writeMadeMap(const std::string& file, const AMatrix<float>& cells, const MapHeader& header,
                 const std::vector<std::string>& history, std::string& error,
                 const ProgressFunction& progress)
{
    int isBlank = 1;
    for (int r = 0; r < cells.rows() && isBlank; ++r)
        isBlank = std::none_of(cells.row(r), cells.row(r) + cells.columns(),
                               [](float value) { return std::isfinite(value); });
    if (isBlank) {
        error = "would have no cell with a value: it is not written";
        return 0;
    }
    return writeImage(
        file, cells.rows(), cells.columns(), header, 1, [&](int r) { return cells.row(r); }, error,
        progress, history);
}

int writeMadeRows(const std::string& file, int rows, int columns, const MapHeader& header,
                  const std::vector<std::string>& history, const RowFunction& rowOf,
                  std::string& error, const ProgressFunction& progress)
{
    return writeImage(
        file, rows, columns, header, 1, [&](int r) { return rowOf(r, error); }, error, progress,
        history);
}

}  // namespace pavane
