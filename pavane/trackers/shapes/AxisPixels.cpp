#include "pavane/trackers/shapes/AxisPixels.h"

#include "pavane/axes/ABAxis.h"
#include "tessel/rounding.h"

#include <cmath>

namespace pavane
{

CPoint AxisPixels::pixel(const APoint<double>& p) const
{
    if (!axis_)
        return {truncated(p.x), truncated(p.y)};
    return {axis_->RPXtoGPX(p.x), axis_->RPYtoGPY(p.y)};
}

CPointF AxisPixels::finePixel(const APoint<double>& p) const
{
    if (axis_) {
        const CPointF fine = axis_->RPtoGPF(p.x, p.y);
        if (std::isfinite(fine.x) && std::isfinite(fine.y))
            return fine;
    }
    const CPoint whole = pixel(p);
    return {static_cast<double>(whole.x), static_cast<double>(whole.y)};
}

ARect<double> AxisPixels::finePixels(const ARect<double>& rect) const
{
    const CPointF a = finePixel({rect.left, rect.top});
    const CPointF b = finePixel({rect.right, rect.bottom});
    return {a.x, a.y, b.x, b.y};
}

APoint<double> AxisPixels::value(CPoint p) const
{
    if (!axis_)
        return {static_cast<double>(p.x), static_cast<double>(p.y)};
    return {axis_->GPXtoRPX(p.x), axis_->GPYtoRPY(p.y)};
}

CRect AxisPixels::pixels(const ARect<double>& rect) const
{
    const CPoint a = pixel({rect.left, rect.top});
    const CPoint b = pixel({rect.right, rect.bottom});
    return {a.x, a.y, b.x, b.y};
}

int AxisPixels::usable() const
{
    if (!axis_)
        return 1;
    const CRect& rect = axis_->getGraphRect();
    const TMinMax& range = axis_->getMinMax();
    if (rect.left == rect.right || rect.top == rect.bottom || !(range.xMin < range.xMax) ||
        !(range.yMin < range.yMax))
        return 0;
    const APoint<double> a = value({rect.left, rect.top});
    const APoint<double> b = value({rect.right, rect.bottom});
    return isFinite(a) && isFinite(b) && a.x != b.x && a.y != b.y && std::isfinite(b.x - a.x) &&
           std::isfinite(b.y - a.y);
}

int AxisPixels::bounds(CRect& rect) const
{
    if (!axis_)
        return 0;
    rect = axis_->getGraphRect();
    rect.NormalizeRect();
    return 1;
}

APoint<double> AxisPixels::unitsPerPixel(CPoint p) const
{
    const APoint<double> a = value({saturatedSum(p.x, -1), saturatedSum(p.y, -1)});
    const APoint<double> b = value({saturatedSum(p.x, 1), saturatedSum(p.y, 1)});
    const APoint<double> units{std::abs(b.x - a.x) / 2, std::abs(b.y - a.y) / 2};
    return isFinite(units) ? units : APoint<double>();
}

bool isFinite(const APoint<double>& p) { return std::isfinite(p.x) && std::isfinite(p.y); }

bool isFinite(const ARect<double>& r)
{
    return isFinite(APoint<double>{r.left, r.top}) && isFinite(APoint<double>{r.right, r.bottom});
}

}  // namespace pavane
