#include "platform/core/CDC_state.h"
#include "platform/core/pixel_rounding.h"

#include <algorithm>
#include <cstdlib>
#include <iterator>

namespace pavane
{

/// Fills a device rectangle by the pixel rules or on the page.
void CDC::State::fillArea(const CRect& device, const CBrush& brush, int rop2)
{
    if (!canDraw() || device.IsRectEmpty() || brush.kind() == CBrush::Kind::hollow)
        return;
    if (VectorDevice* const page = pageFor(device))
        page->fillRect(device, fillStyle(brush));
    else if (surface().bits)
        painter().rect(device, inkOf(brush, rop2));
}

void CDC::FillRect(const CRect& rect, const CBrush* brush)
{
    if (brush)
        state_->fillArea(state_->filledBox(rect), *brush, R2_COPYPEN);
}

void CDC::FillSolidRect(const CRect& rect, COLORREF color)
{
    state_->now.bkColor = color;
    state_->fillArea(state_->deviceBox(rect), CBrush(color), R2_COPYPEN);
}

/// The frame of a page whose lines are no whole number of units wide.
void CDC::State::fillFrame(const CRect& r, double line, const CBrush& brush)
{
    VectorDevice* const device = page();
    if (!device)
        return;
    const double left = r.left - 0.5;  // strokes and corners count from the middles of units
    const double top = r.top - 0.5;
    const double right = r.right - 0.5;
    const double bottom = r.bottom - 0.5;
    const CPointF corners[] = {{left, top},
                               {right, top},
                               {right, bottom},
                               {left, bottom},
                               {left, top},
                               {left + line, top + line},
                               {left + line, bottom - line},
                               {right - line, bottom - line},
                               {right - line, top + line},
                               {left + line, top + line}};
    device->polygon(corners, std::size(corners), false, {}, fillStyle(brush));
}

void CDC::FrameRect(const CRect& rect, const CBrush* brush)
{
    if (!brush || rect.IsRectEmpty() || !state_->canDraw())
        return;
    const CRect r = state_->filledBox(rect);
    if (r.IsRectEmpty())
        return;
    const double line = state_->backend->hairline();
    const int width = static_cast<int>(line);
    if (width != line)
        return state_->fillFrame(r, line, *brush);
    const int right = saturated(std::max<Wide>(r.left, Wide{r.right} - width));
    const int bottom = saturated(std::max<Wide>(r.top, Wide{r.bottom} - width));
    const int left = saturated(std::min<Wide>(r.right, Wide{r.left} + width));
    const int top = saturated(std::min<Wide>(r.bottom, Wide{r.top} + width));
    state_->fillArea({r.left, r.top, left, r.bottom}, *brush, R2_COPYPEN);
    state_->fillArea({right, r.top, r.right, r.bottom}, *brush, R2_COPYPEN);
    state_->fillArea({r.left, r.top, r.right, top}, *brush, R2_COPYPEN);
    state_->fillArea({r.left, bottom, r.right, r.bottom}, *brush, R2_COPYPEN);
}

void CDC::InvertRect(const CRect& rect)
{
    if (!IsVector())  // ink cannot be inverted
        state_->fillArea(state_->filledBox(rect), CBrush(COLORREF{0}), R2_NOT);
}

void CDC::DrawFocusRect(const CRect& rect)
{
    if (rect.IsRectEmpty() || !state_->surface().bits)
        return;
    const CRect box = state_->deviceBox(rect);
    if (box.IsRectEmpty())
        return;
    const CPoint corners[5] = {{box.right - 1, box.top},
                               {box.left, box.top},
                               {box.left, box.bottom - 1},
                               {box.right - 1, box.bottom - 1},
                               {box.right - 1, box.top}};
    const PixelPainter painter = state_->painter();
    const PixelOperation invert = PixelOperation::of(R2_NOT, 0);
    const DashPattern everyOther{2, {1, 1}};
    std::int64_t phase = 0;
    for (int i = 0; i < 4; ++i) {
        const CPoint a = corners[i];
        const CPoint b = corners[i + 1];
        thinLine(a, b, painter.bounds(), [&](const LineRun& run) {
            splitDashes(run, everyOther, phase, [&](const LineRun& piece, bool on) {
                if (on)
                    painter.run(piece, invert);
            });
        });
        phase += std::abs(std::int64_t{b.x} - a.x) + std::abs(std::int64_t{b.y} - a.y);
    }
}

int CDC::PatBlt(int x, int y, int width, int height, unsigned rop)
{
    State& s = *state_;
    if (!s.backend)
        return 0;
    const CRect box = s.filledBox({x, y, saturated(Wide{x} + width), saturated(Wide{y} + height)});
    switch (rop) {
    case PATCOPY:
        s.fillArea(box, s.now.brush, R2_COPYPEN);
        return 1;
    case PATINVERT:
        s.fillArea(box, s.now.brush, R2_XORPEN);
        return 1;
    case DSTINVERT:
        if (!IsVector())
            s.fillArea(box, CBrush(COLORREF{0}), R2_NOT);
        return 1;
    case BLACKNESS:
        s.fillArea(box, CBrush(RGB(0, 0, 0)), R2_COPYPEN);
        return 1;
    case WHITENESS:
        s.fillArea(box, CBrush(RGB(255, 255, 255)), R2_COPYPEN);
        return 1;
    default:
        return 0;
    }
}

COLORREF CDC::SetPixel(int x, int y, COLORREF color)
{
    return SetPixelV(x, y, color) ? GetPixel(x, y) : CLR_INVALID;
}

int CDC::SetPixelV(int x, int y, COLORREF color)
{
    State& s = *state_;
    if (!s.backend)
        return 0;
    const CPoint p = s.now.mapping.toDevice(CPoint(x, y));
    if (VectorDevice* const page = s.page()) {
        page->fillRect({p.x, p.y, saturated(Wide{p.x} + 1), saturated(Wide{p.y} + 1)},
                       s.fillStyle(CBrush(color)));
        return 1;
    }
    const PixelPainter painter = s.painter();
    if (!s.surface().bits || !painter.visible(p.x, p.y))
        return 0;
    painter.run({p.x, p.y, 1, 1, true, 0}, PixelOperation::of(s.now.rop2, s.pixel(color)));
    return 1;
}

COLORREF CDC::GetPixel(int x, int y) const
{
    const CPoint p = state_->now.mapping.toDevice(CPoint(x, y));
    const PixelSurface surface = state_->surface();
    if (!surface.bits || p.x < 0 || p.y < 0 || p.x >= surface.width || p.y >= surface.height)
        return CLR_INVALID;
    return colorOf(*surface.at(p.x, p.y));
}

}  // namespace pavane
