#include "pavane/axes/multi/multi_reading.h"

#include "pavane/axes/axis_titles.h"
#include "pavane/axes/multi/A2DAxisMulti.h"
#include "tessel/time_text.h"
#include "tessel/value_text.h"

#include <algorithm>
#include <cmath>
#include <cstdlib>
#include <limits>

namespace pavane
{

namespace
{

constexpr int valueDigits = 5;
constexpr const char* degrees = "\u00b0";  ///< which stand at their number
/// No pixel of a plot is worth more than this many digits of its x.
constexpr int mostDecimals = 12;

/// Decimals with which neighbouring pixels differ.
int decimalsOf(double step)
{
    if (!(step > 0) || !std::isfinite(step))
        return 0;
    return static_cast<int>(std::clamp(std::ceil(-std::log10(step)), 0.0, 1.0 * mostDecimals));
}

struct Title {
    CString name;
    CString unit;  ///< as it follows a number; empty for none
};

/// "Amplitude [%sJy]" as name and unit.
Title titleOf(const CString& text)
{
    const CString plain = hasPrefixMarker(text)       ? withPrefix(text, "")
                          : hasMultiplierMarker(text) ? withMultiplier(text, "")
                                                      : text;
    const auto open = plain.rfind('[');
    const auto close = plain.rfind(']');
    const int hasUnit = open != plain.npos && close != plain.npos && close > open + 1;
    CString name = hasUnit ? plain.substr(0, open) : plain;
    while (!name.empty() && name.back() == ' ')
        name.pop_back();
    CString unit;
    if (hasUnit)
        unit = plain.substr(open + 1, close - open - 1);
    return {name, unit.empty() || unit.rfind(degrees, 0) == 0 ? unit : ' ' + unit};
}

CString unitOf(const A2DAxisMulti& axis, int scale)
{
    return titleOf(axis.getScale(scale).name).unit;
}

CString valueText(double value) { return valToStr(value, valueDigits); }

const AGraph* graphAt(const A2DAxisMulti& axis, int index)
{
    return index >= 0 && index < axis.childs().count() ? axis.childs()(index) : nullptr;
}

/// The point of the curves of a scale that is nearest to x; `gy` decides between them, -1 for none.
NearestPoint nearestOf(const A2DAxisMulti& axis, int scale, const std::vector<int>& curves,
                       double x, int gy)
{
    NearestPoint best;
    double bestX = 0;
    int bestY = 0;
    for (const int graph : curves) {
        const AGraph& curve = *axis.childs()(graph);
        const int i = curve.nearestPoint(x);
        if (i < 0)
            continue;
        const CurvePoints points = curve.getPoints();
        const double awayX = std::fabs(points.xAt(i) - x);
        const int awayY = gy < 0 ? 0 : std::abs(axis.RPYtoGPY(scale, points.y[i]) - gy);
        if (best.point >= 0 && (awayX > bestX || (awayX == bestX && awayY >= bestY)))
            continue;
        best = {scale, graph, i, points.xAt(i), points.y[i]};
        bestX = awayX;
        bestY = awayY;
    }
    return best;
}

/// x as the pixel of a plot says it, and what the next one is away.
void readX(const A2DAxisMulti& axis, const CRect& plot, int gx, MultiStatus& status)
{
    status.x = xAtPixel(axis, plot, gx);
    status.stepX = std::fabs(xAtPixel(axis, plot, gx + 1) - status.x);
}

void findNearest(const A2DAxisMulti& axis, int gy, MultiStatus& status)
{
    const std::vector<std::vector<int>> curves = curvesByScale(axis);
    for (const MultiLayout::Panel& panel : axis.getLayout().panels)
        for (const int scale : panel.scales) {
            const NearestPoint point =
                nearestOf(axis, scale, curves[static_cast<std::size_t>(scale)], status.x,
                          panel.number == status.panel ? gy : -1);
            if (point.point >= 0)
                status.nearest.push_back(point);
        }
}

}  // namespace

double xAtPixel(const A2DAxisMulti& axis, const CRect& plot, int gx)
{
    ABAxis across(axis.getXDirect(), 1, nullptr, 0);
    across.setMinMax(axis.getMinMax());
    across.setGraphRect(plot);
    return across.GPXtoRPX(gx);
}

int xPixelOf(const A2DAxisMulti& axis, const CRect& plot, double x)
{
    ABAxis across(axis.getXDirect(), 1, nullptr, 0);
    across.setMinMax(axis.getMinMax());
    across.setGraphRect(plot);
    return across.RPXtoGPX(x);
}

MultiStatus statusAt(const A2DAxisMulti& axis, CPoint at)
{
    MultiStatus status;
    const MultiHit hit = axis.hitTest(at);
    status.panel = hit.panel;
    status.scale = hit.scale;
    const MultiLayout::Panel* const panel = axis.getLayout().findPanel(hit.panel);
    if (hit.part != MultiPart::plot || !panel || !(axis.getMinMax().xMin < axis.getMinMax().xMax))
        return status;
    status.inPlot = 1;
    readX(axis, panel->plot, at.x, status);
    findNearest(axis, at.y, status);
    return status;
}

MultiStatus statusOf(const A2DAxisMulti& axis, const MultiFocus& focus)
{
    MultiStatus status;
    const AGraph* const curve = graphAt(axis, focus.graph);
    const MultiLayout::Panel* const panel = axis.getLayout().findPanel(focus.panel);
    if (focus.kind != MultiFocusKind::curve || !curve || !panel || focus.point < 0 ||
        focus.point >= curve->getPoints().n)
        return status;
    const CurvePoints points = curve->getPoints();
    readX(axis, panel->plot, panel->plot.left, status);
    status.inPlot = 1;
    status.panel = focus.panel;
    status.scale = focus.scale;
    status.x = points.xAt(focus.point);
    findNearest(axis, axis.RPYtoGPY(focus.scale, points.y[focus.point]), status);
    for (NearestPoint& point : status.nearest)
        if (point.scale == focus.scale)  // of several at this x, the one that is meant
            point = {focus.scale, focus.graph, focus.point, status.x, points.y[focus.point]};
    return status;
}

CString xText(const A2DAxisMulti& axis, double x, double step)
{
    constexpr int mostOfSecond = 3;
    if (axis.getXDirect() == 2)
        return timeToStr(x, std::min(decimalsOf(step), mostOfSecond));
    constexpr double greatestInFull = 1e9;
    const int inFull = axis.getXDirect() != 0 && std::fabs(x) < greatestInFull;
    // decimals that come and go would make the line tremble
    return (inFull ? nValToStr(x, decimalsOf(step)) : valueText(x)) +
           titleOf(axis.getNameOX()).unit;
}

CString statusText(const A2DAxisMulti& axis, const MultiStatus& status)
{
    if (!status.inPlot)
        return {};
    CString text = xText(axis, status.x, status.stepX);
    const CString caption = axis.getPanelCaption(status.panel);
    if (!caption.empty())
        text += "   " + caption;
    const MultiLayout::Panel* const panel = axis.getLayout().findPanel(status.panel);
    for (const NearestPoint& point : status.nearest) {
        if (!panel || std::find(panel->scales.begin(), panel->scales.end(), point.scale) ==
                          panel->scales.end())
            continue;
        const CString name = curveName(axis, point.graph);
        text += "   " + name + " " + valueText(point.y) + unitOf(axis, point.scale);
        if (std::fabs(point.x - status.x) > status.stepX)
            text += " at " + xText(axis, point.x, status.stepX);
    }
    return text;
}

CString panelName(const A2DAxisMulti& axis, int panel)
{
    const CString caption = axis.getPanelCaption(panel);
    return "Panel " + std::to_string(panel + 1) + " of " + std::to_string(axis.getPanelCount()) +
           (caption.empty() ? caption : ", " + caption);
}

CString scaleName(const A2DAxisMulti& axis, int scale)
{
    const CString name = titleOf(axis.getScale(scale).name).name;
    return name.empty() ? "Scale " + std::to_string(scale + 1) : name;
}

CString scaleRangeText(const A2DAxisMulti& axis, int scale)
{
    const AYScale spec = axis.getScale(scale);
    if (spec.range.min > spec.range.max)
        return "no values";
    return valueText(spec.range.min) + " to " + valueText(spec.range.max) + unitOf(axis, scale) +
           (spec.direct == 0  ? ", logarithmic"
            : spec.direct < 0 ? ", downwards"
                              : "");
}

CString curveName(const A2DAxisMulti& axis, int graph)
{
    const AGraph* const curve = graphAt(axis, graph);
    if (!curve || !curve->getGraphName().empty())
        return curve ? curve->getGraphName() : CString();
    return scaleName(axis, axis.getScaleOf(curve));
}

CString curveText(const A2DAxisMulti& axis, int graph)
{
    const AGraph* const curve = graphAt(axis, graph);
    if (!curve)
        return {};
    const CurvePoints points = curve->getPoints();
    TMnMx y{std::numeric_limits<double>::infinity(), -std::numeric_limits<double>::infinity()};
    for (std::int64_t i = 0; points.y && i < points.n; ++i)
        if (std::isfinite(points.xAt(i)) && std::isfinite(points.y[i])) {
            y.min = std::min(y.min, points.y[i]);
            y.max = std::max(y.max, points.y[i]);
        }
    const CString unit = unitOf(axis, axis.getScaleOf(curve));
    const CString count = std::to_string(points.n) + (points.n == 1 ? " point" : " points");
    return y.min > y.max ? count
                         : count + ", least " + valueText(y.min) + unit + ", greatest " +
                               valueText(y.max) + unit;
}

CString pointText(const A2DAxisMulti& axis, const MultiFocus& focus)
{
    const MultiStatus status = statusOf(axis, focus);
    if (!status.inPlot)
        return {};
    const CurvePoints points = axis.childs()(focus.graph)->getPoints();
    return "Point " + std::to_string(focus.point + 1) + " of " + std::to_string(points.n) + ": " +
           xText(axis, status.x, status.stepX) + ", " + valueText(points.y[focus.point]) +
           unitOf(axis, focus.scale);
}

}  // namespace pavane
