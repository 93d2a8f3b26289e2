#include "pavane/axes/AxisPenState.h"
#include "pavane/axes/figure_units.h"
#include "pavane/axes/multi/A2DAxisMulti.h"
#include "pavane/axes/multi/AGraphXYErrors.h"
#include "pavane/axes/PlotLayout.h"
#include "pavane/axes/SelectedObject.h"
#include "pavane/images/ADIBase.h"

#include <algorithm>
#include <cstring>
#include <new>

namespace pavane
{

void A2DAxisMulti::draw(CDC& dc, CRect& rect)
{
    sortGraphs();
    changed_.clear();
    layoutStands_ = 0;
    if (isOrdinary()) {
        A2DAxis::draw(dc, rect);
        keepOrdinaryLayout(dc, rect);
        return;
    }
    CDC* const before = dc_;
    const int options = options_;
    if (composeAll(dc, rect)) {
        if (isPage(dc))
            setFlag(axisBitmapMode, 0);
        const HPALETTE old = BeginPalette();
        const int saved = dc.SaveDC();
        dc.SetBkMode(TRANSPARENT);
        drawAll(dc, rect);
        dc.RestoreDC(saved);
        EndPalette(old);
        options_ = options;
        drawn_ = stateNow(dc, rect);
        layoutStands_ = 1;
    }
    options_ = options;
    dc_ = before;
}

void A2DAxisMulti::drawAll(CDC& dc, CRect& rect)
{
    if (isFlagSet(axisBitmapMode))
        drawMultiRaster(dc, rect);
    drawFurniture(dc, nullptr);
    if (!isFlagSet(axisBitmapMode))
        drawGraphs(dc, rect, nullptr);
    drawLegends(dc, layout_.picture);
    drawTexts(dc, layout_.picture, MultiPart::plot);
}

/// Grids, frames, axes and the texts beside the plots: all, or what lies in `part`.
void A2DAxisMulti::drawFurniture(CDC& dc, const CRect* part)
{
    for (const MultiLayout::Panel& panel : layout_.panels) {
        if (part && !CRect().IntersectRect(reachOf(panel), *part))
            continue;
        if (!isFlagSet(axisBitmapMode))
            drawPanelGrid(panel);
        drawPanelFrame(dc, panel);
    }
    drawTexts(dc, part ? *part : layout_.picture, MultiPart::none);
}

void A2DAxisMulti::drawPanelGrid(const MultiLayout::Panel& panel)
{
    const AxisPenState state(*this);
    setLineStyle(PS_DOT);
    setLineWidth(isFlagSet(axisBitmapMode) ? 1 : 0);
    setColor(workColor(3));
    const CRect& plot = panel.plot;
    if (isFlagSet(axisGridX))
        for (const TickSet::Tick& tick : layout_.x.major) {
            const int x = layout_.xMap.xPixel(tick.value, plot.left, plot.right);
            line(x, plot.bottom, x, plot.top);
        }
    if (!isFlagSet(axisGridY) || panel.scales.empty())
        return;
    if (const MultiLayout::YAxis* const first = layout_.findAxis(panel.scales[0]))
        for (const TickSet::Tick& tick : first->ticks.major) {
            const int y = first->map.yPixel(tick.value, plot.top, plot.bottom);
            line(plot.left, y, plot.right, y);
        }
}

COLORREF A2DAxisMulti::colorOf(int isColored, COLORREF color) const
{
    return isColored ? color : workColor(1);
}

/// Frame, x ticks, and the lines and ticks of the y axes.
void A2DAxisMulti::drawPanelFrame(CDC& dc, const MultiLayout::Panel& panel)
{
    const CRect& g = panel.plot;
    const FigureUnits units(dc);
    const int width = units.line(fHeight_, framePart);
    const int major = units.ofFont(fHeight_, majorTickLength);
    const int minor = units.ofFont(fHeight_, minorTickLength);
    const auto stroke = [&dc](int x1, int y1, int x2, int y2) {
        dc.MoveTo(x1, y1);
        dc.LineTo(x2, y2);
    };
    const SelectedObject<CPen> pen(dc, CPen(PS_SOLID, width, workColor(1)));
    stroke(g.left, g.top, g.right, g.top);
    stroke(g.right, g.top, g.right, g.bottom);
    stroke(g.right, g.bottom, g.left, g.bottom);
    stroke(g.left, g.bottom, g.left, g.top);
    const bool inside = isFlagSet(axisTicksInside);
    // Ticks that would reach into the panel below stand inside as well.
    const bool hasRoomBelow = panel.isLowest || roomBelow(panel) > major;
    const auto xTick = [&](double value, int length) {
        const int x = std::clamp(layout_.xMap.xPixel(value, g.left, g.right), g.left, g.right);
        stroke(x, g.bottom, x, g.bottom + (inside || !hasRoomBelow ? -length : length));
        if (inside)
            stroke(x, g.top, x, g.top + length);
    };
    for (const TickSet::Tick& tick : layout_.x.major)
        xTick(tick.value, major);
    for (const double value : layout_.x.minor)
        xTick(value, minor);
    bool hasRight = false;
    for (const int a : panel.axes)
        hasRight = hasRight || layout_.axes[static_cast<std::size_t>(a)].isRight;
    for (const int a : panel.axes) {
        const MultiLayout::YAxis& axis = layout_.axes[static_cast<std::size_t>(a)];
        const SelectedObject<CPen> own(dc,
                                       CPen(PS_SOLID, width, colorOf(axis.isColored, axis.color)));
        const int outwards = axis.isRight ? 1 : -1;
        const int sign = inside && axis.slot == 0 ? -outwards : outwards;
        const bool mirrored = inside && axis.slot == 0 && !axis.isRight && !hasRight;
        if (axis.slot > 0)
            stroke(axis.line, g.top, axis.line, g.bottom);
        const auto yTick = [&](double value, int length) {
            const int y = std::clamp(axis.map.yPixel(value, g.top, g.bottom), g.top, g.bottom);
            stroke(axis.line, y, axis.line + sign * length, y);
            if (mirrored)
                stroke(g.right, y, g.right - length, y);
        };
        for (const TickSet::Tick& tick : axis.ticks.major)
            yTick(tick.value, major);
        for (const double value : axis.ticks.minor)
            yTick(value, minor);
    }
}

/// Down to the next panel of the column, or its caption.
int A2DAxisMulti::roomBelow(const MultiLayout::Panel& panel) const
{
    const MultiLayout::Panel* const next = &panel + 1;  // columns stand one after another
    const bool isLast = next == layout_.panels.data() + layout_.panels.size();
    return isLast || next->column != panel.column
               ? fHeight_
               : next->plot.top - next->captionRoom - panel.plot.bottom;
}

/// The texts that lie in `part`: those in plots, or the others.
void A2DAxisMulti::drawTexts(CDC& dc, const CRect& part, MultiPart where)
{
    CFont upright;
    CFont turned;
    CFont bold;
    if (!CreateAxisFont(upright, fHeight_, 0, 0.0) || !CreateAxisFont(turned, fHeight_, 0, 90.0) ||
        !CreateAxisFont(bold, fHeight_, 1, 0.0))
        return;
    const auto drawThose = [&](const CFont& font, int isTurned) {
        const SelectedObject<CFont> selected(dc, font);
        for (const MultiLayout::Text& text : layout_.texts) {
            if (text.isTurned != isTurned ||
                (text.part == MultiPart::plot) != (where == MultiPart::plot) ||
                !CRect().IntersectRect(text.box, part))
                continue;
            if (text.hasGround)
                dc.FillSolidRect(text.box, workColor(0));
            dc.SetTextColor(colorOf(text.isColored, text.color));
            // Text that runs upwards starts at its lower end, with its top to the left.
            dc.TextOut(text.box.left, isTurned ? text.box.bottom : text.box.top, text.text);
        }
    };
    drawThose(upright, 0);
    drawThose(turned, 1);
    if (where == MultiPart::plot || layout_.header.empty() ||
        !CRect().IntersectRect(layout_.headerBox, part))
        return;
    const SelectedObject<CFont> selected(dc, bold);
    dc.SetTextColor(workColor(1));
    CRect box = layout_.headerBox;
    dc.DrawText(layout_.header, box, DT_CENTER | DT_WORDBREAK | DT_NOPREFIX);
}

void A2DAxisMulti::drawGraph(CDC& dc, CRect& rect, AGraph& graph, const MultiLayout::Panel& panel)
{
    const int saved = dc.SaveDC();
    if (!isFlagSet(axisBitmapMode))
        dc.IntersectClipRect(plotClip(graphRect_, graph.overhang(*this)));
    graph.drawIn(*this, dc, rect, range_);
    dc.RestoreDC(saved);
    if (!graph.isColors())
        return;
    if (!isFlagSet(axisBitmapMode))
        drawPanelFrame(dc, panel);
}

/// Graphs one after another, each in its scale: the error bars of all below the points of any.
void A2DAxisMulti::drawRun(CDC& dc, CRect& rect, int first, int last,
                           const MultiLayout::Panel* only)
{
    for (const ErrorParts parts : {ErrorParts::bars, ErrorParts::points})
        for (int i = first; i < last; ++i) {
            const int scale = std::max(knownScaleOf(childs_(i)), 0);
            const MultiLayout::Panel* const panel = panelOfScale(scale);
            auto* const errors = dynamic_cast<AGraphXYErrors*>(childs_(i));
            if (!panel || (only && panel != only) || (parts == ErrorParts::bars && !errors))
                continue;
            setCurrentScale(scale);
            if (errors)
                errors->setParts(parts);
            drawGraph(dc, rect, *childs_(i), *panel);
            if (errors)
                errors->setParts(ErrorParts::both);
        }
}

/// The graphs of a panel, or of all. What fills a plot hides all that was drawn before.
void A2DAxisMulti::drawGraphs(CDC& dc, CRect& rect, const MultiLayout::Panel* only)
{
    const CurrentScale before(*this);
    for (int first = 0; first < childs_.count();) {
        int last = first + 1;
        while (last < childs_.count() && !childs_(last)->isColors())
            ++last;
        drawRun(dc, rect, first, last, only);
        first = last;
    }
}

int A2DAxisMulti::drawChilds(CDC& dc, CRect& rect, TMinMax& range)
{
    if (isOrdinary())
        return A2DAxis::drawChilds(dc, rect, range);
    drawGraphs(dc, rect, nullptr);
    return childs_.count();
}

const MultiLayout::Panel* A2DAxisMulti::panelOfScale(int scale) const
{
    const auto at = static_cast<std::size_t>(std::max(scale, 0));
    return at < panelOf_.size() && panelOf_[at] >= 0
               ? &layout_.panels[static_cast<std::size_t>(panelOf_[at])]
               : nullptr;
}

/// One raster for all panels; what lies between them is that of the frame and the labels.
void A2DAxisMulti::drawMultiRaster(CDC& dc, CRect& rect)
{
    const CRect bounds = layout_.bounds();
    ADIBase* whole = loadRaster(bounds);
    const bool isCached = whole != nullptr;
    if (!isCached) {
        whole = new (std::nothrow) ADIBase(bounds);
        if (!whole || !whole->lpArray()) {
            delete whole;
            return;
        }
        *whole = static_cast<short>(paletteIndex(workColor(0)));
        for (const MultiLayout::Panel& panel : layout_.panels)
            rasterPanel(dc, rect, panel, *whole);
    }
    SetDib(whole);
    dib_->Draw(dc);
    if (!isCached && isFlagSet(axisBitmapCache))
        storeRaster();
}

/// Draws a panel into a raster of its own, which ends with it, and copies that into the whole one.
void A2DAxisMulti::rasterPanel(CDC& dc, CRect& rect, const MultiLayout::Panel& panel,
                               ADIBase& whole)
{
    ADIBase own(panel.plot);
    if (!own.lpArray())
        return;
    ADIBase* const before = dib_;
    dib_ = &own;
    own = static_cast<short>(paletteIndex(workColor(0)));
    drawPanelGrid(panel);
    setLineStyle(lineStyle_);
    setLineWidth(lineWidth_);
    setColor(color_);
    drawGraphs(dc, rect, &panel);
    dib_ = before;
    for (int y = panel.plot.top; y <= panel.plot.bottom; ++y)
        whole.CopyLine(y, panel.plot.left, &own(panel.plot.left, y), own.width());
}

/// How far a panel and what belongs to it reach.
CRect A2DAxisMulti::reachOf(const MultiLayout::Panel& panel) const
{
    int most = FigureUnits(dc_).line(fHeight_, framePart);
    for (int i = 0; i < childs_.count() && !isFlagSet(axisBitmapMode); ++i)
        if (panelOfScale(knownScaleOf(childs_(i))) == &panel)
            most = std::max(most, childs_(i)->overhang(*this));
    return plotClip(panel.plot, most);
}

void A2DAxisMulti::setChanged(AGraph* graph)
{
    if (indexOfGraph(graph) < 0)
        return;
    graph->forgetPoints();
    changed_.push_back(graph);
}

/// Everything that a picture depends on but the data and the texts that calls of this class set.
std::vector<double> A2DAxisMulti::stateNow(CDC& dc, const CRect& rect) const
{
    std::vector<double> state{range_.xMin,
                              range_.xMax,
                              range_.zMin,
                              range_.zMax,
                              1.0 * xDirect_,
                              1.0 * options_,
                              1.0 * childs_.count(),
                              1.0 * wantedFHeight_,
                              1.0 * xIntervals_,
                              1.0 * yIntervals_,
                              1.0 * dc.GetDeviceCaps(LOGPIXELSX)};
    for (const int length : {rect.left, rect.top, rect.right, rect.bottom})
        state.push_back(length);
    for (int i = 0; i < getScaleCount(); ++i) {
        const AYScale scale = getScale(i);
        state.insert(state.end(), {scale.range.min, scale.range.max, 1.0 * scale.direct});
    }
    return state;
}

int A2DAxisMulti::drawChanged(CDC& dc, CRect& rect)
{
    if (!layoutStands_ || drawn_ != stateNow(dc, rect))
        return 0;
    CDC* const before = dc_;
    dc_ = &dc;
    const HPALETTE old = BeginPalette();
    std::vector<const MultiLayout::Panel*> panels;
    for (AGraph* const graph : changed_)
        if (const auto* const panel = panelOfScale(knownScaleOf(graph)))
            panels.push_back(panel);
    std::sort(panels.begin(), panels.end());
    panels.erase(std::unique(panels.begin(), panels.end()), panels.end());
    placeAnew(dc, panels);
    for (const MultiLayout::Panel* const panel : panels)
        drawPanelAnew(dc, rect, *panel);
    if (!panels.empty())
        dropCache();
    changed_.clear();
    EndPalette(old);
    dc_ = before;
    return 1;
}

/// Draws all that lies where the panel does, so that it looks as in a whole picture.
void A2DAxisMulti::drawPanelAnew(CDC& dc, CRect& rect, const MultiLayout::Panel& panel)
{
    const CRect part = reachOf(panel);
    const int options = options_;
    const int saved = dc.SaveDC();
    dc.SetBkMode(TRANSPARENT);
    dc.IntersectClipRect(part);
    dc.FillSolidRect(part, workColor(0));
    if (isFlagSet(axisBitmapMode) && !isPage(dc) && dib_ && dib_->rect() == layout_.bounds()) {
        ADIBase* const whole = dib_;
        rasterPanel(dc, rect, panel, *whole);
        dib_->Draw(dc);
    }
    if (isPage(dc))
        setFlag(axisBitmapMode, 0);
    drawFurniture(dc, &part);
    if (!isFlagSet(axisBitmapMode))
        for (const MultiLayout::Panel& other : layout_.panels)
            if (CRect().IntersectRect(reachOf(other), part))
                drawGraphs(dc, rect, &other);
    drawLegends(dc, part);
    drawTexts(dc, part, MultiPart::plot);
    dc.RestoreDC(saved);
    options_ = options;
}

}  // namespace pavane
