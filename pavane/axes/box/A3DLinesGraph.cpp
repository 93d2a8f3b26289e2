#include "pavane/axes/box/A3DLinesGraph.h"

#include "pavane/axes/box/A2_3DAxis.h"
#include "pavane/axes/box/BoxDrawing.h"

#include <algorithm>
#include <cmath>

namespace pavane
{
namespace
{

bool isFinite(const BoxPoint& at)
{
    return std::isfinite(at.p) && std::isfinite(at.q) && std::isfinite(at.s);
}

void widen(double& least, double& greatest, double value)
{
    least = std::min(least, value);
    greatest = std::max(greatest, value);
}

}  // namespace

int A3DLinesGraph::AddCurve(double y, const double* x, const double* z, int count, COLORREF color)
{
    if (!x || !z || count < 1 || !std::isfinite(y))
        return -1;
    curves_.push_back({y, x, z, count, color});
    return GetCurveCount() - 1;
}

void A3DLinesGraph::setNames(const CString& x, const CString& y, const CString& z)
{
    nameX_ = x;
    nameY_ = y;
    nameZ_ = z;
}

void A3DLinesGraph::getMinMax(TMinMax& range) const
{
    range = TMinMax();
    for (const Curve& curve : curves_)
        for (int i = 0; i < curve.count; ++i) {
            if (!std::isfinite(curve.x[i]) || !std::isfinite(curve.z[i]))
                continue;
            widen(range.xMin, range.xMax, curve.x[i]);
            widen(range.yMin, range.yMax, curve.y);
            widen(range.zMin, range.zMax, curve.z[i]);
        }
}

/// Only what is in the range is drawn: a curve is cut where it leaves it.
void A3DLinesGraph::draw3D(CDC& dc, A2_3DAxis& axis)
{
    axis.setLineStyle(PS_SOLID);
    axis.setLineWidth(std::max(1, axis.graphLine(width_)));
    for (const Curve& curve : curves_) {
        std::vector<BoxPoint> line;
        line.reserve(static_cast<std::size_t>(curve.count));
        for (int i = 0; i < curve.count; ++i)
            line.push_back(axis.boxPoint(*this, curve.x[i], curve.y, curve.z[i]));
        axis.setColor(curve.color);
        axis.line3D(dc, axis.insideBox(*this, line));
    }
}

void A3DLinesGraph::addCurtains(const A2_3DAxis& axis, std::vector<BoxCurtain>& curtains) const
{
    if (!filled_)
        return;
    std::vector<BoxPoint> run;
    const auto hang = [&] {
        if (run.size() > 1)
            addCurtain(axis, run, curtains);
        run.clear();
    };
    for (const Curve& curve : curves_) {
        for (int i = 0; i < curve.count; ++i) {
            const BoxPoint at = axis.boxPoint(*this, curve.x[i], curve.y, curve.z[i]);
            if (isFinite(at))
                run.push_back(at);
            else
                hang();  // one sees through gaps
        }
        hang();
    }
}

/// Where the box cuts a line off, its curtain goes on along the edge.
void A3DLinesGraph::addCurtain(const A2_3DAxis& axis, const std::vector<BoxPoint>& run,
                               std::vector<BoxCurtain>& curtains) const
{
    BoxCurtain curtain;
    curtain.floor = axis.floorOf(*this);
    curtain.top = curtain.floor;
    for (const BoxPoint& at : axis.insideBox(*this, run)) {
        if (!isFinite(at))
            continue;
        if (!curtain.line.empty() && at.p < curtain.line.back().p)
            curtain.rises = 0;
        curtain.line.push_back(at);
        curtain.top = std::max(curtain.top, at.s);
    }
    if (curtain.line.size() < 2)
        return;
    if (!curtain.rises && curtain.line.front().p > curtain.line.back().p) {
        std::reverse(curtain.line.begin(), curtain.line.end());
        curtain.rises =
            std::is_sorted(curtain.line.begin(), curtain.line.end(),
                           [](const BoxPoint& a, const BoxPoint& b) { return a.p < b.p; });
    }
    curtains.push_back(std::move(curtain));
}

}  // namespace pavane
