#include "pavane/images/ADIBase.h"
#include "pavane/images/LineSteps.h"
#include "pavane/images/polygon_fill.h"
#include "tessel/rounding.h"

#include <algorithm>
#include <cmath>
#include <cstring>
#include <limits>
#include <memory>
#include <new>

namespace pavane
{

namespace
{

constexpr int patternBits = 32;

bool patternBit(std::int32_t pattern, std::int64_t i)
{
    return static_cast<std::uint32_t>(pattern) >> (i % patternBits) & 1u;
}

int roundedHalfUp(double v) { return truncated(std::floor(v + 0.5)); }

int cutToInt(std::int64_t v)
{
    return static_cast<int>(std::clamp<std::int64_t>(v, std::numeric_limits<int>::min(),
                                                     std::numeric_limits<int>::max()));
}

}  // namespace

void ADIBase::Line(int x1, int y1, int x2, int y2)
{
    if (!bits_)
        return;
    if (lineWidth_ > 1)
        return wideLine({x1, y1}, {x2, y2});
    const LineSteps line({x1, y1}, {x2, y2});
    const bool within = XYInDIB(x1, y1) && XYInDIB(x2, y2);
    const LineSteps::Range range = within ? LineSteps::Range{0, line.count()} : line.inside(rect_);
    if (range.first >= range.end)
        return;
    const CPoint start = line.at(range.first);
    unsigned char* pixel = bits_ + index(start.x, start.y);
    const std::ptrdiff_t down = -scanWidth_;
    const std::ptrdiff_t along = line.majorStep() * (line.isSteep() ? down : 1);
    const std::ptrdiff_t across = line.minorStep() * (line.isSteep() ? 1 : down);
    const auto color = static_cast<unsigned char>(color_);
    const bool backwards = line.minorStep() < 0;
    LineSteps::Walk walk = line.walkFrom(range.first);
    if (linePattern_ == -1) {
        for (std::int64_t left = range.end - range.first;;) {
            *pixel = color;
            if (--left == 0)
                return;
            pixel += walk.next(backwards) ? along + across : along;
        }
    }
    for (std::int64_t i = range.first;;) {
        if (patternBit(linePattern_, i))
            *pixel = color;
        if (++i == range.end)
            return;
        pixel += walk.next(backwards) ? along + across : along;
    }
}

void ADIBase::wideLine(CPoint from, CPoint to)
{
    if (linePattern_ == -1) {
        wideBody(from, to);
        disc(from);
        disc(to);
        return;
    }
    // the steps that may show, in whole pattern bits, so that a dash keeps its length at the edge
    const LineSteps line(from, to);
    CRect near = rect_;
    near.left = cutToInt(std::int64_t{near.left} - lineWidth_);
    near.top = cutToInt(std::int64_t{near.top} - lineWidth_);
    near.right = cutToInt(std::int64_t{near.right} + lineWidth_);
    near.bottom = cutToInt(std::int64_t{near.bottom} + lineWidth_);
    const LineSteps::Range range = line.inside(near);
    if (range.first >= range.end)
        return;
    const std::int64_t lastBit = (range.end - 1) / lineWidth_;
    for (std::int64_t bit = range.first / lineWidth_; bit <= lastBit; ++bit) {
        if (!patternBit(linePattern_, bit))
            continue;
        const std::int64_t first = bit;
        while (bit < lastBit && patternBit(linePattern_, bit + 1))
            ++bit;
        const std::int64_t end = (bit + 1) * lineWidth_;
        wideBody(line.at(first * lineWidth_), end >= line.count() ? to : line.at(end));
    }
}

void ADIBase::wideBody(CPoint from, CPoint to)
{
    if (from == to)
        return;
    const int before = lineWidth_ / 2;
    if (from.x == to.x || from.y == to.y) {
        const bool upright = from.x == to.x;
        CRect box(std::min(from.x, to.x), std::min(from.y, to.y), std::max(from.x, to.x),
                  std::max(from.y, to.y));
        const std::int64_t side = std::int64_t{upright ? box.left : box.top} - before;
        (upright ? box.left : box.top) = cutToInt(side);
        (upright ? box.right : box.bottom) = cutToInt(side + lineWidth_ - 1);
        --(upright ? box.bottom : box.right);  // the end stays out of the body
        return FillRect(box, color_);
    }
    // a parallelogram about the line, each end moved off it by half the width at right angles
    if (to.x < from.x)
        std::swap(from, to);
    const double dx = static_cast<double>(to.x) - from.x;
    const double dy = static_cast<double>(to.y) - from.y;
    const double p = lineWidth_ * std::abs(dy) / std::hypot(dx, dy);
    const double q = lineWidth_ * dx / std::hypot(dx, dy);
    const int side = dy < 0 ? -1 : 1;
    const int ax = roundedHalfUp((p + 1) / 2), ay = -side * roundedHalfUp((q + 1) / 2);
    const int bx = -roundedHalfUp(p / 2), by = side * roundedHalfUp(q / 2);
    const auto moved = [](CPoint c, int mx, int my) {
        return CPoint(cutToInt(std::int64_t{c.x} + mx), cutToInt(std::int64_t{c.y} + my));
    };
    const CPoint body[] = {moved(from, ax, ay), moved(to, ax, ay), moved(to, bx, by),
                           moved(from, bx, by)};
    Polygon(body, 4, color_);
}

void ADIBase::disc(CPoint centre)
{
    const std::int64_t w = lineWidth_;
    const std::int64_t left = centre.x - w / 2;
    const std::int64_t top = centre.y - w / 2;
    const std::int64_t firstRow = std::max<std::int64_t>(0, rect_.top - top);
    const std::int64_t endRow = std::min(w, rect_.bottom - top + 1);
    for (std::int64_t row = firstRow; row < endRow; ++row) {
        const std::int64_t dy = 2 * row - (w - 1);
        std::int64_t cut = 0;  // pixels of the square left out on each side
        while (cut < w / 2 && (w - 1 - 2 * cut) * (w - 1 - 2 * cut) + dy * dy >= w * w - 1)
            ++cut;
        const int y = static_cast<int>(top + row);
        FillRect(CRect(cutToInt(left + cut), y, cutToInt(left + w - 1 - cut), y), color_);
    }
}

void ADIBase::Rectangle(const CRect& r)
{
    if (r.left > r.right || r.top > r.bottom)
        return;
    if (r.left == r.right && r.top == r.bottom)
        return lineWidth_ > 1 ? disc(r.TopLeft()) : SetPixel(r.left, r.top, color_);
    Line(r.left, r.top, r.right, r.top);
    Line(r.right, r.top, r.right, r.bottom);
    Line(r.right, r.bottom, r.left, r.bottom);
    Line(r.left, r.bottom, r.left, r.top);
}

void ADIBase::FillRect(const CRect& r, short index)
{
    if (!bits_)
        return;
    const CRect cut(std::max(r.left, rect_.left), std::max(r.top, rect_.top),
                    std::min(r.right, rect_.right), std::min(r.bottom, rect_.bottom));
    if (cut.left > cut.right || cut.top > cut.bottom)
        return;
    // Rows are counted, since no int lies below the lowest bottom that there is.
    unsigned char* row = &(*this)(cut.left, cut.bottom);
    for (std::int64_t left = std::int64_t{cut.bottom} - cut.top + 1; left > 0; --left) {
        std::memset(row, index & 255, static_cast<std::size_t>(cut.right - cut.left) + 1);
        row += left > 1 ? scanWidth_ : 0;
    }
}

void ADIBase::Polygon(const CPoint* points, int n, short index)
{
    if (!bits_ || n < 3)
        return;
    CRect box(points[0].x, points[0].y, points[0].x, points[0].y);
    for (int i = 1; i < n; ++i) {
        box.left = std::min(box.left, points[i].x);
        box.top = std::min(box.top, points[i].y);
        box.right = std::max(box.right, points[i].x);
        box.bottom = std::max(box.bottom, points[i].y);
    }
    box = CRect(std::max(box.left, rect_.left), std::max(box.top, rect_.top),
                std::min(box.right, rect_.right), std::min(box.bottom, rect_.bottom));
    if (box.left > box.right || box.top > box.bottom)
        return;
    const std::size_t columns = static_cast<std::size_t>(box.Width()) + 1;
    const std::size_t rows = static_cast<std::size_t>(box.Height()) + 1;
    const std::unique_ptr<unsigned char[]> toggles(
        new (std::nothrow) unsigned char[(columns + 1) * rows]());
    if (!toggles)
        return;
    markCrossings(points, n, box, toggles.get());
    const unsigned char* toggle = toggles.get();
    for (std::size_t row = 0; row < rows; ++row, ++toggle) {
        unsigned char* pixel = &(*this)(box.left, static_cast<int>(box.top + std::int64_t(row)));
        unsigned inside = 0;
        for (std::size_t i = 0; i < columns; ++i, ++pixel) {
            inside ^= *toggle++;
            if (inside)
                *pixel = static_cast<unsigned char>(index);
        }
    }
}

void ADIBase::CopyLine(int y, int left, const unsigned char* indices, int n)
{
    const std::int64_t first = std::max(left, rect_.left);
    const std::int64_t end = std::min(std::int64_t{left} + n, std::int64_t{rect_.right} + 1);
    if (!bits_ || y < rect_.top || y > rect_.bottom || first >= end)
        return;
    std::memcpy(&(*this)(static_cast<int>(first), y), indices + (first - left),
                static_cast<std::size_t>(end - first));
}

}  // namespace pavane
