#include "pavane/measures/maps/regrid_map.h"

#include "pavane/axes/maps/map_unit.h"
#include "pavane/measures/maps/bicubic.h"
#include "pavane/measures/maps/MappedBlock.h"
#include "tessel/made_map.h"

#include <algorithm>
#include <cmath>
#include <limits>
#include <memory>
#include <new>

namespace pavane
{

namespace
{

constexpr float blank = std::numeric_limits<float>::quiet_NaN();
int lengthOf(const MapHeader& header, std::size_t axis)
{
    return axis < header.axes.size() ? header.axes[axis].length : 0;
}

/// The beam's angle in the frame of the grid, where the middle of the map lies.
void turnBeam(const SkyCoordinates& own, const SkyCoordinates& grid, MapHeader& header, int rows,
              int columns)
{
    double north = 0;
    if (!header.hasBeam || own.skyFrame() == grid.skyFrame() ||
        !CellMapping(own, grid).northOf((columns - 1) / 2.0, (rows - 1) / 2.0, north))
        return;
    header.bpa = std::remainder(header.bpa + north, 180.0);
}

/// Finds both places; 0, and why, without one.
int isPlaced(const MapHeader& header, const MapHeader& like, SkyCoordinates& own,
             SkyCoordinates& grid, std::string& error)
{
    if (!own.init(header, error))
        error.insert(0, "cannot be brought onto another grid: ");
    else if (!grid.init(like, error))
        error.insert(0, "cannot be brought onto a grid without a place on the sky: ");
    return error.empty();
}

struct Work {
    const AMatrix<float>& cells;
    const CellMapping& mapping;
    int perPixel;
};

void fillBlock(const Work& work, const MappedBlock& block, int row, int column, int rows,
               int columns, RegriddedMap& made)
{
    for (int r = 0; r < rows; ++r) {
        float* const to = made.cells.row(row + r) + column;
        for (int c = 0; c < columns; ++c) {
            float value = bicubicAt(work.cells, block.column(r, c), block.row(r, c));
            if (work.perPixel && std::isfinite(value))
                value = static_cast<float>(static_cast<double>(value) * block.area(r, c));
            made.known += std::isfinite(value);
            to[c] = std::isfinite(value) ? value : blank;
        }
    }
}

int fill(const Work& work, RegriddedMap& made, std::string& error, const ProgressFunction& progress)
{
    const std::unique_ptr<MappedBlock> block(new (std::nothrow) MappedBlock);
    if (!block) {
        error = "there is no memory for its cells";
        return 0;
    }
    const int allRows = made.cells.rows(), allColumns = made.cells.columns();
    for (int row = 0; row < allRows; row += MappedBlock::size)
        for (int column = 0; column < allColumns; column += MappedBlock::size) {
            if (progress &&
                !progress((row + static_cast<double>(column) / allColumns * MappedBlock::size) /
                          (allRows + MappedBlock::size))) {
                error = "the work was given up";
                return 0;
            }
            const int rows = std::min(MappedBlock::size, allRows - row);
            const int columns = std::min(MappedBlock::size, allColumns - column);
            block->map(work.mapping, row, column, rows, columns);
            fillBlock(work, *block, row, column, rows, columns, made);
        }
    return 1;
}

}  // namespace

int regridMap(const AMatrix<float>& cells, const MapHeader& header, const MapHeader& like,
              SkyShift moved, RegriddedMap& made, std::string& error,
              const ProgressFunction& progress)
{
    made = RegriddedMap();
    SkyCoordinates own, grid;
    if (!isPlaced(header, like, own, grid, error))
        return 0;
    const int rows = lengthOf(like, 1), columns = lengthOf(like, 0);
    made.cells = AMatrix<float>(rows, columns);
    if (!made.cells.rows()) {
        error = "there is no memory for its cells";
        return 0;
    }
    // what the grid has at a place comes from where the map has it without the shift
    const CellMapping mapping(grid, own, {-moved.east, -moved.north});
    made.header = headerOnGrid(header, like);
    turnBeam(own, grid, made.header, cells.rows(), cells.columns());
    const auto block = std::unique_ptr<MappedBlock>(new (std::nothrow) MappedBlock);
    double column = 0, row = 0;
    if (block &&
        CellMapping(own, grid).map((cells.columns() - 1) / 2.0, (cells.rows() - 1) / 2.0, column,
                                   row) &&
        std::fabs(column) < 1e9 && std::fabs(row) < 1e9) {
        block->map(mapping, static_cast<int>(column), static_cast<int>(row), 3, 3);
        if (const double area = block->area(1, 1); std::isfinite(area) && area > 0)
            made.area = area;
    }
    const Work work{cells, mapping, mapUnit(header.bunit).perPixel};
    if (!fill(work, made, error, progress))
        return 0;
    if (made.known)
        return 1;
    error =
        "has no cell with a value on the other map's grid: they show different parts of the sky";
    return 0;
}

int regridMask(const ABitMatrix& mask, const MapHeader& header, const MapHeader& like,
               ABitMatrix& made, std::string& error)
{
    SkyCoordinates own, grid;
    if (!isPlaced(header, like, own, grid, error))
        return 0;
    const std::unique_ptr<MappedBlock> block(new (std::nothrow) MappedBlock);
    made = ABitMatrix(lengthOf(like, 1), lengthOf(like, 0));
    if (!block || !made.rows()) {
        error = "there is no memory for a mask";
        return 0;
    }
    made.setAll(0);
    const CellMapping mapping(grid, own);
    for (int row = 0; row < made.rows(); row += MappedBlock::size)
        for (int column = 0; column < made.columns(); column += MappedBlock::size) {
            const int rows = std::min(MappedBlock::size, made.rows() - row);
            const int columns = std::min(MappedBlock::size, made.columns() - column);
            block->map(mapping, row, column, rows, columns);
            for (int r = 0; r < rows; ++r)
                for (int c = 0; c < columns; ++c) {
                    const double x = std::round(block->column(r, c));
                    const double y = std::round(block->row(r, c));
                    if (x >= 0 && x < mask.columns() && y >= 0 && y < mask.rows() &&
                        mask.get(static_cast<int>(y), static_cast<int>(x)))
                        made.set(row + r, column + c, 1);
                }
        }
    if (made.count())
        return 1;
    error = "has no cell of its areas on the other map";
    return 0;
}

int haveSameCells(const MapHeader& first, const MapHeader& second)
{
    constexpr double near = 0.01;
    const int columns = lengthOf(first, 0), rows = lengthOf(first, 1);
    if (columns != lengthOf(second, 0) || rows != lengthOf(second, 1) ||
        first.hasCelestialAxes != second.hasCelestialAxes)
        return 0;
    SkyCoordinates a, b;
    std::string none;
    const int isFirst = a.init(first, none), isSecond = b.init(second, none);
    if (isFirst != isSecond)
        return 0;
    if (!isFirst) {
        for (std::size_t i = 0; i < 2; ++i) {
            const MapAxis &x = first.axes[i], &y = second.axes[i];
            const double step = std::max({std::fabs(first.cd[i][0]), std::fabs(first.cd[i][1])});
            if (x.ctype != y.ctype || std::fabs(x.crval - y.crval) > near * step ||
                std::fabs(x.crpix - y.crpix) > near)
                return 0;
            for (std::size_t j = 0; j < 2; ++j)
                if (std::fabs(first.cd[i][j] - second.cd[i][j]) * std::max(columns, rows) >
                    near * step)
                    return 0;
        }
        return 1;
    }
    const CellMapping mapping(a, b);
    int compared = 0;
    for (const auto& [x, y] : {std::pair(0.0, 0.0), std::pair(1.0, 0.0), std::pair(0.0, 1.0),
                               std::pair(1.0, 1.0), std::pair(0.5, 0.5), std::pair(0.45, 0.6)}) {
        const double column = std::round(x * (columns - 1)), row = std::round(y * (rows - 1));
        double toColumn = 0, toRow = 0, l = 0, p = 0;
        if (!mapping.map(column, row, toColumn, toRow)) {
            if (a.toSky(column, row, l, p))
                return 0;
            continue;
        }
        if (std::hypot(toColumn - column, toRow - row) > near)
            return 0;
        ++compared;
    }
    return compared > 0;
}

}  // namespace pavane
