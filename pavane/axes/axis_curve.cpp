#include "pavane/axes/axis_curve.h"

#include "pavane/axes/ABAxis.h"
#include "pavane/axes/AxisPenState.h"
#include "pavane/axes/graph_styles.h"
#include "pavane/axes/SelectedObject.h"
#include "pavane/images/ADIBase.h"
#include "platform/smooth_curve.h"

#include <algorithm>
#include <bit>
#include <cmath>
#include <cstdint>
#include <cstdlib>
#include <limits>
#include <memory>
#include <vector>

namespace pavane
{
namespace
{

/// Curves up to this length go out point by point where fractions count: dashes run on and corners
/// are exact. Longer ones are reduced on a grid of parts of a pixel.
constexpr std::int64_t mostExactPoints = 20000;
constexpr int partsOfPixel = 16;
/// Curves with more points to a column of pixels are drawn as one stroke, whose time is that of the
/// picture's size.
constexpr std::int64_t pointsOfColumn = 2;
/// Logarithms are kept for curves up to this length; longer ones are reduced before.
constexpr std::int64_t mostLogarithms = 1 << 22;

CurveScale scaleOf(int direct, double min, double max, TMnMx logs, int start, int end, bool forward)
{
    CurveScale scale;
    scale.logarithmic = direct == 0;
    if (scale.logarithmic && logs.min > logs.max)
        logs = {std::log10(min), std::log10(max)};
    scale.first = scale.logarithmic ? logs.min : min;
    scale.span = scale.logarithmic ? logs.max - logs.min : max - min;
    scale.length = static_cast<double>(end) - start;
    scale.base = forward ? start : end;
    scale.sign = forward ? 1 : -1;
    return scale;
}

CurveScale finer(CurveScale scale)
{
    scale.length *= partsOfPixel;
    scale.base *= partsOfPixel;
    return scale;
}

/// The pixels that can show something of a curve whose pen is `width` wide.
CRect visibleRect(const ABAxis& axis, int width)
{
    CRect visible = axis.getGraphRect();
    visible.InflateRect(width, width);
    ++visible.right;
    ++visible.bottom;
    return visible;
}

struct Bounds {
    double left, top, right, bottom;
};

/// Cuts `t0`..`t1` to where a + t d lies in low..high; false when nothing is left.
bool cutSpan(double a, double d, double low, double high, double& t0, double& t1)
{
    if (d == 0)
        return a >= low && a <= high;
    const double u = (low - a) / d;
    const double v = (high - a) / d;
    t0 = std::max(t0, std::min(u, v));
    t1 = std::min(t1, std::max(u, v));
    return t0 <= t1;
}

/// Collects the visible parts of a curve, point by point.
class ClippedCurve
{
public:
    ClippedCurve(CDC& dc, const Bounds& bounds) : dc_(dc), bounds_(bounds) {}
    ~ClippedCurve() { flush(); }
    ClippedCurve(const ClippedCurve&) = delete;
    ClippedCurve& operator=(const ClippedCurve&) = delete;

    void gap()
    {
        flush();
        hasLast_ = false;
    }
    void add(CPointF point)
    {
        if (hasLast_)
            addSegment(last_, point);
        last_ = point;
        hasLast_ = true;
    }

private:
    void addSegment(CPointF a, CPointF b)
    {
        double t0 = 0;
        double t1 = 1;
        const CPointF d{b.x - a.x, b.y - a.y};
        if (!cutSpan(a.x, d.x, bounds_.left, bounds_.right, t0, t1) ||
            !cutSpan(a.y, d.y, bounds_.top, bounds_.bottom, t0, t1)) {
            flush();
            return;
        }
        if (t0 > 0)
            flush();
        if (line_.empty())
            line_.push_back({a.x + t0 * d.x, a.y + t0 * d.y});
        line_.push_back({a.x + t1 * d.x, a.y + t1 * d.y});
        if (t1 < 1)
            flush();
    }
    void flush()
    {
        if (line_.size() > 1)
            dc_.PolylineF(line_.data(), static_cast<int>(line_.size()));
        line_.clear();
    }

    CDC& dc_;
    Bounds bounds_;
    std::vector<CPointF> line_;
    CPointF last_;
    bool hasLast_ = false;
};

void drawExactly(const ABAxis& axis, CDC& dc, const CurvePoints& points, int width)
{
    const CRect visible = visibleRect(axis, width + 2);
    ClippedCurve curve(dc,
                       {static_cast<double>(visible.left), static_cast<double>(visible.top),
                        static_cast<double>(visible.right), static_cast<double>(visible.bottom)});
    for (std::int64_t i = 0; i < points.n; ++i) {
        const CPointF p = axis.RPtoGPF(points.xAt(i), points.y[i]);
        if (std::isfinite(p.x) && std::isfinite(p.y))
            curve.add(p);
        else
            curve.gap();
    }
}

/// On a page a unit is a fraction of a pixel already; a smooth picture gets a finer grid.
void drawReduced(const ABAxis& axis, CDC& dc, const CurvePoints& points, int width)
{
    const bool page = dc.IsVector() != 0;
    CRect visible = visibleRect(axis, width + 1);
    if (!page)
        visible = CRect(visible.left * partsOfPixel, visible.top * partsOfPixel,
                        visible.right * partsOfPixel, visible.bottom * partsOfPixel);
    const CurveScale x = curveScaleX(axis);
    const CurveScale y = curveScaleY(axis);
    const double part = page ? 1.0 : 1.0 / partsOfPixel;
    std::vector<CPointF> line;
    reduceCurve(points, page ? x : finer(x), page ? y : finer(y), visible,
                page ? width : width * partsOfPixel, [&](const CPoint* p, int count) {
                    line.clear();
                    for (int i = 0; i < count; ++i)
                        line.push_back({p[i].x * part, p[i].y * part});
                    dc.PolylineF(line.data(), count);
                });
}

/// How a scale that is not logarithmic takes values to pixels: the origin and the pixels of a unit.
void linearScale(const CurveScale& scale, double& origin, double& perUnit)
{
    perUnit = scale.sign * scale.length / scale.span;
    origin = scale.base - perUnit * scale.first;
}

/// As one smooth stroke; 0 where the context or the order of the points does not allow that.
int drawStroke(const ABAxis& axis, CDC& dc, const CurvePoints& points, int width, COLORREF color)
{
    CurveData curve{points.x, points.y, points.n, points.xFirst, points.xStep};
    const CurveScale x = curveScaleX(axis);
    const CurveScale y = curveScaleY(axis);
    linearScale(x, curve.xOrigin, curve.xScale);
    linearScale(y, curve.yOrigin, curve.yScale);
    std::vector<double> logX;
    std::vector<double> logY;
    if (x.logarithmic || y.logarithmic) {
        if (points.n > mostLogarithms)
            return 0;
        for (std::int64_t i = 0; x.logarithmic && i < points.n; ++i)
            logX.push_back(std::log10(points.xAt(i)));
        for (std::int64_t i = 0; y.logarithmic && i < points.n; ++i)
            logY.push_back(std::log10(points.y[i]));
        curve.x = x.logarithmic ? logX.data() : curve.x;
        curve.y = y.logarithmic ? logY.data() : curve.y;
    }
    const int saved = dc.SaveDC();
    dc.IntersectClipRect(visibleRect(axis, width + 2));
    const int drawn = strokeCurve(dc, curve, width, color);
    dc.RestoreDC(saved);
    return drawn;
}

void drawPixels(const ABAxis& axis, CDC& dc, const CurvePoints& points, int style, int width,
                COLORREF color)
{
    reduceCurve(points, curveScaleX(axis), curveScaleY(axis), visibleRect(axis, width), width,
                [&](const CPoint* p, int count) {
                    if (count > 1)
                        dc.Polyline(p, count);
                    if (style == PS_SOLID && width <= 1)
                        dc.SetPixelV(p[count - 1].x, p[count - 1].y, color);
                });
}

/// A dashed curve in the raster. Each of its lines begins a new pattern, so the pattern is turned
/// on by the steps of the lines before; else curves of short segments would look solid.
void drawDashedInRaster(const ABAxis& axis, ADIBase& dib, const CurvePoints& points)
{
    const int width = std::max<int>(dib.GetLineWidth(), 1);
    const int pattern = dib.GetLinePattern();
    long long steps = 0;
    reduceCurve(points, curveScaleX(axis), curveScaleY(axis), visibleRect(axis, width), width,
                [&](const CPoint* p, int count) {
                    for (int i = 1; i < count; ++i) {
                        const int turn = static_cast<int>(steps / width % 32);
                        dib.SetLinePattern(
                            static_cast<int>(std::rotr(static_cast<std::uint32_t>(pattern), turn)));
                        dib.Line(p[i - 1].x, p[i - 1].y, p[i].x, p[i].y);
                        steps += std::max(std::llabs(0LL + p[i].x - p[i - 1].x),
                                          std::llabs(0LL + p[i].y - p[i - 1].y));
                    }
                });
    dib.SetLinePattern(pattern);
}

/// The points of a curve with a gap wherever two neighbours lie more than half a period apart.
struct BrokenCurve {
    std::vector<double> x;
    std::vector<double> y;

    BrokenCurve(const CurvePoints& points, double period)
    {
        constexpr double gap = std::numeric_limits<double>::quiet_NaN();
        const auto n = static_cast<std::size_t>(points.n);
        x.reserve(n + n / 8);
        y.reserve(n + n / 8);
        for (std::int64_t i = 0; i < points.n; ++i) {
            if (i > 0 && std::fabs(points.y[i] - points.y[i - 1]) > period / 2) {
                x.push_back(gap);
                y.push_back(gap);
            }
            x.push_back(points.xAt(i));
            y.push_back(points.y[i]);
        }
    }
    CurvePoints points() const { return {x.data(), y.data(), static_cast<std::int64_t>(x.size())}; }
};

}  // namespace

int drawsFractions(CDC& dc)
{
    const int smooth = dc.SetSmooth(0);
    dc.SetSmooth(smooth);
    return smooth || dc.IsVector();
}

CurveScale curveScaleX(const ABAxis& axis)
{
    const TMinMax& range = axis.getMinMax();
    const CRect& graph = axis.getGraphRect();
    return scaleOf(axis.getXDirect(), range.xMin, range.xMax, axis.logX(), graph.left, graph.right,
                   axis.getXDirect() >= 0);
}

CurveScale curveScaleY(const ABAxis& axis)
{
    const TMinMax& range = axis.getMinMax();
    const CRect& graph = axis.getGraphRect();
    return scaleOf(axis.getYDirect(), range.yMin, range.yMax, axis.logY(), graph.top, graph.bottom,
                   axis.getYDirect() < 0);
}

void drawLineSample(ABAxis& axis, const CRect& box, int style, int width, COLORREF color)
{
    if (style == PS_NULL)
        return;
    const AxisPenState state(axis);
    axis.setLineStyle(style);
    axis.setLineWidth(axis.graphLine(width));
    axis.setColor(color);
    const int y = box.CenterPoint().y;
    axis.line(box.left, y, box.right, y);
}

void drawAxisCurve(ABAxis& axis, CDC& dc, const CurvePoints& all, int style, int width,
                   COLORREF color)
{
    if (!all.y || all.n < 1 || style == PS_NULL)
        return;
    const std::unique_ptr<BrokenCurve> broken(
        axis.yPeriod() > 0 ? std::make_unique<BrokenCurve>(all, axis.yPeriod()) : nullptr);
    const CurvePoints points = broken ? broken->points() : all;
    const int deviceWidth = axis.graphLine(width);
    if (axis.isFlagSet(axisBitmapMode)) {
        if (!axis.dib())
            return;
        const AxisPenState state(axis);
        axis.setLineStyle(style);
        axis.setLineWidth(deviceWidth);
        axis.setColor(color);
        if (style == PS_SOLID)
            drawCurve(*axis.dib(), points, curveScaleX(axis), curveScaleY(axis));
        else
            drawDashedInRaster(axis, *axis.dib(), points);
        return;
    }
    const SelectedObject<CPen> pen(dc, CPen(style, deviceWidth, color));
    if (!drawsFractions(dc))
        drawPixels(axis, dc, points, style, deviceWidth, color);
    else if (style == PS_SOLID && points.n > pointsOfColumn * axis.getGraphRect().Width() &&
             drawStroke(axis, dc, points, deviceWidth, color))
        return;
    else if (points.n <= mostExactPoints)
        drawExactly(axis, dc, points, deviceWidth);
    else
        drawReduced(axis, dc, points, deviceWidth);
}

}  // namespace pavane
