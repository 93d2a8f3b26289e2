#include "pavane/measures/areas/area_cells.h"

#include "pavane/trackers/masks/scan_fill.h"

#include <algorithm>
#include <limits>
#include <new>
#include <utility>
#include <vector>

namespace pavane
{

int cellsOfPolygon(const CPoint* points, int n, int rows, int columns, AreaCells& cells)
{
    cells = {};
    if (n < 1 || rows < 1 || columns < 1)
        return 1;
    int left = points[0].x, right = left, top = points[0].y, bottom = top;
    for (int i = 1; i < n; ++i) {
        left = std::min(left, points[i].x);
        right = std::max(right, points[i].x);
        top = std::min(top, points[i].y);
        bottom = std::max(bottom, points[i].y);
    }
    right = std::min(right, columns - 1);
    bottom = std::min(bottom, rows - 1);
    // a polygon that is moved crosses rows in the same places, but its numbers must not overflow
    const int isFar = left < std::numeric_limits<int>::min() + columns ||
                      top < std::numeric_limits<int>::min() + rows;
    left = isFar ? 0 : std::max(left, 0);
    top = isFar ? 0 : std::max(top, 0);
    if (left > right || top > bottom)
        return 1;
    AreaCells made{ABitMatrix(bottom - top + 1, right - left + 1), top, left};
    if (!made.mask.rows())
        return 0;
    int overflow = 0;
    try {
        std::vector<CPoint> moved(points, points + n);
        for (CPoint& point : moved) {
            point.x -= left;
            point.y -= top;
        }
        if (!fillPolygon(made.mask, moved.data(), n, std::numeric_limits<int>::max(), overflow))
            return 0;
    } catch (const std::bad_alloc&) {
        return 0;
    }
    cells = std::move(made);
    return 1;
}

}  // namespace pavane
