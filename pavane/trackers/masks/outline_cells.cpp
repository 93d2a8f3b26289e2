#include "pavane/trackers/masks/outline_cells.h"

#include "tessel/rounding.h"

#include <algorithm>
#include <cmath>

namespace pavane
{

namespace
{

constexpr int pointsPerCell = 8;
constexpr int fewestPoints = 16;
constexpr int quarters = 4;
/// What is half a cell but for rounding is half a cell: else a mask would depend on the order of
/// sums, and an area that went through a file come back with other cells.
constexpr double halfTolerance = 1e-9;
/// Sizes are often whole cells, and those that were positions on the sky not to the last digit.
constexpr double sizeTolerance = 1e-3;
constexpr int mostPoints = 65536;

int spans(double first, double last)
{
    return first != last && first < unsetMinimum && last > unsetMaximum &&
           std::isfinite(last - first);
}

/// As AMnMxMCTransform finds the cell of a value.
int cellAt(double value, int count, double first, double last)
{
    const double cell = (count - 1.0) * (value - first) / (last - first) + 0.5;
    return truncated(cell + std::copysign(halfTolerance, cell));
}

}  // namespace

int MapCells::usable() const
{
    return columns > 0 && rows > 0 && spans(range.xMin, range.xMax) &&
           spans(range.yMin, range.yMax);
}

int ellipsePointsForMask(const ARect<double>& rect, double angle, const MapCells& map)
{
    const double perX = (map.columns - 1) / std::abs(map.range.xMax - map.range.xMin);
    const double perY = (map.rows - 1) / std::abs(map.range.yMax - map.range.yMin);
    const double a = std::abs(rect.right - rect.left) / 2;
    const double b = std::abs(rect.bottom - rect.top) / 2;
    const double c = std::cos(angle);
    const double s = std::sin(angle);
    const double cells =
        std::max(a * std::hypot(c * perX, s * perY), b * std::hypot(s * perX, c * perY));
    // whole quarters: the points do not depend on which axis is called the first
    const double points = std::ceil(cells * pointsPerCell / quarters - sizeTolerance) * quarters;
    return std::clamp(truncated(points), fewestPoints, mostPoints);
}

int cellsOf(const AArray<APoint<double>>& outline, const MapCells& map, AArray<CPoint>& cells)
{
    const int n = map.usable() ? outline.count() : 0;
    if (cells.count() != n)
        cells.GrowBy(n);
    if (n == 0 || cells.count() != n)
        return 0;
    for (int i = 0; i < n; ++i)
        cells(i) = {cellAt(outline(i).x, map.columns, map.range.xMin, map.range.xMax),
                    cellAt(outline(i).y, map.rows, map.range.yMin, map.range.yMax)};
    return 1;
}

}  // namespace pavane
