#include "tessel/fits_map.h"

#include "tessel/fits_hdus.h"
#include "tessel/FitsMapReader.h"

#include <algorithm>
#include <cstdint>
#include <utility>

namespace pavane
{

namespace
{

/// Cells read at a time: large enough to be quick, small enough to cancel and to show progress.
constexpr std::int64_t blockCells = 1 << 18;

int readCells(FitsMapReader& reader, FitsMap& map, std::string& error,
              const ProgressFunction& progress)
{
    const int rows = reader.rows(), columns = reader.columns();
    const int hasRoom = map.cells.rows() == rows && map.cells.columns() == columns;
    if (!hasRoom && !map.cells.allocate(rows, columns)) {
        error = "there is no memory for its " + std::to_string(columns) + " x " +
                std::to_string(rows) + " cells";
        return 0;
    }
    const int blockRows = static_cast<int>(std::max<std::int64_t>(blockCells / columns, 1));
    int some = 0;
    for (int row = 0; row < rows; row += some) {
        some = std::min(blockRows, rows - row);
        if (!reader.read(row, some, map.cells.row(row), error))
            return 0;
        if (progress && !progress(double(row + some) / rows)) {
            error = readingGivenUp;
            return 0;
        }
    }
    map.header = reader.header();
    return 1;
}

}  // namespace

int readFitsMap(const std::string& file, int plane, FitsMap& map, std::string& error,
                const ProgressFunction& progress)
{
    AMatrix<float> room = std::move(map.cells);  // of a map of the same size, to be used again
    map = FitsMap();
    map.cells = std::move(room);
    error.clear();
    FitsMapReader reader;
    if (reader.open(file, plane, error) && readCells(reader, map, error, progress)) {
        error.clear();
        return 1;
    }
    map = FitsMap();
    return 0;
}

}  // namespace pavane
