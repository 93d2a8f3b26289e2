#include "pavane/axes/AxisPenState.h"
#include "pavane/axes/figure_units.h"
#include "pavane/axes/fitted_text.h"
#include "pavane/axes/multi/A2DAxisMulti.h"
#include "pavane/axes/multi/AGraphXYErrors.h"
#include "pavane/axes/SelectedObject.h"

#include <algorithm>
#include <array>
#include <cmath>

namespace pavane
{
namespace
{

/// Emptiness is judged by about so many points of a graph: of each corner for a legend, which hides
/// what is below, and for captions, of which there may be many.
constexpr std::int64_t legendPoints = 4000;
constexpr std::int64_t captionPoints = 200;

/// Non-zero when the line from a to b, or the single point, touches the box.
bool touches(CPointF a, CPointF b, const CRect& box)
{
    double t0 = 0;
    double t1 = 1;
    const auto cut = [&](double from, double step, double low, double high) {
        if (step == 0)
            return from >= low && from <= high;
        const double u = (low - from) / step;
        const double v = (high - from) / step;
        t0 = std::max(t0, std::min(u, v));
        t1 = std::min(t1, std::max(u, v));
        return t0 <= t1;
    };
    return cut(a.x, b.x - a.x, box.left, box.right) && cut(a.y, b.y - a.y, box.top, box.bottom);
}

}  // namespace

/// Where a point of a scale lies in its panel.
CPointF A2DAxisMulti::placeOf(const CRect& plot, const DirectionMap& map, double rx,
                              double ry) const
{
    const double x = layout_.xMap.fraction(rx);
    const double y = map.fraction(ry);
    return {plot.left + plot.Width() * (xDirect_ < 0 ? 1 - x : x),
            plot.bottom - plot.Height() * (map.direct < 0 ? 1 - y : y)};
}

/// How many of the error bars of a point touch a box. An end that the scale does not have lies at
/// the edge of the plot.
int A2DAxisMulti::hiddenBars(const AGraphXYErrors& graph, int i, const CRect& plot,
                             const DirectionMap& map, const CRect& box) const
{
    const CurvePoints points = graph.getPoints();
    double low = 0;
    double high = 0;
    const auto hides = [&](CPointF from, CPointF to) {
        from.x = std::isfinite(from.x) ? from.x : plot.left;
        from.y = std::isfinite(from.y) ? from.y : plot.bottom;
        return std::isfinite(to.x) && std::isfinite(to.y) && touches(from, to, box);
    };
    int hidden = 0;
    if (graph.yBar(i, low, high))
        hidden +=
            hides(placeOf(plot, map, points.xAt(i), low), placeOf(plot, map, points.xAt(i), high));
    if (graph.xBar(i, low, high))
        hidden +=
            hides(placeOf(plot, map, low, points.y[i]), placeOf(plot, map, high, points.y[i]));
    return hidden;
}

/// How much of the curves, points and error bars of a panel lies under a box.
int A2DAxisMulti::hiddenPoints(const MultiLayout::Panel& panel, const CRect& box,
                               std::int64_t most) const
{
    int hidden = 0;
    const CRect& plot = panel.plot;
    for (int i = 0; i < childs_.count(); ++i) {
        const int scale = std::max(knownScaleOf(childs_(i)), 0);
        const CurvePoints points = childs_(i)->getPoints();
        if (panelOfScale(scale) != &panel || !points.y)
            continue;
        const AYScale spec = getScale(scale);
        const DirectionMap map{spec.direct, spec.range};
        const auto* const errors = dynamic_cast<const AGraphXYErrors*>(childs_(i));
        const bool isLine = !dynamic_cast<const AGraphXYPoint*>(childs_(i));
        const std::int64_t step = std::max<std::int64_t>(1, points.n / most);
        CPointF last{NAN, NAN};
        for (std::int64_t k = 0; k < points.n; k += step) {
            if (k > 0 && spec.period > 0 &&
                std::fabs(points.y[k] - points.y[k - step]) > spec.period / 2)
                last = {NAN, NAN};
            const CPointF point = placeOf(plot, map, points.xAt(k), points.y[k]);
            const bool isPoint = std::isfinite(point.x) && std::isfinite(point.y);
            const bool isJoined = isLine && std::isfinite(last.x) && std::isfinite(last.y);
            hidden += isPoint && touches(isJoined ? last : point, point, box);
            if (isPoint && errors)
                hidden += hiddenBars(*errors, static_cast<int>(k), plot, map, box);
            last = point;
        }
    }
    return hidden;
}

/// The place of a legend: in its corner, below the texts that are there; empty for no room.
CRect A2DAxisMulti::legendBox(const MultiLayout::Panel& panel, CSize size) const
{
    const CRect& plot = panel.plot;
    const int inset = fHeight_ / 2;
    CRect best;
    int least = -1;
    for (const int corner : {legendTopRight, legendTopLeft, legendBottomRight, legendBottomLeft}) {
        if (legend_ != legendEmptiest && legend_ != corner)
            continue;
        const bool isLeft = corner == legendTopLeft || corner == legendBottomLeft;
        const bool isTop = corner == legendTopLeft || corner == legendTopRight;
        CRect box(0, 0, size.cx, size.cy);
        box.OffsetRect(isLeft ? plot.left + inset : plot.right - inset - size.cx,
                       isTop ? plot.top + inset : plot.bottom - inset - size.cy);
        for (const MultiLayout::Text& text : layout_.texts) {
            CRect both;
            if (text.part == MultiPart::plot && both.IntersectRect(text.box, box))
                box.OffsetRect(0, (isTop ? text.box.bottom - box.top + inset / 2
                                         : text.box.top - box.bottom - inset / 2));
        }
        if (box.top < plot.top || box.bottom > plot.bottom || box.left < plot.left)
            continue;
        const int hidden = hiddenPoints(panel, box, legendPoints);
        if (least < 0 || hidden < least) {
            least = hidden;
            best = box;
        }
    }
    return best;
}

void A2DAxisMulti::placeLegend(CDC& dc, const MultiLayout::Panel& panel, std::set<CString>& seen)
{
    const int h = fHeight_;
    const int line = h + h / 4;
    const int sample = 2 * h;
    const int air = h / 2;
    const int room = panel.plot.Width() - 2 * air;
    const int mostLines = (panel.plot.Height() - 3 * air) / line;
    std::vector<CString> names;
    std::set<CString> own;
    MultiLayout::Legend legend;
    legend.panel = panel.number;
    int width = 0;
    for (int i = 0; i < childs_.count() && static_cast<int>(names.size()) < mostLines; ++i) {
        const CString& name = childs_(i)->getGraphName();
        if (name.empty() || panelOfScale(knownScaleOf(childs_(i))) != &panel || seen.count(name) ||
            own.count(name))
            continue;
        const CString fitted = fittedLine(dc, name, room - sample - 3 * air);
        if (fitted.empty())
            continue;
        own.insert(name);
        names.push_back(fitted);
        legend.lines.push_back({i, {}});
        width = std::max(width, dc.GetTextExtent(fitted).cx);
    }
    if (names.empty())
        return;
    const CSize size{sample + width + 3 * air, static_cast<int>(names.size()) * line + air};
    legend.box = legendBox(panel, size);
    if (legend.box.IsRectEmpty())
        return;
    seen.merge(own);
    for (std::size_t i = 0; i < names.size(); ++i) {
        const int top = legend.box.top + air / 2 + static_cast<int>(i) * line + h / 8;
        const int left = legend.box.left + air;
        legend.lines[i].sample = CRect(left, top, left + sample, top + h);
        MultiLayout::Text text;
        text.text = names[i];
        text.box = CRect(left + sample + air, top,
                         left + sample + air + dc.GetTextExtent(names[i]).cx, top + h);
        text.part = MultiPart::plot;
        text.panel = panel.number;
        text.isOfLegend = 1;
        layout_.texts.push_back(text);
    }
    layout_.legends.push_back(legend);
}

/// A caption inside a panel goes to the first corner where it hides the least; over points it gets
/// a ground.
void A2DAxisMulti::placeCaption(MultiLayout::Text& text) const
{
    const MultiLayout::Panel* const panel = layout_.findPanel(text.panel);
    if (!panel)
        return;
    const CRect& plot = panel->plot;
    const int across = fHeight_ / 2;
    const int down = fHeight_ / 4;
    int least = -1;
    CRect best = text.box;
    for (const bool isTop : {true, false})
        for (const bool isLeft : {true, false}) {
            CRect box(0, 0, text.box.Width(), text.box.Height());
            box.OffsetRect(isLeft ? plot.left + across : plot.right - across - box.right,
                           isTop ? plot.top + down : plot.bottom - down - box.bottom);
            const int hidden = least == 0 ? 1 : hiddenPoints(*panel, box, captionPoints);
            if (least >= 0 && hidden >= least)
                continue;
            least = hidden;
            best = box;
        }
    text.box = best;
    text.hasGround = least > 0;
}

void A2DAxisMulti::placeCaptions()
{
    for (MultiLayout::Text& text : layout_.texts)
        if (text.isCaption)
            placeCaption(text);
}

/// Captions and legends of panels whose data have changed.
void A2DAxisMulti::placeAnew(CDC& dc, const std::vector<const MultiLayout::Panel*>& panels)
{
    const auto isAmong = [&panels](int number) {
        return std::any_of(panels.begin(), panels.end(),
                           [number](const auto* panel) { return panel->number == number; });
    };
    for (MultiLayout::Text& text : layout_.texts)
        if (text.isCaption && isAmong(text.panel))
            placeCaption(text);
    if (std::none_of(layout_.legends.begin(), layout_.legends.end(),
                     [&](const auto& legend) { return isAmong(legend.panel); }))
        return;
    std::erase_if(layout_.texts, [](const auto& text) { return text.isOfLegend; });
    layout_.legends.clear();
    placeLegends(dc);
}

/// The first graph of each name.
std::vector<int> A2DAxisMulti::namedGraphs() const
{
    std::vector<int> graphs;
    std::set<CString> seen;
    for (int i = 0; i < childs_.count(); ++i)
        if (const CString& name = childs_(i)->getGraphName();
            !name.empty() && seen.insert(name).second)
            graphs.push_back(i);
    return graphs;
}

/// In rows over all panels, in the middle.
void A2DAxisMulti::placeLegendAbove(CDC& dc)
{
    const CRect& room = layout_.legendBox;
    if (room.IsRectEmpty())
        return;
    const std::vector<int> graphs = namedGraphs();
    std::vector<CString> names;
    names.reserve(graphs.size());
    for (const int graph : graphs)
        names.push_back(childs_(graph)->getGraphName());
    const LegendRows rows = legendRows(dc, names, fHeight_, room.Width() - fHeight_);
    MultiLayout::Legend legend;
    legend.panel = -1;
    legend.box = room;
    for (std::size_t i = 0; i < graphs.size(); ++i) {
        const LegendRows::Entry& entry = rows.entries[i];
        const auto row = static_cast<std::size_t>(entry.row);
        const int left = room.left + (room.Width() - rows.widths[row]) / 2 + entry.left;
        const int top = room.top + entry.row * rows.line;
        legend.lines.push_back({graphs[i], CRect(left, top, left + rows.sample, top + fHeight_)});
        MultiLayout::Text text;
        text.text = names[i];
        text.box = CRect(left + rows.sample + rows.air, top, left + entry.width, top + fHeight_);
        text.part = MultiPart::gap;
        text.panel = -1;
        text.isOfLegend = 1;
        layout_.texts.push_back(text);
    }
    layout_.legends.push_back(legend);
}

void A2DAxisMulti::placeLegends(CDC& dc)
{
    CFont font;
    if (legend_ == legendNone || !CreateAxisFont(font, fHeight_, 0, 0.0))
        return;
    const SelectedObject<CFont> selected(dc, font);
    if (legend_ == legendAbove)
        return placeLegendAbove(dc);
    std::set<CString> seen;
    for (const MultiLayout::Panel& panel : layout_.panels)
        placeLegend(dc, panel, seen);
}

/// The boxes and samples of legends; their texts come with the others.
void A2DAxisMulti::drawLegends(CDC& dc, const CRect& part)
{
    const int options = options_;
    setFlag(axisBitmapMode, 0);  // they lie over the raster
    for (const MultiLayout::Legend& legend : layout_.legends) {
        CRect both;
        if (!both.IntersectRect(legend.box, part))
            continue;
        const SelectedObject<CPen> pen(dc, CPen(PS_SOLID, unitsOf(dc, 1), workColor(3)));
        const SelectedObject<CBrush> brush(dc, CBrush(workColor(0)));
        if (legend.panel >= 0)
            dc.Rectangle(legend.box);
        const int saved = dc.SaveDC();
        dc.IntersectClipRect(legend.box);
        for (const MultiLayout::Legend::Line& line : legend.lines)
            childs_(line.graph)->drawSampleIn(*this, dc, line.sample);
        dc.RestoreDC(saved);
    }
    options_ = options;
}

}  // namespace pavane
