#include "pavane/axes/maps/MapFigure.h"

#include "pavane/axes/ABAxis.h"
#include "pavane/axes/figure_units.h"
#include "pavane/axes/maps/AAxisScaleBar.h"
#include "pavane/axes/maps/ABMapGraph.h"
#include "pavane/axes/maps/FigureLayer.h"
#include "pavane/axes/square_plot.h"
#include "platform/picture.h"

#include <algorithm>
#include <cmath>
#include <memory>
#include <utility>

namespace pavane
{

namespace
{

/// Room around the figure and between plot and bar, in pixels; less around tiny figures.
constexpr int widestMargin = 8;
constexpr int barGap = 14;
/// A plot that would be narrower, in pixels, gives up its bar.
constexpr int leastPlotBesideBar = 60;

/// Bounds of a plot inside `inner` that has at least these margins from the edges of `all`.
CRect boundsOf(const CRect& margins, const CRect& all, const CRect& inner)
{
    return {all.left + margins.left, all.top + margins.top,
            margins.right - (all.right - inner.right),
            margins.bottom - (all.bottom - inner.bottom)};
}

/// Boxes have labels on both sides, inside their room.
int hasLabelsAtRight(const ABAxis& axis)
{
    constexpr int firstBoxType = 14;
    return axis.GetAxisType() >= firstBoxType;
}

CRect narrower(const CRect& a, const CRect& b)
{
    return {std::max(a.left, b.left), std::max(a.top, b.top), std::max(a.right, b.right),
            std::max(a.bottom, b.bottom)};
}

/// Bounds about the origin for a figure at `origin`; -1 stays for none.
CRect shifted(const CRect& border, CPoint origin)
{
    return {border.left == -1 ? -1 : border.left + origin.x,
            border.top == -1 ? -1 : border.top + origin.y, border.right, border.bottom};
}

/// A layout of pixels about the origin in units of a context.
FigureLayout inUnits(const FigureLayout& pixels, const FigureUnits& units, const CRect& rect)
{
    const CPoint origin = rect.TopLeft();
    FigureLayout layout = pixels;
    layout.all = rect;
    layout.axis = units.units(pixels.axis, origin);
    layout.plot = units.units(pixels.plot, origin);
    if (!pixels.bar.IsRectEmpty())
        layout.bar = units.units(pixels.bar, origin);
    if (!pixels.otherBar.IsRectEmpty())
        layout.otherBar = units.units(pixels.otherBar, origin);
    const CRect& border = pixels.border;
    const auto bound = [&](int length) { return length == -1 ? -1 : units.units(length); };
    layout.border = shifted(
        CRect(bound(border.left), bound(border.top), bound(border.right), bound(border.bottom)),
        origin);
    layout.fontHeight = units.units(pixels.fontHeight);
    return layout;
}

/// Puts back the bounds of an axis, which are its host's.
class BorderChange
{
public:
    explicit BorderChange(ABAxis& axis) : axis_(axis), before_(axis.getBorderRect()) {}
    BorderChange(const BorderChange&) = delete;
    BorderChange& operator=(const BorderChange&) = delete;
    ~BorderChange() { axis_.setBorderRect(before_); }

private:
    ABAxis& axis_;
    CRect before_;
};

}  // namespace

void MapFigure::setAxis(ABAxis* axis)
{
    axis_ = axis;
    map_ = nullptr;
    bar_ = otherBar_ = nullptr;
}

void MapFigure::followModule() const
{
    for (ABAxis* const each : {axis_, static_cast<ABAxis*>(bar_), static_cast<ABAxis*>(otherBar_)})
        if (each)
            each->followModule();
}

FigureLayout MapFigure::layOut(CDC& dc, const CRect& rect, const CRect* least) const
{
    if (!axis_ || rect.IsRectEmpty()) {
        FigureLayout layout;
        layout.all = rect;
        return layout;
    }
    const BorderChange change(*axis_);
    const std::unique_ptr<MapStop> stop = map_ ? std::make_unique<MapStop>(*map_, dc) : nullptr;
    const FigureUnits units(dc);
    if (units.arePixels())
        return layOutInPixels(dc, rect, least);
    CPicture ruler(1, 1);
    const CRect pixels(0, 0, units.pixels(rect.Width()), units.pixels(rect.Height()));
    FigureLayout layout = inUnits(layOutInPixels(*ruler.dc(), pixels, least), units, rect);
    axis_->setBorderRect(layout.border);
    (void)axis_->layOut(dc, layout.axis);
    layout.plot = axis_->getGraphRect();
    return layout;
}

FigureLayout MapFigure::layOutInPixels(CDC& dc, const CRect& rect, const CRect* least) const
{
    FigureLayout layout;
    layout.all = rect;
    const int margin =
        panel_ ? 0 : std::min(widestMargin, std::min(rect.Width(), rect.Height()) / 16);
    CRect inner = rect;
    inner.DeflateRect(margin, margin);
    layout.axis = inner;
    CRect bounds = shifted(axis_->getBorderRect(), rect.TopLeft());
    if (least)
        bounds = narrower(bounds, boundsOf(*least, rect, inner));
    axis_->setBorderRect(bounds);
    (void)axis_->layOut(dc, inner);
    const CRect free = axis_->getGraphRect();
    layout.margins = CRect(free.left - rect.left, free.top - rect.top, rect.right - free.right,
                           rect.bottom - free.bottom);
    if (bar_)
        placeBar(dc, inner, layout);
    const int below = layout.axis.bottom - axis_->getGraphRect().bottom;
    if (map_ ? square_ : equalUnits_)
        makeSquare(dc, layout);
    layout.plot = axis_->getGraphRect();
    layout.fontHeight = axis_->getFHeight();
    layout.border = axis_->getBorderRect();
    if (layout.bar.IsRectEmpty())
        return layout;
    const CRect& plot = layout.plot;
    layout.bar = bar_->isHorizontal()
                     ? CRect(plot.left, plot.bottom + below + barGap, plot.right, inner.bottom)
                     : CRect((hasLabelsAtRight(*axis_) ? layout.axis.right : plot.right) + barGap,
                             plot.top, inner.right, plot.bottom);
    if (layout.otherBar.IsRectEmpty())
        return layout;
    const CRect both = layout.bar;
    layout.otherBar = both;
    if (bar_->isHorizontal()) {
        layout.otherBar.top = both.bottom - (breadthOf(dc, *otherBar_) - barGap);
        layout.bar.bottom = layout.otherBar.top - barGap;
    } else {
        layout.otherBar.left = both.right - (breadthOf(dc, *otherBar_) - barGap);
        layout.bar.right = layout.otherBar.left - barGap;
    }
    return layout;
}

/// What a bar takes beside the plot, with the room before it.
int MapFigure::breadthOf(CDC& dc, AAxisScaleBar& bar) const
{
    const CRect& plot = axis_->getGraphRect();
    bar.setFHeight(axis_->getFHeight());
    return bar.neededBreadth(dc, bar.isHorizontal() ? plot.Width() : plot.Height()) + barGap;
}

/// Takes the room of the bars from that of the axis, when enough of it is left.
void MapFigure::placeBar(CDC& dc, const CRect& inner, FigureLayout& layout) const
{
    const CRect& plot = axis_->getGraphRect();
    const int across = bar_->isHorizontal();
    // a box that is higher than wide has room on both sides
    const int width = hasLabelsAtRight(*axis_) ? layout.axis.Width() / 2 : plot.Width();
    const int room = (across ? plot.Height() : width) - leastPlotBesideBar;
    int breadth = breadthOf(dc, *bar_);
    if (breadth > room)
        return;
    layout.bar = inner;
    const int other =
        otherBar_ && otherBar_->isHorizontal() == across ? breadthOf(dc, *otherBar_) : 0;
    if (other > 0 && breadth + other <= room) {
        layout.otherBar = inner;
        breadth += other;
    }
    if (leastBarRoom_ <= room)
        breadth = std::max(breadth, leastBarRoom_);
    layout.barRoom = breadth;
    (across ? layout.axis.bottom : layout.axis.right) -= breadth;
    (void)axis_->layOut(dc, layout.axis);
}

/// Shrinks the plot until the cells that it shows are square.
void MapFigure::makeSquare(CDC& dc, const FigureLayout& layout) const
{
    if (axis_->getXDirect() == 0 || axis_->getYDirect() == 0)
        return;
    const double stepX = map_ ? map_->MPXtoRPX(1) - map_->MPXtoRPX(0) : 1;
    const double stepY = map_ ? map_->MPYtoRPY(1) - map_->MPYtoRPY(0) : 1;
    const CRect& room = layout.axis;
    // a narrower plot can need a higher header, which leaves less room than was shared out
    constexpr int rounds = 4;
    for (int i = 0; i < rounds; ++i) {
        const TMinMax& range = axis_->getMinMax();
        const CRect plot = axis_->getGraphRect();
        const CRect square = squarePlot(plot, std::fabs((range.xMax - range.xMin) / stepX),
                                        std::fabs((range.yMax - range.yMin) / stepY));
        if (square == plot)
            return;
        axis_->setBorderRect(
            CRect(square.left, square.top, room.right - square.right, room.bottom - square.bottom));
        (void)axis_->layOut(dc, room);
    }
}

void MapFigure::draw(CDC& dc, const FigureLayout& layout) const
{
    if (!dc.IsTransparent())
        dc.FillSolidRect(layout.all, RGB(255, 255, 255));
    if (!axis_ || layout.axis.IsRectEmpty())
        return;
    const int smooth = dc.SetSmooth(1);
    const BorderChange change(*axis_);
    const std::unique_ptr<MapStop> stop = map_ ? std::make_unique<MapStop>(*map_, dc) : nullptr;
    axis_->setBorderRect(layout.border);
    CRect rect = layout.axis;
    axis_->draw(dc, rect);
    for (const auto& [bar, at] :
         {std::pair{bar_, layout.bar}, std::pair{otherBar_, layout.otherBar}}) {
        if (!bar || at.IsRectEmpty() || dc.isStopped())
            continue;
        bar->setFHeight(layout.fontHeight);  // a narrower axis has smaller labels
        rect = at;
        bar->draw(dc, rect);
    }
    for (FigureLayer* const layer : layers_)
        if (!axis_->getGraphRect().IsRectEmpty() && !dc.isStopped())
            layer->draw(dc, *axis_);
    dc.SetSmooth(smooth);
}

}  // namespace pavane
