#include "pavane/trackers/shapes/rect_handles.h"

#include "tessel/rounding.h"

#include <algorithm>
#include <cstdint>
#include <cstdlib>
#include <limits>

namespace pavane
{

namespace
{

/// Where a handle sits and what it becomes in a rectangle that is inside out.
struct HandleRow {
    EdgeX x;
    EdgeY y;
    bool centreX;
    bool centreY;
    signed char moveX;  ///< 0 on the edge, -1 one handle inward
    signed char moveY;
    signed char invertedX;
    signed char invertedY;
};

constexpr int handleCount = 8;
constexpr HandleRow handleTable[handleCount] = {
    {EdgeX::left, EdgeY::top, false, false, 0, 0, 1, 3},
    {EdgeX::right, EdgeY::top, false, false, -1, 0, 0, 2},
    {EdgeX::right, EdgeY::bottom, false, false, -1, -1, 3, 1},
    {EdgeX::left, EdgeY::bottom, false, false, 0, -1, 2, 0},
    {EdgeX::left, EdgeY::top, true, false, 0, 0, 4, 6},
    {EdgeX::right, EdgeY::top, false, true, -1, 0, 7, 5},
    {EdgeX::left, EdgeY::bottom, true, false, 0, -1, 6, 4},
    {EdgeX::left, EdgeY::top, false, true, 0, 0, 5, 7},
};

constexpr bool isHandle(int code) { return code >= 0 && code < handleCount; }

constexpr int sign(int a, int b) { return (a > b) - (a < b); }

constexpr int distance(int a, int b)
{
    const long long d = static_cast<long long>(a) - b;
    return static_cast<int>(std::min<long long>(d < 0 ? -d : d, std::numeric_limits<int>::max()));
}

}  // namespace

HandleEdges handleEdges(int code)
{
    if (!isHandle(code))
        return {};
    const HandleRow& row = handleTable[code];
    return {row.centreX ? EdgeX::none : row.x, row.centreY ? EdgeY::none : row.y};
}

DragSides sidesOf(const CRect& rect, HandleEdges edges)
{
    DragSides sides;
    if (edges.x != EdgeX::none)
        sides.x =
            edges.x == EdgeX::right ? sign(rect.right, rect.left) : sign(rect.left, rect.right);
    if (edges.y != EdgeY::none)
        sides.y =
            edges.y == EdgeY::bottom ? sign(rect.bottom, rect.top) : sign(rect.top, rect.bottom);
    return sides;
}

CSize extentOf(const CRect& rect)
{
    return {distance(rect.right, rect.left), distance(rect.bottom, rect.top)};
}

CRect grown(const CRect& rect, int by)
{
    return {saturatedSum(rect.left, -by), saturatedSum(rect.top, -by), saturatedSum(rect.right, by),
            saturatedSum(rect.bottom, by)};
}

int handleSizeFor(const CRect& rect, int size)
{
    const CSize extent = extentOf(rect);
    const int shorter = std::min(extent.cx, extent.cy);
    return 2LL * size <= shorter ? size : shorter / 2;
}

int handleMask(const CRect& rect, int size)
{
    constexpr int corners = 15;
    constexpr int withTopAndBottom = 95;
    constexpr int leftAndRight = 160;
    constexpr int leastGap = 5;
    const CSize extent = extentOf(rect);
    const long long taken = 3LL * size;
    int mask = extent.cx - taken < leastGap ? corners : withTopAndBottom;
    if (extent.cy - taken >= leastGap)
        mask |= leftAndRight;
    return mask;
}

int normalizedHit(const CRect& rect, int code)
{
    if (!isHandle(code))
        return code;
    if (rect.right < rect.left)
        code = handleTable[code].invertedX;
    if (rect.bottom < rect.top)
        code = handleTable[code].invertedY;
    return code;
}

CRect handleRect(const CRect& rect, int code, int handle, int size)
{
    code = normalizedHit(rect, code);
    if (!isHandle(code))
        return {};
    const HandleRow& row = handleTable[code];
    const CRect frame = grown(normalized(rect), size / 2 - 1);
    long long x = row.x == EdgeX::left ? frame.left : frame.right;
    long long y = row.y == EdgeY::top ? frame.top : frame.bottom;
    x += row.moveX * handle;
    y += row.moveY * handle;
    if (row.centreX)
        x += (static_cast<long long>(frame.right) - frame.left - handle) / 2;
    if (row.centreY)
        y += (static_cast<long long>(frame.bottom) - frame.top - handle) / 2;
    return {saturatedSum(x, 0), saturatedSum(y, 0), saturatedSum(x, handle),
            saturatedSum(y, handle)};
}

int hitRectHandles(const CRect& rect, CPoint point, int handle, int size, const CRect& trueRect)
{
    if (!trueRect.PtInRect(point))
        return hitNothing;
    const int mask = handleMask(rect, size);
    for (int code = 0; code < handleCount; ++code)
        if (mask >> code & 1 && handleRect(rect, code, handle, size).PtInRect(point))
            return code;
    return hitMiddle;
}

}  // namespace pavane
