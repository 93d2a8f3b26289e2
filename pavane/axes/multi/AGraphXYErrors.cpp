#include "pavane/axes/multi/AGraphXYErrors.h"

#include "pavane/axes/ABAxis.h"
#include "pavane/axes/axis_settings.h"
#include "pavane/axes/AxisPenState.h"
#include "pavane/axes/range_repair.h"
#include "pavane/axes/SelectedObject.h"

#include <algorithm>
#include <cmath>
#include <memory>
#include <utility>

namespace pavane
{

/// Strokes bars in the raster of an axis or in its context, with one pen for all.
class AGraphXYErrors::Bars
{
public:
    Bars(ABAxis& axis, CDC& dc, int width, COLORREF color)
        : axis_(axis), dc_(dc), state_(axis), cap_(axis.markerSize(GetPartCrossHeight())),
          past_(axis.isOnPage() ? 0 : 1)
    {
        axis.setLineStyle(PS_SOLID);
        axis.setLineWidth(axis.graphLine(width));
        axis.setColor(color);
        if (!axis.isFlagSet(axisBitmapMode))
            pen_ = std::make_unique<SelectedObject<CPen>>(
                dc, CPen(PS_SOLID, axis.graphLine(width), color));
    }

    void upright(int x, int y1, int y2)
    {
        stroke(x, y1, x, y2);
        for (const int y : {y1, y2})
            stroke(x - cap_, y, x + cap_, y);
    }
    void level(int x1, int x2, int y)
    {
        stroke(x1, y, x2, y);
        for (const int x : {x1, x2})
            stroke(x, y - cap_, x, y + cap_);
    }
    int cap() const { return cap_; }

private:
    /// Along an axis, both ends included.
    void stroke(int x1, int y1, int x2, int y2)
    {
        if (x1 > x2)
            std::swap(x1, x2);
        if (y1 > y2)
            std::swap(y1, y2);
        (x1 == x2 ? y2 : x2) += past_;
        if (!pen_) {
            axis_.line(x1, y1, x2, y2);
            return;
        }
        dc_.MoveTo(x1, y1);
        dc_.LineTo(x2, y2);
    }

    ABAxis& axis_;
    CDC& dc_;
    AxisPenState state_;
    std::unique_ptr<SelectedObject<CPen>> pen_;
    int cap_;
    int past_;
};

void AGraphXYErrors::setYErrors(const double* below, const double* above)
{
    yErrors_ = {below, above ? above : below};
}

void AGraphXYErrors::setXErrors(const double* before, const double* behind)
{
    xErrors_ = {before, behind ? behind : before};
}

bool AGraphXYErrors::Errors::bar(const double* values, int i, double& low, double& high) const
{
    const auto reach = [i](const double* errors) {
        return errors && std::isfinite(errors[i]) && errors[i] > 0 ? errors[i] : 0;
    };
    const double below = reach(less);
    const double above = reach(more);
    low = values[i] - below;
    high = values[i] + above;
    return (below > 0 || above > 0) && std::isfinite(low) && std::isfinite(high);
}

void AGraphXYErrors::getMinMax(TMinMax& range) const
{
    AGraphXYPoint::getMinMax(range);
    if (ownRange_.xMin != unsetMinimum || !y_)
        return;
    for (int i = 0; i < count_; ++i) {
        if (!std::isfinite(x_[i]) || !std::isfinite(y_[i]))
            continue;
        double low = 0;
        double high = 0;
        if (yErrors_.bar(y_, i, low, high)) {
            widen(range.yMin, range.yMax, low);
            widen(range.yMin, range.yMax, high);
        }
        if (xErrors_.bar(x_, i, low, high)) {
            widen(range.xMin, range.xMax, low);
            widen(range.xMin, range.xMax, high);
        }
    }
}

void AGraphXYErrors::draw(CDC& dc, CRect& rect, TMinMax& range)
{
    if (!axis() || !y_)
        return;
    ABAxis& plot = *axis();
    const CRect g = plot.getGraphRect();
    {
        Bars bars(plot, dc, style2_, color_);
        // What ends further away than a cap is wide ends outside, wherever that is.
        const int away = 2 * bars.cap() + plot.graphLine(style2_) + 2;
        const auto yAt = [&](double y) {
            const int none = plot.getYDirect() < 0 ? g.top - away : g.bottom + away;
            return std::isnan(plot.RPYtoWPY(y))
                       ? none
                       : std::clamp(plot.RPYtoGPY(y), g.top - away, g.bottom + away);
        };
        const auto xAt = [&](double x) {
            const int none = plot.getXDirect() < 0 ? g.right + away : g.left - away;
            return std::isnan(plot.RPXtoWPX(x))
                       ? none
                       : std::clamp(plot.RPXtoGPX(x), g.left - away, g.right + away);
        };
        const auto isInside = [](double fraction) { return fraction >= 0 && fraction <= 1; };
        for (int i = 0; i < count_; ++i) {
            double low = 0;
            double high = 0;
            if (isInside(plot.RPXtoWPX(x_[i])) && yErrors_.bar(y_, i, low, high))
                bars.upright(plot.RPXtoGPX(x_[i]), yAt(low), yAt(high));
            if (isInside(plot.RPYtoWPY(y_[i])) && xErrors_.bar(x_, i, low, high))
                bars.level(xAt(low), xAt(high), plot.RPYtoGPY(y_[i]));
        }
    }
    AGraphXYPoint::draw(dc, rect, range);
}

void AGraphXYErrors::drawSample(CDC& dc, const CRect& box)
{
    if (!axis())
        return;
    {
        Bars bars(*axis(), dc, style2_, color_);
        const CPoint centre = box.CenterPoint();
        if (yErrors_.less || !xErrors_.less)
            bars.upright(centre.x, box.top + 1, box.bottom - 2);
        if (xErrors_.less)
            bars.level(box.left + 1, box.right - 2, centre.y);
    }
    AGraphXYPoint::drawSample(dc, box);
}

}  // namespace pavane
