#include "pavane/windows/selection_edges.h"

#include "tessel/rounding.h"

#include <algorithm>

namespace pavane
{

namespace
{

// How far from an edge the pointer still takes it. Upright edges are taken more closely, because a
// pointer stands steadier across than down.
constexpr long long reachAcross = 2, reachDown = 3;

int isNear(int edge, int at, long long reach)
{
    const long long distance = static_cast<long long>(edge) - at;
    return distance <= reach && -distance <= reach;
}

/// One direction of a move: [low, high) pushed between the bounds, `length` long.
void pushInside(int& low, int& high, int length, int first, int end)
{
    if (low < first) {
        low = first;
        high = first + length;
    }
    if (high > end) {
        high = end;
        low = end - length;
    }
}

void clampInOrder(int& from, int& to, int first, int end)
{
    const bool falling = from > to;
    const int low = std::clamp(std::min(from, to), first, end);
    const int high = std::clamp(std::max(from, to), first, end);
    from = falling ? high : low;
    to = falling ? low : high;
}

}  // namespace

int edgesUnder(CPoint pointer, const CRect& selection, const CRect& bounds, int upright, int level)
{
    int edges = 0;
    if (upright && pointer.y >= bounds.top && pointer.y < bounds.bottom) {
        if (isNear(selection.left, pointer.x, reachAcross))
            edges |= edgeLeft;
        else if (isNear(selection.right, pointer.x, reachAcross))
            edges |= edgeRight;
    }
    if (level && pointer.x >= bounds.left && pointer.x < bounds.right) {
        if (isNear(selection.top, pointer.y, reachDown))
            edges |= edgeTop;
        else if (isNear(selection.bottom, pointer.y, reachDown))
            edges |= edgeBottom;
    }
    return edges;
}

HCURSOR edgeCursor(int edges)
{
    switch (edges) {
    case edgeLeft:
    case edgeRight:
        return IDC_SIZEWE;
    case edgeTop:
    case edgeBottom:
        return IDC_SIZENS;
    case edgeLeft | edgeTop:
    case edgeRight | edgeBottom:
        return IDC_SIZENWSE;
    case edgeRight | edgeTop:
    case edgeLeft | edgeBottom:
        return IDC_SIZENESW;
    default:
        return 0;
    }
}

CRect resizedInside(const CRect& candidate, const CRect& selection, const CRect& bounds)
{
    CRect r = candidate;
    r.left = std::max(r.left, bounds.left);
    if (r.left >= selection.right)
        r.left = selection.right - 1;
    r.right = std::min(r.right, bounds.right);
    if (r.right <= selection.left)
        r.right = selection.left + 1;
    r.top = std::max(r.top, bounds.top);
    if (r.top >= selection.bottom)
        r.top = selection.bottom - 1;
    r.bottom = std::min(r.bottom, bounds.bottom);
    if (r.bottom <= selection.top)
        r.bottom = selection.top + 1;
    return r;
}

CRect movedInside(const CRect& candidate, const CRect& selection, const CRect& bounds)
{
    CRect r = candidate;
    pushInside(r.left, r.right, selection.Width(), bounds.left, bounds.right);
    pushInside(r.top, r.bottom, selection.Height(), bounds.top, bounds.bottom);
    return r;
}

CRect bandInside(const CRect& candidate, const CRect& bounds)
{
    CRect r = candidate;
    clampInOrder(r.left, r.right, bounds.left, bounds.right);
    clampInOrder(r.top, r.bottom, bounds.top, bounds.bottom);
    return r;
}

CRect uncoveredStrip(const CRect& rect, int dx, int dy)
{
    CRect strip = rect;
    if (dy > 0)
        strip.bottom = saturatedSum(strip.top, dy);
    else if (dy < 0)
        strip.top = saturatedSum(strip.bottom, dy);
    if (dx > 0)
        strip.right = saturatedSum(strip.left, dx);
    else if (dx < 0)
        strip.left = saturatedSum(strip.right, dx);
    return strip;
}

}  // namespace pavane
