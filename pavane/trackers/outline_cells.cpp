#include "pavane/trackers/outline_cells.h"

#include "pavane/axes/AMnMxMCTransform.h"
#include "tessel/rounding.h"

#include <algorithm>
#include <cmath>

namespace pavane
{

namespace
{

constexpr int pointsPerCell = 8;
constexpr int fewestPoints = 16;
constexpr int mostPoints = 65536;

int spans(double first, double last)
{
    return first != last && first < unsetMinimum && last > unsetMaximum &&
           std::isfinite(last - first);
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
    return std::clamp(truncated(std::ceil(cells * pointsPerCell)), fewestPoints, mostPoints);
}

int cellsOf(const AArray<APoint<double>>& outline, const MapCells& map, AArray<CPoint>& cells)
{
    const int n = map.usable() ? outline.count() : 0;
    if (cells.count() != n)
        cells.GrowBy(n);
    if (n == 0 || cells.count() != n)
        return 0;
    const AMnMxMCTransform toCells(map.range, map.rows, map.columns);
    for (int i = 0; i < n; ++i)
        cells(i) = {toCells.RPXtoMPX(outline(i).x), toCells.RPYtoMPY(outline(i).y)};
    return 1;
}

}  // namespace pavane
