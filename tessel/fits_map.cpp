#include "tessel/fits_map.h"

#include "tessel/AFile.h"
#include "tessel/beam_table.h"
#include "tessel/fits_hdus.h"
#include "tessel/fits_header.h"
#include "tessel/fits_planes.h"
#include "tessel/fits_scan.h"

#include <algorithm>
#include <cmath>
#include <limits>
#include <memory>
#include <utility>
#include <vector>

namespace pavane
{

namespace
{

/// Cells read at a time: large enough to be quick, small enough to cancel and to show progress.
constexpr std::int64_t blockCells = 1 << 20;

int checkPlane(const FitsImage& image, int& plane, std::string& error)
{
    const std::int64_t planes = cellCount(image.lengths, 2);
    if (planes > std::numeric_limits<int>::max()) {
        error = "has more planes than can be counted";
        return 0;
    }
    if (plane < 0 && planes > 1) {
        error = "has " + std::to_string(planes) + " planes; choose one";
        return 0;
    }
    plane = std::max(plane, 0);
    if (plane >= planes) {
        error = "has no plane " + std::to_string(plane) + ": there are " + std::to_string(planes) +
                ", counted from 0";
        return 0;
    }
    return 1;
}

int readPlane(PlaneReader& reader, const FitsImage& image, FitsMap& map, std::string& error,
              const ProgressFunction& progress)
{
    const int rows = static_cast<int>(image.lengths[1]);
    const int columns = static_cast<int>(image.lengths[0]);
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
        if (!reader.read(row, some, map.cells.row(row))) {
            error = "has an image that cannot be read whole";
            return 0;
        }
        if (progress && !progress(double(row + some) / rows)) {
            error = readingGivenUp;
            return 0;
        }
    }
    return 1;
}

int readOpened(AFile& file, const FitsImage& image, int plane, FitsMap& map, std::string& error,
               const ProgressFunction& progress)
{
    HeaderCards header;
    if (!header.read(file, image.headerStart, image.dataStart)) {
        error = "has a header that cannot be read";
        return 0;
    }
    map.header = readMapHeader(header, image.lengths, plane);
    map.header.planes = static_cast<int>(cellCount(image.lengths, 2));
    const std::unique_ptr<PlaneReader> reader = planeReader(file, header, image, plane, error);
    if (!reader)
        return 0;
    if (!readPlane(*reader, image, map, error, progress))
        return 0;
    if (header.text("CASAMBM") == "T")
        (void)readTableBeam(file, map.header);
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
    AFile opened;
    FitsImage image;
    if (openFits(file, opened, error) && scanForImage(opened, image, error) &&
        checkPlane(image, plane, error) && readOpened(opened, image, plane, map, error, progress)) {
        error.clear();
        return 1;
    }
    map = FitsMap();
    return 0;
}

}  // namespace pavane
