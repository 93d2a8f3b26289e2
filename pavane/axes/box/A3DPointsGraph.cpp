#include "pavane/axes/box/A3DPointsGraph.h"

#include "pavane/axes/box/A2_3DAxis.h"
#include "tessel/rounding.h"

#include <algorithm>
#include <cmath>
#include <vector>

namespace pavane
{

void A3DPointsGraph::SetPoints(const double* x, const double* y, const double* z, int count)
{
    x_ = x;
    y_ = y;
    z_ = z;
    count_ = x && y && z ? count : 0;
}

void A3DPointsGraph::SetMarker(int marker, COLORREF color)
{
    marker_ = marker;
    color_ = color;
}

void A3DPointsGraph::SetStalks(int on, COLORREF color)
{
    stalks_ = on;
    stalkColor_ = color;
}

void A3DPointsGraph::setNames(const CString& x, const CString& y, const CString& z)
{
    nameX_ = x;
    nameY_ = y;
    nameZ_ = z;
}

void A3DPointsGraph::getMinMax(TMinMax& range) const
{
    range = TMinMax();
    for (int i = 0; i < count_; ++i) {
        if (!std::isfinite(x_[i]) || !std::isfinite(y_[i]) || !std::isfinite(z_[i]))
            continue;
        range.xMin = std::min(range.xMin, x_[i]);
        range.xMax = std::max(range.xMax, x_[i]);
        range.yMin = std::min(range.yMin, y_[i]);
        range.yMax = std::max(range.yMax, y_[i]);
        range.zMin = std::min(range.zMin, z_[i]);
        range.zMax = std::max(range.zMax, z_[i]);
    }
}

/// From the farthest to the nearest, so that near markers lie over far ones.
void A3DPointsGraph::draw3D(CDC& dc, A2_3DAxis& axis)
{
    std::vector<BoxPoint> points;
    for (int i = 0; i < count_; ++i) {
        const BoxPoint at = axis.boxPoint(*this, x_[i], y_[i], z_[i]);
        if (axis.isInside(*this, at))
            points.push_back(at);
    }
    const BoxView& view = axis.view();
    std::sort(points.begin(), points.end(),
              [&](const BoxPoint& a, const BoxPoint& b) { return view.depth(a) > view.depth(b); });
    axis.setLineStyle(PS_SOLID);
    axis.setLineWidth(std::max(1, axis.graphLine(1)));
    const auto nearest = [](double v) { return truncated(std::floor(v + 0.5)); };
    for (const BoxPoint& at : points) {
        if (stalks_) {
            const BoxPoint stalk[] = {{at.p, at.q, axis.floorOf(*this)}, at};
            axis.setColor(stalkColor_);
            axis.line3D(dc, stalk);
        }
        if (!axis.isSeen(at))
            continue;
        const CPointF seen = view.project(at);
        const int x = nearest(seen.x), y = nearest(seen.y);
        if (marker_ == graphPointDot)
            axis.point(x, y, color_);
        if (marker_ == graphPointCross || marker_ == graphPointStar)
            axis.pointCross(x, y, color_);
        if (marker_ == graphPointCrossInverse || marker_ == graphPointStar)
            axis.pointCrossInv(x, y, color_);
        if (marker_ == graphPointBar)
            axis.pointBar(x, y, color_);
    }
}

}  // namespace pavane
