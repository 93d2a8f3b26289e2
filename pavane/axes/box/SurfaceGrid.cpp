#include "pavane/axes/box/SurfaceGrid.h"

#include "pavane/axes/maps/cells/pixel_cells.h"

#include <algorithm>
#include <cmath>
#include <limits>

namespace pavane
{

namespace
{

constexpr float noHeight = std::numeric_limits<float>::quiet_NaN();
constexpr float infinity = std::numeric_limits<float>::infinity();

/// A surface is drawn from this width on, as a share of the box: the map of a range that reaches
/// far beyond it is but a line.
constexpr double narrowest = 1e-6;

/// The part of a direction that the map has.
CellSpan cut(int first, int count, int cells)
{
    if (count < 1)
        return {0, cells};
    const int begin = std::clamp(first, 0, cells);
    const auto end = std::min(std::int64_t{first} + count, std::int64_t{cells});
    return {begin, std::max(begin, static_cast<int>(end))};
}

/// Heights of a row of values. Most surfaces are linear, and their cells are many.
void putHeights(const float* values, int count, const MapScale& scale, double floor, double rise,
                float* heights)
{
    const bool linear = scale.kind() == MapScaleKind::linear;
    const double low = scale.low() / 2;
    const double size = 1 / (scale.high() / 2 - low);
    for (int i = 0; i < count; ++i) {
        const auto value = static_cast<double>(values[i]);
        const double position =
            linear ? std::clamp((value / 2 - low) * size, 0.0, 1.0) : scale.position(value);
        heights[i] = value - value == 0 ? static_cast<float>(floor + rise * position) : noHeight;
    }
}

void widen(HeightBlocks::Range& range, const HeightBlocks::Range& other)
{
    range.least = std::min(range.least, other.least);
    range.greatest = std::max(range.greatest, other.greatest);
}

}  // namespace

int HeightBlocks::build(const AMatrix<float>& heights)
{
    levels_.clear();
    int columns = heights.columns() - 1, rows = heights.rows() - 1;
    if (columns < 1 || rows < 1)
        return 1;
    constexpr int size = 1 << firstShift;
    columns = (columns + size - 1) / size;
    rows = (rows + size - 1) / size;
    AMatrix<Range> blocks(rows, columns);
    if (blocks.cells() < 1)
        return 0;
    blocks.fill({infinity, -infinity});
    for (int r = 0; r < heights.rows(); ++r) {
        const float* row = heights.row(r);
        // a row of centres on a border of blocks belongs to those on both sides
        for (int b = std::max(0, (r - 1) / size); b <= std::min(r / size, rows - 1); ++b)
            for (int k = 0; k < columns; ++k) {
                Range& range = blocks(b, k);
                const int end = std::min(k * size + size, heights.columns() - 1);
                for (int c = k * size; c <= end; ++c) {
                    range.least = row[c] < range.least ? row[c] : range.least;
                    range.greatest = row[c] > range.greatest ? row[c] : range.greatest;
                }
            }
    }
    levels_.push_back(std::move(blocks));
    while (columns > 1 || rows > 1) {
        columns = (columns + 1) / 2;
        rows = (rows + 1) / 2;
        AMatrix<Range> wider(rows, columns);
        if (wider.cells() < 1)
            return 0;
        wider.fill({infinity, -infinity});
        const AMatrix<Range>& narrow = levels_.back();
        for (int r = 0; r < narrow.rows(); ++r)
            for (int c = 0; c < narrow.columns(); ++c)
                widen(wider(r / 2, c / 2), narrow(r, c));
        levels_.push_back(std::move(wider));
    }
    return 1;
}

int SurfaceGrid::set(const AMatrixAccess& cells, const MapScale& scale, const SurfacePlace& place,
                     const CellPart& part)
{
    clear();
    const CellSpan shownColumns = cut(part.firstColumn, part.columns, cells.columns());
    const CellSpan shownRows = cut(part.firstRow, part.rows, cells.rows());
    const int across = shownColumns.end - shownColumns.first, up = shownRows.end - shownRows.first;
    const double ends = place.firstP + place.lastP + place.firstQ + place.lastQ;
    const bool isLine = (across > 1 && !(std::fabs(place.lastP - place.firstP) >= narrowest)) ||
                        (up > 1 && !(std::fabs(place.lastQ - place.firstQ) >= narrowest));
    if (across < 1 || up < 1 || isLine ||
        !std::isfinite(ends + place.floor + place.top + place.below) ||
        !heights_.allocate(up, across))
        return 0;
    RowReader reader(cells);
    for (int r = 0; r < up; ++r) {
        const float* values = reader.row(shownRows.first + r);
        if (!values)
            return clear(), 0;
        putHeights(values + shownColumns.first, across, scale, place.floor, place.top - place.floor,
                   heights_.row(r));
    }
    firstP_ = place.firstP;
    firstQ_ = place.firstQ;
    stepP_ = across > 1 ? (place.lastP - place.firstP) / (across - 1) : 0;
    stepQ_ = up > 1 ? (place.lastQ - place.firstQ) / (up - 1) : 0;
    floor_ = place.floor - place.below;
    mapColumns_ = static_cast<std::uint32_t>(cells.columns());
    firstCell_ = static_cast<std::uint32_t>(shownRows.first) * mapColumns_ +
                 static_cast<std::uint32_t>(shownColumns.first);
    return finish();
}

int SurfaceGrid::setBlocks(const SurfaceGrid& fine, int blockColumns, int blockRows)
{
    clear();
    if (fine.isEmpty())
        return 0;
    // two blocks of a direction at least, or there would be no surface
    const int width = std::clamp(blockColumns, 1, std::max(1, (fine.columns() + 1) / 2));
    const int height = std::clamp(blockRows, 1, std::max(1, (fine.rows() + 1) / 2));
    const int across = (fine.columns() + width - 1) / width;
    const int up = (fine.rows() + height - 1) / height;
    if (!heights_.allocate(up, across) || !cells_.allocate(up, across))
        return clear(), 0;
    heights_.fill(noHeight);
    cells_.fill(0);
    for (int r = 0; r < fine.rows(); ++r) {
        const float* from = fine.heights_.row(r);
        float* to = heights_.row(r / height);
        std::uint32_t* numbers = cells_.row(r / height);
        for (int b = 0; b < across; ++b)
            for (int c = b * width; c < std::min(b * width + width, fine.columns()); ++c)
                if (from[c] > to[b] || (to[b] != to[b] && from[c] == from[c])) {
                    to[b] = from[c];
                    numbers[b] = fine.cell(c, r);
                }
    }
    firstP_ = fine.firstP_;
    firstQ_ = fine.firstQ_;
    stepP_ = across > 1 ? fine.stepP_ * (fine.columns() - 1) / (across - 1) : 0;
    stepQ_ = up > 1 ? fine.stepQ_ * (fine.rows() - 1) / (up - 1) : 0;
    floor_ = fine.floor_;
    mapColumns_ = fine.mapColumns_;
    return finish();
}

int SurfaceGrid::finish()
{
    const float* height = heights_.data();
    hasBlanks_ = std::any_of(height, height + heights_.cells(), [](float h) { return h != h; });
    if (!blocks_.build(heights_))
        return clear(), 0;
    return 1;
}

double SurfaceGrid::heightAt(double column, double row) const
{
    if (!(column >= 0) || !(row >= 0) || !(column <= columns() - 1) || !(row <= rows() - 1))
        return std::numeric_limits<double>::quiet_NaN();
    const int c = std::max(0, std::min(static_cast<int>(column), columns() - 2));
    const int r = std::max(0, std::min(static_cast<int>(row), rows() - 2));
    const int right = std::min(c + 1, columns() - 1), up = std::min(r + 1, rows() - 1);
    const double x = column - c, y = row - r;
    const double side = x >= y ? height(right, r) : height(c, up);
    const double parts[] = {1 - std::max(x, y), std::fabs(x - y), std::min(x, y)};
    const double heights[] = {height(c, r), side, height(right, up)};
    double sum = 0;
    // a blank corner does not count for a place on the side opposite it
    for (int k = 0; k < 3; ++k)
        sum += parts[k] != 0 ? parts[k] * heights[k] : 0;
    return sum;
}

}  // namespace pavane
