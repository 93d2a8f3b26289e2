#include "pavane/axes/maps/ARgbLegend.h"

#include "pavane/axes/ABAxis.h"
#include "pavane/axes/axis_titles.h"
#include "pavane/axes/figure_units.h"
#include "pavane/axes/maps/map_unit.h"
#include "pavane/axes/SelectedObject.h"
#include "platform/CDC.h"
#include "tessel/value_text.h"

#include <algorithm>
#include <cmath>

namespace pavane
{

namespace
{

constexpr int digits = 3;
constexpr int rampSteps = 32;

/// The value of a unit with the prefix of the greater end of the range.
CString rangeText(TMnMx range, const CString& unitText)
{
    if (range.min > range.max)
        return "no value";
    const MapUnit unit = mapUnit(unitText);
    const double most = std::max(std::fabs(range.min), std::fabs(range.max)) * unit.factor;
    const int power = takesPrefix(unit.name) ? prefixPower(most, digits) : 0;
    const double factor = unit.factor / std::pow(10.0, power);
    const CString name = unit.name.empty() ? "" : ' ' + prefixText(power) + unit.name;
    return valToStr(range.min * factor, digits) + " to " + valToStr(range.max * factor, digits) +
           name;
}

/// Whole characters of UTF-8 from both ends.
CString shortened(const CString& text, std::size_t bytes)
{
    if (text.size() <= bytes)
        return text;
    const auto isInside = [&](std::size_t at) {
        return at < text.size() && (static_cast<unsigned char>(text[at]) & 0xC0) == 0x80;
    };
    std::size_t head = bytes / 2, tail = text.size() - bytes / 2;
    while (head > 0 && isInside(head))
        --head;
    while (isInside(tail))
        ++tail;
    return text.substr(0, head) + "\u2026" + text.substr(tail);
}

COLORREF colorOf(std::size_t band, double part)
{
    const int light = static_cast<int>(std::lround(part * 255));
    return RGB(band == 0 ? light : 0, band == 1 ? light : 0, band == 2 ? light : 0);
}

}  // namespace

void ARgbLegend::draw(CDC& dc, CRect& rect, TMinMax& range)
{
    (void)rect;
    (void)range;
    if (!image_ || !axis() || axis()->isFlagSet(axisBitmapMode))
        return;
    const ABAxis& a = *axis();
    CFont font;
    if (!ABAxis::CreateAxisFont(font, a.getFHeight(), 0, 0.0))
        return;
    const SelectedObject<CFont> selected(dc, font);
    const int air =
        FigureUnits(dc).ofFont(a.getFHeight(), [](int height) { return std::max(2, height / 3); });
    const int ramp = 8 * air;
    const CRect& plot = a.getGraphRect();
    const int most = plot.Width() - ramp - 5 * air;
    CString texts[rgbBands];
    int width = 0, height = 0;
    for (std::size_t i = 0; i < rgbBands; ++i) {
        const RgbBand& band = image_->map().bands[i];
        const CString values = rangeText(image_->range(i), band.unit);
        const CString name = band.name.empty() ? CString(rgbNames[i]) : band.name;
        const auto join = [&](const CString& shown) {
            return CString(shown).append("  ").append(values);
        };
        texts[i] = join(name);
        constexpr std::size_t fewest = 6;
        for (std::size_t bytes = name.size();
             dc.GetTextExtent(texts[i]).cx > most && bytes > fewest;)
            texts[i] = join(shortened(name, --bytes));
        const CSize size = dc.GetTextExtent(texts[i]);
        width = std::max(width, static_cast<int>(size.cx));
        height = std::max(height, static_cast<int>(size.cy));
    }
    const int step = height + air / 2;
    const CRect box(plot.left + air, plot.top + air, plot.left + 4 * air + ramp + width,
                    plot.top + 2 * air + static_cast<int>(rgbBands) * step);
    if (width > most || box.bottom > plot.bottom)
        return;
    dc.FillSolidRect(box, RGB(24, 24, 24));
    dc.SetBkMode(TRANSPARENT);
    dc.SetTextColor(RGB(255, 255, 255));
    for (std::size_t i = 0; i < rgbBands; ++i) {
        const int top = box.top + air / 2 + static_cast<int>(i) * step + air / 4;
        const int left = box.left + air;
        for (int k = 0; k < rampSteps; ++k)
            dc.FillSolidRect(CRect(left + ramp * k / rampSteps, top + air / 2,
                                   left + ramp * (k + 1) / rampSteps, top + height - air / 2),
                             colorOf(i, static_cast<double>(k) / (rampSteps - 1)));
        dc.TextOut(left + ramp + air, top, texts[i]);
    }
}

}  // namespace pavane
