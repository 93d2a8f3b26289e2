#include "pavane/axes/multi/AGraphXYErrors.h"

#include "pavane/axes/ABAxis.h"
#include "pavane/axes/AxisPenState.h"
#include "pavane/axes/range_repair.h"
#include "pavane/axes/SelectedObject.h"

#include <algorithm>
#include <cmath>
#include <cstdlib>
#include <memory>
#include <utility>

namespace pavane
{

namespace
{

/// A colour half on its way to the ground, so that bars stay behind the points.
COLORREF faint(COLORREF color, COLORREF ground)
{
    return RGB((GetRValue(color) + GetRValue(ground)) / 2,
               (GetGValue(color) + GetGValue(ground)) / 2,
               (GetBValue(color) + GetBValue(ground)) / 2);
}

}  // namespace

/// Strokes bars in the raster of an axis or in its context, with one pen for all.
class AGraphXYErrors::Bars
{
public:
    Bars(ABAxis& axis, CDC& dc, int width, COLORREF color)
        : axis_(axis), dc_(dc), state_(axis), cap_(axis.markerSize(axis.parts().cross)),
          past_(axis.isOnPage() ? 0 : 1)
    {
        axis.setLineStyle(PS_SOLID);
        axis.setLineWidth(axis.graphLine(width));
        axis.setColor(color);
        if (!axis.isFlagSet(axisBitmapMode))
            pen_ = std::make_unique<SelectedObject<CPen>>(
                dc, CPen(PS_SOLID, axis.graphLine(width), color));
    }

    /// Between pixels of the plot; an end that is cut off there has no cap.
    struct End {
        int at;
        int isCut;
    };
    void upright(int x, End low, End high)
    {
        if (isOutside(low, high))
            return;
        stroke(x, low.at, x, high.at);
        for (const End& end : {low, high})
            if (isCapped_ && !end.isCut)
                stroke(x - cap_, end.at, x + cap_, end.at);
    }
    void level(End left, End right, int y)
    {
        if (isOutside(left, right))
            return;
        stroke(left.at, y, right.at, y);
        for (const End& end : {left, right})
            if (isCapped_ && !end.isCut)
                stroke(end.at, y - cap_, end.at, y + cap_);
    }
    int cap() const { return cap_; }
    void dropCaps() { isCapped_ = 0; }

private:
    static bool isOutside(End a, End b) { return a.isCut && b.isCut && a.at == b.at; }
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
    int isCapped_ = 1;
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
    const bool isXLog = axis() && axis()->getXDirect() == 0;
    const bool isYLog = axis() && axis()->getYDirect() == 0;
    for (int i = 0; i < count_; ++i) {
        if (!std::isfinite(x_[i]) || !std::isfinite(y_[i]))
            continue;
        double low = 0;
        double high = 0;
        if (yBar(i, low, high)) {
            if (low > 0 || !isYLog)
                widen(range.yMin, range.yMax, low);
            widen(range.yMin, range.yMax, high);
        }
        if (xBar(i, low, high)) {
            if (low > 0 || !isXLog)
                widen(range.xMin, range.xMax, low);
            widen(range.xMin, range.xMax, high);
        }
    }
}

/// Whether most bars stand so near to the one before that their caps would touch.
bool AGraphXYErrors::areCrowded(int cap) const
{
    int near = 0;
    int bars = 0;
    int last = 0;
    double low = 0;
    double high = 0;
    for (int i = 0; i < count_; ++i) {
        const double across = axis()->RPXtoWPX(x_[i]);
        if (!(across >= 0 && across <= 1) || !yBar(i, low, high))
            continue;
        const int x = axis()->RPXtoGPX(x_[i]);
        near += bars++ > 0 && std::abs(x - last) <= 2 * cap;
        last = x;
    }
    return 2 * near > bars;
}

void AGraphXYErrors::drawBars(CDC& dc)
{
    ABAxis& plot = *axis();
    const CRect g = plot.getGraphRect();
    Bars bars(plot, dc, style2_, faint(color_, plot.workColor(0)));
    if (areCrowded(bars.cap()))
        bars.dropCaps();
    using End = Bars::End;
    const auto yAt = [&](double y) {
        const int none = plot.getYDirect() < 0 ? g.top : g.bottom;
        const double part = plot.RPYtoWPY(y);
        if (std::isnan(part))
            return End{none, 1};
        return End{std::clamp(plot.RPYtoGPY(y), g.top, g.bottom), part < 0 || part > 1};
    };
    const auto xAt = [&](double x) {
        const int none = plot.getXDirect() < 0 ? g.right : g.left;
        const double part = plot.RPXtoWPX(x);
        if (std::isnan(part))
            return End{none, 1};
        return End{std::clamp(plot.RPXtoGPX(x), g.left, g.right), part < 0 || part > 1};
    };
    const auto isInside = [](double fraction) { return fraction >= 0 && fraction <= 1; };
    for (int i = 0; i < count_; ++i) {
        double low = 0;
        double high = 0;
        if (isInside(plot.RPXtoWPX(x_[i])) && yBar(i, low, high))
            bars.upright(plot.RPXtoGPX(x_[i]), yAt(low), yAt(high));
        if (isInside(plot.RPYtoWPY(y_[i])) && xBar(i, low, high))
            bars.level(xAt(low), xAt(high), plot.RPYtoGPY(y_[i]));
    }
}

void AGraphXYErrors::draw(CDC& dc, CRect& rect, TMinMax& range)
{
    if (!axis() || !y_)
        return;
    if (parts_ != ErrorParts::points)
        drawBars(dc);
    if (parts_ != ErrorParts::bars)
        AGraphXYPoint::draw(dc, rect, range);
}

void AGraphXYErrors::drawSample(CDC& dc, const CRect& box)
{
    if (!axis())
        return;
    {
        Bars bars(*axis(), dc, style2_, faint(color_, axis()->workColor(0)));
        const CPoint centre = box.CenterPoint();
        if (yErrors_.less || !xErrors_.less)
            bars.upright(centre.x, {box.top + 1, 0}, {box.bottom - 2, 0});
        if (xErrors_.less)
            bars.level({box.left + 1, 0}, {box.right - 2, 0}, centre.y);
    }
    AGraphXYPoint::drawSample(dc, box);
}

}  // namespace pavane
