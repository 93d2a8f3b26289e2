#include "pavane/measures/maps/regrid_map.h"

#include "pavane/axes/maps/map_unit.h"
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
/// Places nearer to a centre are on it, in cells: positions round by about that.
constexpr double onCentre = 1e-5;

/// The four cells about a place along one axis, and what each counts.
struct Taps {
    int first = 0;
    double weights[4] = {};

    explicit Taps(double at)
    {
        const double whole = std::floor(at);
        const double nearest = std::round(at);
        if (std::fabs(at - nearest) < onCentre) {
            first = static_cast<int>(nearest) - 1;
            weights[1] = 1;
            return;
        }
        first = static_cast<int>(whole) - 1;
        const double t = at - whole;
        weights[0] = t * (t * (1 - t / 2) - 0.5);
        weights[1] = t * t * (1.5 * t - 2.5) + 1;
        weights[2] = t * (t * (2 - 1.5 * t) + 0.5);
        weights[3] = t * t * (t / 2 - 0.5);
    }
};

float interpolated(const AMatrix<float>& cells, double column, double row)
{
    // also what is no number
    if (!(column > -1 && column < cells.columns() && row > -1 && row < cells.rows()))
        return blank;
    const Taps x(column), y(row);
    double sum = 0;
    for (int j = 0; j < 4; ++j) {
        if (y.weights[j] == 0)
            continue;
        const int r = y.first + j;
        if (r < 0 || r >= cells.rows())
            return blank;
        double along = 0;
        for (int i = 0; i < 4; ++i) {
            if (x.weights[i] == 0)
                continue;
            const int c = x.first + i;
            if (c < 0 || c >= cells.columns())
                return blank;
            along += x.weights[i] * static_cast<double>(cells(r, c));
        }
        sum += y.weights[j] * along;
    }
    return std::isfinite(sum) ? static_cast<float>(sum) : blank;
}

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
            float value = interpolated(work.cells, block.column(r, c), block.row(r, c));
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
    if (!own.init(header, error)) {
        error.insert(0, "cannot be brought onto another grid: ");
        return 0;
    }
    if (!grid.init(like, error)) {
        error.insert(0, "cannot be brought onto a grid without a place on the sky: ");
        return 0;
    }
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
