#include "pavane/trackers/shapes/RectDrag.h"

#include "tessel/rounding.h"

#include <algorithm>

namespace pavane
{

namespace
{

int moved(int edge, int from, int to, int low, int high)
{
    const int wanted = saturatedSum(edge, static_cast<long long>(to) - from);
    return std::max(low, std::min(wanted, high));
}

void keepApart(int& dragged, int fixed, int least, int low, int high, int side)
{
    const bool above = side ? side > 0 : dragged >= fixed;
    const auto atLeast = [&](bool up) {
        return up ? std::max(dragged, saturatedSum(fixed, least))
                  : std::min(dragged, saturatedSum(fixed, -static_cast<long long>(least)));
    };
    const auto inside = [&](int edge) { return edge >= low && edge <= high; };
    int edge = atLeast(above);
    if (!side && !inside(edge)) {
        // what the pointer reached cannot count on the other side: only the least size does
        const int other = saturatedSum(fixed, above ? -static_cast<long long>(least) : least);
        edge = inside(other) ? other : std::max(low, std::min(edge, high));
    }
    dragged = edge;
}

}  // namespace

CRect RectDrag::at(CPoint pointer) const
{
    CRect rect = start_;
    if (pointer == press_)
        return rect;
    if (hit_ == hitMiddle) {
        const CRect box = normalized(start_);
        const long long dx = pushedStep(static_cast<long long>(pointer.x) - press_.x, box.left,
                                        box.right, valid_.left, valid_.right);
        const long long dy = pushedStep(static_cast<long long>(pointer.y) - press_.y, box.top,
                                        box.bottom, valid_.top, valid_.bottom);
        return {saturatedSum(rect.left, dx), saturatedSum(rect.top, dy),
                saturatedSum(rect.right, dx), saturatedSum(rect.bottom, dy)};
    }
    const HandleEdges edges = handleEdges(hit_);
    if (edges.x != EdgeX::none) {
        int& edge = edges.x == EdgeX::left ? rect.left : rect.right;
        edge = moved(edge, press_.x, pointer.x, valid_.left, valid_.right);
    }
    if (edges.y != EdgeY::none) {
        int& edge = edges.y == EdgeY::top ? rect.top : rect.bottom;
        edge = moved(edge, press_.y, pointer.y, valid_.top, valid_.bottom);
    }
    return rect;
}

void keepLeastSize(CRect& rect, int hit, CSize least, const CRect& valid, DragSides sides)
{
    const HandleEdges edges = handleEdges(hit);
    if (edges.x == EdgeX::left)
        keepApart(rect.left, rect.right, least.cx, valid.left, valid.right, sides.x);
    if (edges.x == EdgeX::right)
        keepApart(rect.right, rect.left, least.cx, valid.left, valid.right, sides.x);
    if (edges.y == EdgeY::top)
        keepApart(rect.top, rect.bottom, least.cy, valid.top, valid.bottom, sides.y);
    if (edges.y == EdgeY::bottom)
        keepApart(rect.bottom, rect.top, least.cy, valid.top, valid.bottom, sides.y);
}

CPoint clampedTo(const CRect& valid, CPoint point)
{
    return {std::max(valid.left, std::min(point.x, valid.right)),
            std::max(valid.top, std::min(point.y, valid.bottom))};
}

}  // namespace pavane
