#include "platform/core/lines.h"

#include "platform/core/ellipse.h"
#include "platform/gdi_constants.h"

#include <cmath>

namespace pavane
{

namespace
{

/// Wider lines cover any picture that memory holds.
constexpr int greatestWidth = 65536;

void appendBox(std::int64_t left, std::int64_t top, std::int64_t right, std::int64_t bottom,
               const CRect& bounds, std::vector<Span>& out)
{
    const auto l = static_cast<int>(std::clamp<std::int64_t>(left, bounds.left, bounds.right));
    const auto r = static_cast<int>(std::clamp<std::int64_t>(right, bounds.left, bounds.right));
    const auto t = static_cast<int>(std::clamp<std::int64_t>(top, bounds.top, bounds.bottom));
    const auto b = static_cast<int>(std::clamp<std::int64_t>(bottom, bounds.top, bounds.bottom));
    for (int y = t; l < r && y < b; ++y)
        out.push_back({y, l, r});
}

}  // namespace

DashPattern dashPattern(int penStyle)
{
    switch (penStyle) {
    case PS_DASH:
        return {2, {18, 6}};
    case PS_DOT:
        return {2, {3, 3}};
    case PS_DASHDOT:
        return {4, {9, 6, 3, 6}};
    case PS_DASHDOTDOT:
        return {6, {9, 3, 3, 3, 3, 3}};
    default:
        return {};
    }
}

WideLine::WideLine(int width) : width_(std::min(width, greatestWidth))
{
    if (width_ <= 2)  // too small for an outline: a block
        disc_.assign(static_cast<std::size_t>(width_), {0, width_});
    else
        disc_ = ellipseRows(width_, width_);
}

void WideLine::disc(CPoint at, const CRect& bounds, std::vector<Span>& out) const
{
    const std::int64_t left = std::int64_t{at.x} - width_ / 2;
    const std::int64_t top = std::int64_t{at.y} - width_ / 2;
    const std::int64_t first = std::max<std::int64_t>(0, bounds.top - top);
    const std::int64_t last = std::min<std::int64_t>(width_, bounds.bottom - top);
    for (std::int64_t row = first; row < last; ++row) {
        const Run& run = disc_[static_cast<std::size_t>(row)];
        const auto a = std::max<std::int64_t>(left + run.a, bounds.left);
        const auto b = std::min<std::int64_t>(left + run.b, bounds.right);
        if (a < b)
            out.push_back({static_cast<int>(top + row), static_cast<int>(a), static_cast<int>(b)});
    }
}

void WideLine::body(CPoint from, CPoint to, const CRect& bounds, std::vector<Span>& out)
{
    const std::int64_t h = width_ / 2;
    if (from.y == to.y)
        return appendBox(std::min(from.x, to.x), from.y - h, std::max(from.x, to.x),
                         from.y - h + width_, bounds, out);
    if (from.x == to.x)
        return appendBox(from.x - h, std::min(from.y, to.y), from.x - h + width_,
                         std::max(from.y, to.y), bounds, out);
    if (from.x > to.x)
        std::swap(from, to);
    const auto dx = static_cast<double>(std::int64_t{to.x} - from.x);
    const auto dy = static_cast<double>(std::int64_t{to.y} - from.y);
    const double length = std::sqrt(dx * dx + dy * dy);
    const double p = width_ * std::fabs(dy) / length;
    const double q = width_ * dx / length;
    const int down = dy < 0 ? -1 : 1;
    const Vertex one{nearestInt((p + 1) / 2),
                     down < 0 ? nearestInt((q + 1) / 2) : -nearestInt((q + 1) / 2)};
    const Vertex other{-nearestInt(p / 2), down < 0 ? -nearestInt(q / 2) : nearestInt(q / 2)};
    const Vertex corners[4] = {{from.x + one.x, from.y + one.y},
                               {to.x + one.x, to.y + one.y},
                               {to.x + other.x, to.y + other.y},
                               {from.x + other.x, from.y + other.y}};
    scanner_.scan(corners, 4, false, bounds, out);
}

}  // namespace pavane
