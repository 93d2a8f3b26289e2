#include "platform/geometry.h"

#include <algorithm>
#include <cstdint>
#include <limits>

namespace pavane
{

int CRect::IntersectRect(const CRect& a, const CRect& b)
{
    const CRect cut(std::max(a.left, b.left), std::max(a.top, b.top), std::min(a.right, b.right),
                    std::min(a.bottom, b.bottom));
    *this = a.IsRectEmpty() || b.IsRectEmpty() || cut.IsRectEmpty() ? CRect() : cut;
    return !IsRectEmpty();
}

int CRect::UnionRect(const CRect& a, const CRect& b)
{
    if (a.IsRectEmpty() || b.IsRectEmpty()) {
        *this = !a.IsRectEmpty() ? a : !b.IsRectEmpty() ? b : CRect();
        return !IsRectEmpty();
    }
    *this = CRect(std::min(a.left, b.left), std::min(a.top, b.top), std::max(a.right, b.right),
                  std::max(a.bottom, b.bottom));
    return 1;
}

int CRect::SubtractRect(const CRect& a, const CRect& b)
{
    CRect rest = a.IsRectEmpty() ? CRect() : a;
    CRect common;
    if (common.IntersectRect(a, b)) {
        if (common == a) {
            rest = CRect();
        } else if (common.top == a.top && common.bottom == a.bottom) {
            if (common.left == a.left)
                rest.left = common.right;
            else if (common.right == a.right)
                rest.right = common.left;
        } else if (common.left == a.left && common.right == a.right) {
            if (common.top == a.top)
                rest.top = common.bottom;
            else if (common.bottom == a.bottom)
                rest.bottom = common.top;
        }
    }
    *this = rest;
    return !IsRectEmpty();
}

int MulDiv(int a, int b, int c)
{
    if (c == 0)
        return -1;
    const std::int64_t product = std::int64_t{a} * b;
    const std::int64_t divisor = c < 0 ? -std::int64_t{c} : std::int64_t{c};
    const std::int64_t magnitude = ((product < 0 ? -product : product) + divisor / 2) / divisor;
    const std::int64_t result = (product < 0) != (c < 0) ? -magnitude : magnitude;
    if (result < std::numeric_limits<int>::min() || result > std::numeric_limits<int>::max())
        return -1;
    return static_cast<int>(result);
}

}  // namespace pavane
