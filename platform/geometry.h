#pragma once

#include "platform/api.h"

namespace pavane
{

/// A width and a height.
struct CSize {
    int cx = 0;
    int cy = 0;
    friend constexpr bool operator==(const CSize&, const CSize&) = default;
};

/// A point in logical units.
struct CPoint {
    int x = 0;
    int y = 0;
    constexpr CPoint() = default;
    constexpr CPoint(int px, int py) : x(px), y(py) {}
    constexpr void Offset(int dx, int dy)
    {
        x += dx;
        y += dy;
    }
    friend constexpr bool operator==(const CPoint&, const CPoint&) = default;
    friend constexpr CPoint operator+(CPoint a, CPoint b) { return {a.x + b.x, a.y + b.y}; }
    friend constexpr CPoint operator-(CPoint a, CPoint b) { return {a.x - b.x, a.y - b.y}; }
};

/// A point with fractions of a logical unit, for curves that a page or a smooth picture draws finer
/// than its pixels.
struct CPointF {
    double x = 0;
    double y = 0;
    friend constexpr bool operator==(const CPointF&, const CPointF&) = default;
};

/// A rectangle: right and bottom are the first coordinates outside.
struct PAVANE_API CRect {
    int left = 0;
    int top = 0;
    int right = 0;
    int bottom = 0;
    constexpr CRect() = default;
    constexpr CRect(int l, int t, int r, int b) : left(l), top(t), right(r), bottom(b) {}

    constexpr int Width() const { return right - left; }
    constexpr int Height() const { return bottom - top; }
    constexpr CSize Size() const { return {Width(), Height()}; }
    constexpr CPoint TopLeft() const { return {left, top}; }
    constexpr CPoint BottomRight() const { return {right, bottom}; }
    constexpr CPoint CenterPoint() const { return {(left + right) / 2, (top + bottom) / 2}; }
    constexpr int IsRectEmpty() const { return left >= right || top >= bottom; }
    constexpr int IsRectNull() const { return !left && !top && !right && !bottom; }
    constexpr int PtInRect(CPoint p) const
    {
        return p.x >= left && p.x < right && p.y >= top && p.y < bottom;
    }
    constexpr void SetRect(int l, int t, int r, int b) { *this = CRect(l, t, r, b); }
    constexpr void SetRectEmpty() { *this = CRect(); }
    constexpr void OffsetRect(int dx, int dy)
    {
        left += dx;
        right += dx;
        top += dy;
        bottom += dy;
    }
    constexpr void InflateRect(int dx, int dy)
    {
        left -= dx;
        right += dx;
        top -= dy;
        bottom += dy;
    }
    constexpr void DeflateRect(int dx, int dy) { InflateRect(-dx, -dy); }
    /// Puts left before right and top before bottom.
    constexpr void NormalizeRect()
    {
        if (left > right) {
            const int l = left;
            left = right;
            right = l;
        }
        if (top > bottom) {
            const int t = top;
            top = bottom;
            bottom = t;
        }
    }
    /// Each becomes what its name says of a and b; non-zero when the result is not empty.
    int IntersectRect(const CRect& a, const CRect& b);
    int UnionRect(const CRect& a, const CRect& b);
    int SubtractRect(const CRect& a, const CRect& b);
    friend constexpr bool operator==(const CRect&, const CRect&) = default;
};

/// a * b / c in 64 bits, halves rounded away from zero; -1 when c is 0 or the result is no int.
PAVANE_API int MulDiv(int a, int b, int c);

}  // namespace pavane
