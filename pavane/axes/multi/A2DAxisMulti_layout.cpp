#include "pavane/axes/figure_units.h"
#include "pavane/axes/multi/A2DAxisMulti.h"
#include "pavane/axes/PlotLayout.h"
#include "pavane/axes/range_repair.h"
#include "platform/picture.h"

#include <algorithm>
#include <cmath>

namespace pavane
{

/// The colour of the graphs of every scale; where they have several, that of the frame.
std::vector<COLORREF> A2DAxisMulti::colorsOfScales(const std::vector<int>& scalesOf) const
{
    std::vector<COLORREF> colors(static_cast<std::size_t>(getScaleCount()), colorOfGraphs);
    for (int i = 0; i < childs_.count(); ++i) {
        COLORREF color = 0;
        if (!childs_(i)->getGraphColor(color))
            continue;
        COLORREF& known = colors[static_cast<std::size_t>(scalesOf[static_cast<std::size_t>(i)])];
        known = known == colorOfGraphs || known == color ? color : workColor(1);
    }
    return colors;
}

/// Whether a graph has something to draw: a point, or what has no points.
int A2DAxisMulti::hasPoints(int index) const
{
    const CurvePoints points = childs_(index)->getPoints();
    if (!points.y) {
        TMinMax range;
        childs_(index)->getMinMax(range);
        return !isUnset(range.xMin, range.xMax) || !isUnset(range.yMin, range.yMax);
    }
    for (std::int64_t i = 0; i < points.n; ++i)
        if (std::isfinite(points.xAt(i)) && std::isfinite(points.y[i]))
            return 1;
    return 0;
}

MultiWish A2DAxisMulti::wish(CDC& dc, const CRect& rect) const
{
    const std::vector<int> scalesOf = scalesOfGraphs();
    const std::vector<COLORREF> colors = colorsOfScales(scalesOf);
    std::map<int, int> ofPanel;  // scales that are shown in each
    MultiWish wish;
    wish.scales.resize(colors.size());
    for (std::size_t i = 0; i < colors.size(); ++i) {
        MultiWish::Scale& scale = wish.scales[i];
        scale.spec = getScale(static_cast<int>(i));
        const bool isUsedByGraph =
            std::find(scalesOf.begin(), scalesOf.end(), static_cast<int>(i)) != scalesOf.end();
        scale.hasGraphs = isUsedByGraph;
        scale.isShown = isUsedByGraph || !isUnset(scale.spec.range.min, scale.spec.range.max);
        ofPanel[scale.spec.panel] += scale.isShown;
    }
    for (std::size_t i = 0; i < scalesOf.size(); ++i) {
        int& has = wish.scales[static_cast<std::size_t>(scalesOf[i])].hasPoints;
        has = has || hasPoints(static_cast<int>(i));
    }
    for (std::size_t i = 0; i < colors.size(); ++i) {
        MultiWish::Scale& scale = wish.scales[i];
        scale.color = scale.spec.color != colorOfGraphs ? scale.spec.color : colors[i];
        scale.isColored =
            scale.color != colorOfGraphs &&
            (scale.spec.colored > 0 || (scale.spec.colored < 0 && ofPanel[scale.spec.panel] > 1));
    }
    wish.x = {nameOX_,   {range_.xMin, range_.xMax},  xIntervals_, nxpDigit_,
              nxmDigit_, !isFlagSet(axisNoMinorTicks)};
    wish.xDirect = int{xDirect_};
    wish.isXWhole = isXWhole_;
    wish.options = options_;
    wish.columns = columns_;
    wish.rows = rows_;
    wish.ofPage = ofPage_;
    wish.page = getPage();
    wish.gap = gap_;
    wish.border = borderRect_;
    wish.header = getHeaderString(0);
    if (legend_ == legendAbove)
        for (const int graph : namedGraphs())
            wish.legend.push_back(childs_(graph)->getGraphName());
    wish.captions = captions_;
    const FigureUnits units(dc);
    CRect pixels(0, 0, units.pixels(rect.Width()), units.pixels(rect.Height()));
    CPicture ruler(1, 1);
    wish.fHeight = std::max(1, calcFontHeight(units.arePixels() ? dc : *ruler.dc(), pixels));
    return wish;
}

/// Tells all scales where their panels are.
void A2DAxisMulti::findPlots()
{
    std::map<int, int> places;
    for (std::size_t i = 0; i < layout_.panels.size(); ++i)
        places[layout_.panels[i].number] = static_cast<int>(i);
    park();
    panelOf_.clear();
    for (int i = 0; i < getScaleCount(); ++i) {
        const auto found = places.find(stored(i).spec.panel);
        panelOf_.push_back(found == places.end() ? -1 : found->second);
        stored(i).plot = found == places.end()
                             ? CRect()
                             : layout_.panels[static_cast<std::size_t>(found->second)].plot;
    }
    unpark(reserved_);
}

int A2DAxisMulti::composeAll(CDC& dc, const CRect& rect)
{
    dc_ = &dc;
    sortGraphs();
    setUpParameters();
    const MultiWish wanted = wish(dc, rect);
    const int hasRoom = composeMulti(dc, rect, wanted, layout_);
    if (!hasRoom)
        layout_ = {};
    fHeight_ = wanted.fHeight;
    findPlots();
    if (hasRoom) {
        fHeight_ = layout_.fHeight;  // in units of the context
        placeMultiTexts(dc, wanted, layout_);
        placeCaptions();
        placeLegends(dc);
    }
    return hasRoom;
}

/// What the layout of an ordinary plot is as one with a single scale and panel.
void A2DAxisMulti::keepOrdinaryLayout(CDC& dc, const CRect& rect)
{
    layout_ = {};
    panelOf_.clear();
    layout_.picture = rect;
    layout_.fHeight = fHeight_;
    layout_.xMap = {xDirect_, {range_.xMin, range_.xMax}};
    if (graphRect_.right <= graphRect_.left || graphRect_.bottom <= graphRect_.top)
        return;
    MultiLayout::Panel panel;
    panel.plot = graphRect_;
    panel.isLowest = 1;
    panel.scales = panel.axes = {0};
    layout_.panels.push_back(panel);
    MultiLayout::YAxis axis;
    axis.map = {yDirect_, {range_.yMin, range_.yMax}};
    axis.line = graphRect_.left;
    axis.rect = CRect(rect.left, graphRect_.top, graphRect_.left, graphRect_.bottom + 1);
    layout_.axes.push_back(axis);
    const int room = FigureUnits(dc).ofFont(fHeight_, titleRoom);
    const auto addTitle = [this](const CString& text, const CRect& box, int scale) {
        if (text.empty())
            return;
        MultiLayout::Text title;
        title.text = text;
        title.box = box;
        title.isTurned = scale == 0;
        title.part = MultiPart::title;
        title.panel = 0;
        title.scale = scale;
        layout_.texts.push_back(title);
    };
    if (!isFlagSet(axisNoYLabels))
        addTitle(nameOY_, CRect(rect.left, graphRect_.top, rect.left + room, graphRect_.bottom + 1),
                 0);
    if (!isFlagSet(axisNoXLabels))
        addTitle(nameOX_,
                 CRect(graphRect_.left, rect.bottom - room, graphRect_.right + 1, rect.bottom), -1);
}

int A2DAxisMulti::layOut(CDC& dc, const CRect& rect)
{
    sortGraphs();
    layoutStands_ = layoutStands_ && drawn_ == stateNow(dc, rect);
    if (isOrdinary()) {
        const int hasRoom = A2DAxis::layOut(dc, rect);
        keepOrdinaryLayout(dc, rect);
        return hasRoom;
    }
    CDC* const before = dc_;
    const int hasRoom = composeAll(dc, rect);
    dc_ = before;
    return hasRoom;
}

}  // namespace pavane
