#include "pavane/tables/components/CellSink.h"

#include "tessel/rounding.h"

#include <algorithm>
#include <cmath>

namespace pavane
{

namespace
{

/// Size of a cell between the centres of `cells` cells; a single one is as wide as the range.
double stepOf(double first, double last, int cells)
{
    return cells > 1 ? (last - first) / (cells - 1) : last - first;
}

}  // namespace

MapGrid::MapGrid(const AMatrix<float>& map, const TMinMax& range, const StopFlag* stop)
    : stop(stop), rows(map.rows()), columns(map.columns()), x(range.xMin), y(range.yMin),
      dx(stepOf(range.xMin, range.xMax, columns)), dy(stepOf(range.yMin, range.yMax, rows))
{
    if (columns == 1 && dx == 0)
        dx = dy;
    if (rows == 1 && dy == 0)
        dy = dx;
    const bool set = !(range.xMin == unsetMinimum && range.xMax == unsetMaximum) &&
                     !(range.yMin == unsetMinimum && range.yMax == unsetMaximum);
    usable = set && map.cells() > 0 && std::isfinite(x) && std::isfinite(y) && std::isfinite(dx) &&
             std::isfinite(dy) && dx != 0 && dy != 0;
}

CellSink::CellSink(AMatrix<float>& map, const MapGrid& grid, int rows, int columns)
    : map_(map), grid_(grid), window_(std::min(rows, grid.rows), std::min(columns, grid.columns))
{
    window_.fill(0);
}

void CellSink::add(double x, double y, double flux)
{
    const double atColumn = (x - grid_.x) / grid_.dx;
    const double atRow = (y - grid_.y) / grid_.dy;
    const bool inside = atColumn >= -0.5 && atColumn <= grid_.columns - 0.5 && atRow >= -0.5 &&
                        atRow <= grid_.rows - 0.5;
    if (!inside || !window_.cells())
        return;
    const double column = std::clamp(atColumn, 0.0, grid_.columns - 1.0);
    const double row = std::clamp(atRow, 0.0, grid_.rows - 1.0);
    const int c = truncated(column);
    const int r = truncated(row);
    const int nextC = std::min(c + 1, grid_.columns - 1);
    const int nextR = std::min(r + 1, grid_.rows - 1);
    if (r < row_ || nextR >= row_ + window_.rows() || c < column_ ||
        nextC >= column_ + window_.columns())
        moveTo(r, c);
    const double right = column - c;
    const double up = row - r;
    double* const low = window_.row(r - row_) - column_;
    double* const high = window_.row(nextR - row_) - column_;
    low[c] += flux * (1 - right) * (1 - up);
    low[nextC] += flux * right * (1 - up);
    high[c] += flux * (1 - right) * up;
    high[nextC] += flux * right * up;
    firstRow_ = std::min(firstRow_, r - row_);
    rowEnd_ = std::max(rowEnd_, nextR - row_ + 1);
    firstColumn_ = std::min(firstColumn_, c - column_);
    columnEnd_ = std::max(columnEnd_, nextC - column_ + 1);
}

void CellSink::flush()
{
    for (int r = firstRow_; r < rowEnd_; ++r) {
        double* const from = window_.row(r);
        float* const to = map_.row(row_ + r) + column_;
        for (int c = firstColumn_; c < columnEnd_; ++c) {
            to[c] = static_cast<float>(to[c] + from[c]);
            from[c] = 0;
        }
    }
}

void CellSink::moveTo(int row, int column)
{
    flush();
    row_ = std::clamp(row - (window_.rows() - 1) / 2, 0, grid_.rows - window_.rows());
    column_ =
        std::clamp(column - (window_.columns() - 1) / 2, 0, grid_.columns - window_.columns());
    firstRow_ = window_.rows();
    firstColumn_ = window_.columns();
    rowEnd_ = columnEnd_ = 0;
}

}  // namespace pavane
