#include "pavane/axes/maps/AAxisLevelOP.h"

#include "pavane/axes/figure_units.h"
#include "pavane/axes/maps/device_strokes.h"
#include "platform/CDC.h"
#include "tessel/rounding.h"

#include <algorithm>

namespace pavane
{

namespace
{

/// The outermost levels keep this part of the bar away from its ends.
constexpr double endPart = 0.04;

double inset(double position) { return endPart + (1 - 2 * endPart) * position; }

}  // namespace

ScaleTicks AAxisLevelOP::ticks(int /*intervals*/) const
{
    const TMnMx range = graph_->zRange();
    if (range.min > range.max)
        return {};
    ScaleTicks made =
        valueTicks(contours_->levels(*graph_), range.min, range.max, graph_->GetOZName());
    for (ScaleTick& tick : made.ticks)
        tick.position = inset(tick.position);
    return made;
}

void AAxisLevelOP::drawBar(CDC& dc, const CRect& bar, const ScaleTicks& ticks)
{
    dc.FillSolidRect(bar, RGB(255, 255, 255));
    const double least = MapContours::leastDash * FigureUnits(dc).perPixel();
    for (std::size_t i = 0; i < ticks.ticks.size(); ++i) {
        const double value = ticks.ticks[i].value;
        const int at = along(bar, ticks.ticks[i].position);
        if (colors_) {
            const int last = colors_->getNColors() - 1;
            const double from = i ? (ticks.ticks[i].position + ticks.ticks[i - 1].position) / 2 : 0;
            const double to = i + 1 < ticks.ticks.size()
                                  ? (ticks.ticks[i].position + ticks.ticks[i + 1].position) / 2
                                  : 1;
            CRect band = bar;
            if (isHorizontal()) {
                band.left = along(bar, from);
                band.right = along(bar, to);
            } else {
                band.bottom = along(bar, from);
                band.top = along(bar, to);
            }
            dc.FillSolidRect(band,
                             colors_->mapColor(truncated(colors_->scale().position(value) * last)));
        }
        DeviceStrokes strokes(dc, *this, contours_->color(value, colors_),
                              contours_->width(dc, fHeight_));
        const CPointF across[2] = {{static_cast<double>(isHorizontal() ? at : bar.left),
                                    static_cast<double>(isHorizontal() ? bar.top : at)},
                                   {static_cast<double>(isHorizontal() ? at : bar.right),
                                    static_cast<double>(isHorizontal() ? bar.bottom : at)}};
        if (value < 0)
            strokes.dashes(across, 2, std::max(least, fHeight_ * MapContours::dashPart / 2),
                           std::max(least, fHeight_ * MapContours::gapPart / 2));
        else
            strokes.polyline(across, 2);
    }
}

}  // namespace pavane
