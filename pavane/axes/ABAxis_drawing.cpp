#include "pavane/axes/ABAxis.h"

#include "pavane/axes/axis_fonts.h"
#include "pavane/axes/figure_units.h"
#include "pavane/axes/graph_styles.h"
#include "pavane/axes/marker_blocks.h"
#include "pavane/axes/SelectedObject.h"
#include "pavane/images/ADIBase.h"
#include "platform/CDC.h"
#include "tessel/rounding.h"

#include <algorithm>
#include <cstdlib>

namespace pavane
{
namespace
{

/// Dashes of the raster for the pen styles; 32 steps each.
int patternOf(int style)
{
    switch (style) {
    case PS_DASH:
        return 0x0F0F0F0F;
    case PS_DOT:
        return 0x33333333;
    case PS_DASHDOT:
        return 0x0CFF0CFF;
    case PS_DASHDOTDOT:
        return 0x333F333F;
    case PS_NULL:
        return 0;
    default:
        return -1;
    }
}

/// Colour and pattern of the raster for one marker; the former ones come back at the end.
class RasterPen
{
public:
    RasterPen(ADIBase& dib, short index)
        : dib_(dib), color_(dib.GetColor()), pattern_(dib.GetLinePattern())
    {
        dib_.SetColor(index);
        dib_.SetLinePattern(-1);
    }
    RasterPen(const RasterPen&) = delete;
    RasterPen& operator=(const RasterPen&) = delete;
    ~RasterPen()
    {
        dib_.SetColor(color_);
        dib_.SetLinePattern(pattern_);
    }

private:
    ADIBase& dib_;
    short color_;
    int pattern_;
};

/// Palette index of a marker's colour, which may be an index itself; black and red stay colours.
short markerIndex(const ABAxis& axis, unsigned long color)
{
    const bool isIndex = color > RGB(0, 0, 0) && color < RGB(255, 0, 0);
    return static_cast<short>(isIndex ? static_cast<int>(color)
                                      : axis.paletteIndex(static_cast<COLORREF>(color)));
}

}  // namespace

void ABAxis::line(const int& x1, const int& y1, const int& x2, const int& y2)
{
    if (isFlagSet(axisBitmapMode)) {
        if (dib_)
            dib_->Line(x1, y1, x2, y2);
        return;
    }
    if (!dc_)
        return;
    const SelectedObject<CPen> pen(*dc_, CPen(lineStyle_, lineWidth_, color_));
    dc_->MoveTo(x1, y1);
    dc_->LineTo(x2, y2);
}

void ABAxis::lineV(const int& x1, const int& y1, const int& x2, const int& y2)
{
    line(x1, y1, x2, y2);
    if (isFlagSet(axisBitmapMode)) {
        if (dib_)
            dib_->SetPixel(x2, y2, static_cast<short>(paletteIndex(color_)));
    } else if (dc_ && !dc_->IsVector()) {  // a stroke on a page ends at its end point
        dc_->SetPixelV(x2, y2, color_);
    }
}

void ABAxis::markerStrokes(const unsigned long& color, const CRect& first, const CRect& second)
{
    const auto wanted = static_cast<COLORREF>(color);
    if (isFlagSet(axisBitmapMode)) {
        if (!dib_)
            return;
        const RasterPen pen(*dib_, markerIndex(*this, color));
        dib_->Line(first.left, first.top, first.right, first.bottom);
        dib_->Line(second.left, second.top, second.right, second.bottom);
        return;
    }
    if (!dc_)
        return;
    const SelectedObject<CPen> pen(*dc_, CPen(PS_SOLID, lineWidth_, wanted));
    for (const CRect& stroke : {first, second}) {
        dc_->MoveTo(stroke.left, stroke.top);
        dc_->LineTo(stroke.right, stroke.bottom);
    }
}

void ABAxis::pointCross(const int& x, const int& y, const unsigned long& color)
{
    const int h = markerSize(parts_.cross);
    const int end = isOnPage() ? h : h + 1;
    markerStrokes(color, CRect(x - h, y, x + end, y), CRect(x, y + h, x, y - end));
}

void ABAxis::pointCrossInv(const int& x, const int& y, const unsigned long& color)
{
    const int h = markerSize(parts_.cross);
    const int end = isOnPage() ? h : h + 1;
    markerStrokes(color, CRect(x - h, y - h, x + end, y + end),
                  CRect(x - h, y + h, x + end, y - end));
}

void ABAxis::markerBlock(const unsigned long& color, const CRect& edgesIncluded)
{
    const auto wanted = static_cast<COLORREF>(color);
    CRect block = edgesIncluded;
    if (isFlagSet(axisBitmapMode)) {
        if (dib_)
            dib_->FillRect(block, markerIndex(*this, color));
        return;
    }
    if (!dc_)
        return;
    const CBrush brush(wanted);
    ++block.right;
    ++block.bottom;
    dc_->FillRect(block, &brush);
}

int ABAxis::markerReach() const
{
    return std::max(markerSize(parts_.cross), markerSize(parts_.point) / 2);
}

int ABAxis::markerSize(int part) const
{
    return FigureUnits(dc_).ofFont(fHeight_,
                                   [part](int height) { return sizeOfPart(height, part); });
}

int ABAxis::graphLine(int width) const
{
    return FigureUnits(dc_).ofFont(fHeight_,
                                   [width](int height) { return graphLineWidth(width, height); });
}

int ABAxis::isOnPage() const { return dc_ && dc_->IsVector() && !isFlagSet(axisBitmapMode); }

void ABAxis::point(const int& x, const int& y, const unsigned long& color)
{
    const int size = markerSize(parts_.point);
    const CRect block = dotBlocks(x, x, y, size);
    if (isSquareDot(size, isOnPage()) || isFlagSet(axisBitmapMode)) {
        markerBlock(color, block);
        return;
    }
    if (!dc_)
        return;
    const auto wanted = static_cast<COLORREF>(color);
    const SelectedObject<CPen> pen(*dc_, CPen(PS_NULL, 0, wanted));
    const SelectedObject<CBrush> brush(*dc_, CBrush(wanted));
    const int past = isOnPage() ? 2 : 1;  // without a pen a figure is a unit smaller
    dc_->Ellipse(block.left, block.top, block.right + past, block.bottom + past);
}

void ABAxis::pointBar(const int& x, const int& y, const unsigned long& color)
{
    const int half = markerSize(parts_.cross);
    markerBlock(color, barBlocks(x, x, y, half));
}

void ABAxis::setLineWidth(int width)
{
    lineWidth_ = width;
    if (dib_ && isFlagSet(axisBitmapMode))
        dib_->SetLineWidth(static_cast<short>(std::clamp(width, 0, 0x7FFF)));
}

void ABAxis::setLineStyle(int style)
{
    lineStyle_ = style;
    if (dib_ && isFlagSet(axisBitmapMode))
        dib_->SetLinePattern(patternOf(style));
}

void ABAxis::setColor(COLORREF color)
{
    color_ = color;
    if (dib_ && isFlagSet(axisBitmapMode))
        dib_->SetColor(static_cast<short>(paletteIndex(color)));
}

HPALETTE ABAxis::BeginPalette()
{
    if (!dc_ || !palette_ || !*palette_)
        return nullptr;
    const HPALETTE old = dc_->SelectPalette(*palette_, 0);
    dc_->RealizePalette();
    return old;
}

void ABAxis::EndPalette(HPALETTE old)
{
    if (!dc_ || !old)
        return;
    dc_->SelectPalette(old, 0);
    dc_->RealizePalette();
}

int ABAxis::calcFontHeight(CDC& dc, CRect& rect) const
{
    if (wantedFHeight_ > 0)
        return wantedFHeight_;
    const int limit =
        std::min(rect.Width(), truncated(1.2 * rect.Height())) / std::max(parts_.font, 1);
    const int saved = dc.SaveDC();
    dc.SelectStockObject(DEVICE_DEFAULT_FONT);
    TEXTMETRIC metrics;
    dc.GetTextMetrics(metrics);
    dc.RestoreDC(saved);
    return std::min(limit, truncated(std::abs(metrics.tmHeight) * 1.25 + 0.5));
}

int ABAxis::CreateAxisFont(CFont& font, int height, int bold, double angle)
{
    return CreateFont(font, height, bold, angle, bold ? "Arial Bold" : "Arial");
}

}  // namespace pavane
