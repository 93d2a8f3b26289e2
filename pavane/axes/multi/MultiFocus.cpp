#include "pavane/axes/multi/MultiFocus.h"

#include "pavane/axes/multi/A2DAxisMulti.h"

#include <algorithm>
#include <cmath>

namespace pavane
{

namespace
{

int isFinite(const CurvePoints& points, std::int64_t i)
{
    return std::isfinite(points.xAt(i)) && std::isfinite(points.y[i]);
}

/// Parts are the same whatever point has the focus.
int samePart(const MultiFocus& a, const MultiFocus& b)
{
    return a.kind == b.kind && a.panel == b.panel && a.scale == b.scale && a.graph == b.graph;
}

}  // namespace

std::vector<std::vector<int>> curvesByScale(const A2DAxisMulti& axis)
{
    std::vector<std::vector<int>> curves(static_cast<std::size_t>(axis.getScaleCount()));
    for (int i = 0; i < axis.childs().count(); ++i) {
        const int scale = axis.getScaleOf(axis.childs()(i));
        if (scale >= 0 && axis.childs()(i)->getPoints().y)
            curves[static_cast<std::size_t>(scale)].push_back(i);
    }
    return curves;
}

std::vector<MultiFocus> walkOf(const A2DAxisMulti& axis, int panel)
{
    const std::vector<std::vector<int>> curves = curvesByScale(axis);
    std::vector<MultiFocus> parts;
    for (const MultiLayout::Panel& shown : axis.getLayout().panels) {
        if (panel >= 0 && shown.number != panel)
            continue;
        parts.push_back({MultiFocusKind::panel, shown.number, -1, -1, -1});
        for (const int scale : shown.scales) {
            parts.push_back({MultiFocusKind::scale, shown.number, scale, -1, -1});
            for (const int graph : curves[static_cast<std::size_t>(scale)])
                parts.push_back({MultiFocusKind::curve, shown.number, scale, graph, -1});
        }
    }
    return parts;
}

void fitFocus(const A2DAxisMulti& axis, MultiFocus& focus)
{
    const std::vector<MultiFocus> parts =
        focus.panel < 0 ? std::vector<MultiFocus>() : walkOf(axis, focus.panel);
    for (const MultiFocus& part : parts)
        if (samePart(part, focus)) {
            if (part.kind == MultiFocusKind::curve &&
                focus.point >= axis.childs()(focus.graph)->getPoints().n)
                focus.point = -1;
            return;
        }
    const auto& panels = axis.getLayout().panels;
    if (!parts.empty())
        focus = parts.front();
    else if (panels.empty())
        focus = {};
    else
        focus = {MultiFocusKind::panel, panels.front().number, -1, -1, -1};
}

int walkPanels(const A2DAxisMulti& axis, MultiFocus& focus, int step)
{
    const auto& panels = axis.getLayout().panels;
    const auto isIt = [&](const MultiLayout::Panel& panel) { return panel.number == focus.panel; };
    const auto at = std::find_if(panels.begin(), panels.end(), isIt);
    if (at == panels.end())
        return 0;
    const auto next = at - panels.begin() + step;
    if (next < 0 || next >= static_cast<std::ptrdiff_t>(panels.size()))
        return 0;
    focus = {MultiFocusKind::panel, panels[static_cast<std::size_t>(next)].number, -1, -1, -1};
    return 1;
}

void walkParts(const A2DAxisMulti& axis, MultiFocus& focus, int step)
{
    fitFocus(axis, focus);
    const std::vector<MultiFocus> parts = walkOf(axis, focus.panel);
    for (std::size_t i = 0; i < parts.size(); ++i)
        if (samePart(parts[i], focus)) {
            const auto count = static_cast<std::ptrdiff_t>(parts.size());
            const auto next = ((static_cast<std::ptrdiff_t>(i) + step) % count + count) % count;
            focus = parts[static_cast<std::size_t>(next)];
            return;
        }
}

int walkPoints(const A2DAxisMulti& axis, MultiFocus& focus, int step, double x)
{
    if (focus.kind != MultiFocusKind::curve || focus.graph < 0 ||
        focus.graph >= axis.childs().count())
        return 0;
    const AGraph& graph = *axis.childs()(focus.graph);
    const CurvePoints points = graph.getPoints();
    const int before = focus.point;
    if (before < 0 || before >= points.n) {
        focus.point = graph.nearestPoint(x);
        return focus.point != before;
    }
    const int way = step < 0 ? -1 : 1;
    int left = std::abs(step);
    for (std::int64_t i = before + way; left > 0 && i >= 0 && i < points.n; i += way)
        if (isFinite(points, i)) {
            focus.point = static_cast<int>(i);
            --left;
        }
    return focus.point != before;
}

}  // namespace pavane
