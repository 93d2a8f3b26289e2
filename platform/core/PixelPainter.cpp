#include "platform/core/PixelPainter.h"

#include "platform/gdi_constants.h"

#include <algorithm>

namespace pavane
{

namespace
{

std::uint32_t applied(int rop2, std::uint32_t p, std::uint32_t d)
{
    switch (rop2) {
    case R2_BLACK:
        return 0;
    case R2_NOTMERGEPEN:
        return ~(p | d);
    case R2_MASKNOTPEN:
        return ~p & d;
    case R2_NOTCOPYPEN:
        return ~p;
    case R2_MASKPENNOT:
        return p & ~d;
    case R2_NOT:
        return ~d;
    case R2_XORPEN:
        return p ^ d;
    case R2_NOTMASKPEN:
        return ~(p & d);
    case R2_MASKPEN:
        return p & d;
    case R2_NOTXORPEN:
        return ~(p ^ d);
    case R2_NOP:
        return d;
    case R2_MERGENOTPEN:
        return ~p | d;
    case R2_MERGEPENNOT:
        return p | ~d;
    case R2_MERGEPEN:
        return p | d;
    case R2_WHITE:
        return ~0u;
    default:
        return p;
    }
}

/// Whether a hatch has a line at (x, y). Eight pixels from line to line.
bool onHatch(int hatch, int x, int y)
{
    const bool level = y % 8 == 3;
    const bool upright = x % 8 == 4;
    const bool falling = (x - y) % 8 == 0;
    const bool rising = (x + y) % 8 == 7;
    switch (hatch) {
    case HS_HORIZONTAL:
        return level;
    case HS_VERTICAL:
        return upright;
    case HS_FDIAGONAL:
        return falling;
    case HS_BDIAGONAL:
        return rising;
    case HS_CROSS:
        return level || upright;
    default:
        return falling || rising;
    }
}

void paintRow(std::uint32_t* first, std::uint32_t* last, const PixelOperation& operation)
{
    if (operation.keep == 0)
        std::fill(first, last, operation.flip & 0xFFFFFF);
    else
        std::transform(first, last, first, operation);
}

}  // namespace

PixelOperation PixelOperation::of(int rop2, std::uint32_t pixel)
{
    const std::uint32_t flip = applied(rop2, pixel, 0);
    return {flip ^ applied(rop2, pixel, ~0u), flip};
}

bool isIdempotent(int rop2)
{
    switch (rop2) {
    case R2_NOTMERGEPEN:
    case R2_MASKPENNOT:
    case R2_NOT:
    case R2_XORPEN:
    case R2_NOTMASKPEN:
    case R2_NOTXORPEN:
    case R2_MERGEPENNOT:
        return false;
    default:
        return true;
    }
}

PixelPainter::PixelPainter(const PixelSurface& surface, const Region* clip)
    : surface_(surface), clip_(clip), bounds_(0, 0, surface.width, surface.height)
{
    if (clip) {
        bounds_.IntersectRect(bounds_, clip->box());
        if (clip->bands().size() <= 1 && (clip->empty() || clip->bands()[0].count == 1))
            clip_ = nullptr;
    }
}

/// Paints units a .. b-1 of row y, all of them on the surface.
void PixelPainter::paintUnits(int y, int a, int b, const PixelOperation& operation) const
{
    std::uint32_t* first = surface_.at(a, y);
    const std::ptrdiff_t length = std::ptrdiff_t{b - a} * surface_.ratio;
    for (int i = 0; i < surface_.ratio; ++i, first += surface_.stride)
        paintRow(first, first + length, operation);
}

void PixelPainter::span(int y, int a, int b, const Ink& ink) const
{
    clipped(y, a, b, [&](int row, int left, int right) {
        surface_.touch({left, row, right, row + 1});
        if (ink.hatch < 0)
            return paintUnits(row, left, right, ink.operation);
        for (int x = left; x < right; ++x) {
            if (onHatch(ink.hatch, x, row))
                paintUnits(row, x, x + 1, ink.operation);
            else if (ink.fillsGaps)
                paintUnits(row, x, x + 1, ink.gaps);
        }
    });
}

void PixelPainter::spans(const std::vector<Span>& spans, const Ink& ink) const
{
    for (const Span& s : spans)
        span(s.y, s.a, s.b, ink);
}

void PixelPainter::rect(const CRect& rect, const Ink& ink) const
{
    clippedRects(rect, [&](const CRect& part) {
        surface_.touch(part);
        if (ink.hatch < 0) {
            std::uint32_t* first = surface_.at(part.left, part.top);
            const std::ptrdiff_t length = std::ptrdiff_t{part.Width()} * surface_.ratio;
            for (int rows = part.Height() * surface_.ratio; rows > 0; --rows) {
                paintRow(first, first + length, ink.operation);
                first += surface_.stride;
            }
            return;
        }
        for (int y = part.top; y < part.bottom; ++y)
            span(y, part.left, part.right, ink);
    });
}

void PixelPainter::run(const LineRun& run, const PixelOperation& operation) const
{
    const int last = run.step * (run.count - 1);
    if (run.horizontal) {
        const int left = last < 0 ? run.x + last : run.x;
        clipped(run.y, left, left + run.count, [&](int y, int a, int b) {
            surface_.touch({a, y, b, y + 1});
            paintUnits(y, a, b, operation);
        });
        return;
    }
    const int top = last < 0 ? run.y + last : run.y;
    clippedRects({run.x, top, run.x + 1, top + run.count}, [&](const CRect& part) {
        surface_.touch(part);
        for (int y = part.top; y < part.bottom; ++y)
            paintUnits(y, run.x, run.x + 1, operation);
    });
}

bool PixelPainter::visible(int x, int y) const
{
    return bounds_.PtInRect({x, y}) && (!clip_ || clip_->contains(x, y));
}

void unite(std::vector<Span>& spans)
{
    const auto before = [](const Span& p, const Span& q) {
        return p.y != q.y ? p.y < q.y : p.a < q.a;
    };
    if (!std::is_sorted(spans.begin(), spans.end(), before))
        std::sort(spans.begin(), spans.end(), before);
    std::size_t kept = 0;
    for (const Span& s : spans) {
        if (kept > 0 && spans[kept - 1].y == s.y && spans[kept - 1].b >= s.a)
            spans[kept - 1].b = std::max(spans[kept - 1].b, s.b);
        else
            spans[kept++] = s;
    }
    spans.resize(kept);
}

std::vector<Span> without(const std::vector<Span>& spans, const std::vector<Span>& holes)
{
    std::vector<Span> rest;
    std::size_t hole = 0;
    for (const Span& s : spans) {
        while (hole < holes.size() &&
               (holes[hole].y < s.y || (holes[hole].y == s.y && holes[hole].b <= s.a)))
            ++hole;
        int a = s.a;
        for (std::size_t i = hole; i < holes.size() && holes[i].y == s.y && holes[i].a < s.b; ++i) {
            if (holes[i].a > a)
                rest.push_back({s.y, a, holes[i].a});
            a = std::max(a, holes[i].b);
        }
        if (a < s.b)
            rest.push_back({s.y, a, s.b});
    }
    return rest;
}

}  // namespace pavane
