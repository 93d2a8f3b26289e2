#pragma once

#include "platform/core/DirtyBoxes.h"
#include "platform/core/lines.h"
#include "platform/core/Region.h"
#include "platform/types.h"

#include <cstdint>
#include <vector>

namespace pavane
{

/// Pixels in memory, 0x00RRGGBB, top row first; `stride` pixels from row to row. A unit is a
/// block of ratio x ratio pixels, so that windows on fine screens are drawn in the units of all.
struct PixelSurface {
    std::uint32_t* bits = nullptr;
    int width = 0;  ///< units
    int height = 0;
    std::ptrdiff_t stride = 0;
    int ratio = 1;
    DirtyBoxes* touched = nullptr;  ///< is told what was painted, in units; may be null
    bool isTransparent = false;     ///< the top bytes tell how much of the ground shows
    /// Row `y` of pixels, 0 .. height * ratio - 1.
    std::uint32_t* row(int y) const { return bits + y * stride; }
    /// First pixel of a unit.
    std::uint32_t* at(int x, int y) const
    {
        return bits + y * (stride * ratio) + std::ptrdiff_t{x} * ratio;
    }
    void touch(const CRect& units) const
    {
        if (touched)
            touched->add(units);
    }
    friend bool operator==(const PixelSurface&, const PixelSurface&) = default;
};

/// 0x00BBGGRR as a pixel 0x00RRGGBB, and back.
constexpr std::uint32_t pixelOf(COLORREF c)
{
    return (c & 0xFF) << 16 | (c & 0xFF00) | (c >> 16 & 0xFF);
}
constexpr COLORREF colorOf(std::uint32_t pixel) { return pixelOf(pixel); }

/// What a raster operation does to a pixel: (old & keep) ^ flip. Each of the sixteen can be written
/// so once the pen's colour is known.
struct PixelOperation {
    std::uint32_t keep = 0;
    std::uint32_t flip = 0;
    /// Drawing mode `rop2` (R2_*) with the colour `pixel`.
    static PixelOperation of(int rop2, std::uint32_t pixel);
    std::uint32_t operator()(std::uint32_t old) const { return ((old & keep) ^ flip) & 0xFFFFFF; }
};

/// Whether painting a pixel twice leaves what painting it once does.
bool isIdempotent(int rop2);

/// How an area is painted: in one colour or hatched, the hatch fixed to the surface's origin.
struct Ink {
    PixelOperation operation;
    int hatch = -1;          ///< HS_*; -1: one colour
    bool fillsGaps = false;  ///< between the lines of a hatch
    PixelOperation gaps;
};

/// Paints rows of units through a clip region. Everything may lie outside the surface.
class PixelPainter
{
public:
    /// `clip` may be null: the whole surface.
    PixelPainter(const PixelSurface& surface, const Region* clip);
    /// All that can be painted lies inside.
    const CRect& bounds() const { return bounds_; }

    void span(int y, int a, int b, const Ink& ink) const;
    void spans(const std::vector<Span>& spans, const Ink& ink) const;
    void rect(const CRect& rect, const Ink& ink) const;
    void run(const LineRun& run, const PixelOperation& operation) const;
    bool visible(int x, int y) const;

    /// Calls paint(y, a, b) for the visible parts of a row's pixels a .. b-1.
    template <class Paint>
    void clipped(int y, int a, int b, Paint paint) const
    {
        if (y < bounds_.top || y >= bounds_.bottom)
            return;
        a = a < bounds_.left ? bounds_.left : a;
        b = b > bounds_.right ? bounds_.right : b;
        if (a >= b)
            return;
        if (!clip_)
            return paint(y, a, b);
        const std::size_t at = clip_->bandFrom(y);
        if (at == clip_->bands().size() || y < clip_->bands()[at].top)
            return;
        const Region::Band& band = clip_->bands()[at];
        const Run* const runs = clip_->runs(band);
        for (std::size_t i = 0; i < band.count && runs[i].a < b; ++i) {
            const int left = runs[i].a > a ? runs[i].a : a;
            const int right = runs[i].b < b ? runs[i].b : b;
            if (left < right)
                paint(y, left, right);
        }
    }

    /// Calls paint(rect) for the visible parts of `box`, from top to bottom.
    template <class Paint>
    void clippedRects(const CRect& box, Paint paint) const
    {
        CRect inside;
        if (!inside.IntersectRect(box, bounds_))
            return;
        if (!clip_)
            return paint(inside);
        const std::vector<Region::Band>& bands = clip_->bands();
        for (std::size_t at = clip_->bandFrom(inside.top);
             at < bands.size() && bands[at].top < inside.bottom; ++at) {
            const Run* const runs = clip_->runs(bands[at]);
            for (std::size_t i = 0; i < bands[at].count && runs[i].a < inside.right; ++i) {
                CRect part(runs[i].a, bands[at].top, runs[i].b, bands[at].bottom);
                if (part.IntersectRect(part, inside))
                    paint(part);
            }
        }
    }

private:
    void paintUnits(int y, int a, int b, const PixelOperation& operation) const;

    PixelSurface surface_;
    const Region* clip_;  ///< null when it is a rectangle, which bounds_ then holds
    CRect bounds_;
};

/// Sorts spans and joins those that touch or overlap, so that each pixel comes once.
void unite(std::vector<Span>& spans);
/// Takes the pixels of `holes` out of `spans`; both united.
std::vector<Span> without(const std::vector<Span>& spans, const std::vector<Span>& holes);

}  // namespace pavane
