#include "pavane/axes/A2DAxis.h"

#include "pavane/axes/ABSkyGrid.h"
#include "pavane/axes/figure_units.h"
#include "pavane/axes/PlotLayout.h"
#include "pavane/axes/SelectedObject.h"
#include "pavane/resources/axis_messages.h"

#include <algorithm>

namespace pavane
{
int A2DAxis::GetAxisType() const { return 11; }

void A2DAxis::draw(CDC& dc, CRect& rect)
{
    CDC* const before = dc_;
    const int options = options_;
    PlotLayout layout;
    if (composeLayout(dc, rect, layout)) {
        if (isPage(dc))  // which takes vectors; a raster of its units would be huge
            setFlag(axisBitmapMode, 0);
        const HPALETTE old = BeginPalette();
        const int saved = dc.SaveDC();
        dc.SetBkMode(TRANSPARENT);
        dc.SetTextColor(workColor(1));
        drawnLayout_ = &layout;
        if (!isFlagSet(axisBitmapMode))
            drawGrid(layout);
        drawFrame(dc);
        drawTicks(dc, layout);
        drawLabels(dc, layout);
        drawTitles(dc, layout);
        if (isFlagSet(axisBitmapMode))
            drawInRaster(dc, rect, layout);
        else
            drawInContext(dc, rect);
        drawnLayout_ = nullptr;
        if (isWithoutData())
            drawNoData(dc);
        dc.RestoreDC(saved);
        EndPalette(old);
    }
    options_ = options;
    dc_ = before;
}

int A2DAxis::isWithoutData() const
{
    if (range_.xMin != unsetMaximum || range_.xMax != unsetMinimum)
        return 0;  // the repaired range of an axis that found nothing
    for (int i = 0; i < childs_.count(); ++i) {
        TMinMax range;
        childs_(i)->getMinMax(range);
        if (range.xMin != unsetMinimum || range.xMax != unsetMaximum)
            return 0;
    }
    return childs_.count() > 0;
}

void A2DAxis::setSkyGrid(ABSkyGrid* grid)
{
    skyGrid_ = grid;
    hasSkyTicks_ = 0;
}

void A2DAxis::drawNoData(CDC& dc)
{
    CFont font;
    if (!CreateAxisFont(font, fHeight_, 0, 0.0))
        return;
    const SelectedObject<CFont> selected(dc, font);
    const CPoint centre = graphRect_.CenterPoint();
    dc.TextOut(centre.x - dc.GetTextExtent(noData).cx / 2, centre.y - fHeight_ / 2, noData);
}

void A2DAxis::drawInContext(CDC& dc, CRect& rect)
{
    int most = 0;
    for (int i = 0; i < childs_.count(); ++i)
        most = std::max(most, childs_(i)->overhang(*this));
    const int saved = dc.SaveDC();
    dc.IntersectClipRect(plotClip(graphRect_, most));
    drawChilds(dc, rect, range_);
    dc.RestoreDC(saved);
}

int A2DAxis::drawChilds(CDC& dc, CRect& rect, TMinMax& range)
{
    for (int i = 0; i < childs_.count(); ++i) {
        AGraph& graph = *childs_(i);
        if (&graph == skyGrid_)
            continue;  // over all others
        const int saved = dc.SaveDC();
        if (!isFlagSet(axisBitmapMode))
            dc.IntersectClipRect(plotClip(graphRect_, graph.overhang(*this)));
        graph.drawIn(*this, dc, rect, range);
        dc.RestoreDC(saved);
        if (!graph.isColors() || !drawnLayout_)
            continue;
        if (isFlagSet(axisBitmapMode)) {
            frameRaster(*drawnLayout_);
        } else {
            drawFrame(dc);
            drawTicks(dc, *drawnLayout_);
        }
    }
    if (hasSkyTicks_) {
        const int saved = dc.SaveDC();
        if (!isFlagSet(axisBitmapMode))
            dc.IntersectClipRect(plotClip(graphRect_, 0));
        skyGrid_->drawIn(*this, dc, rect, range);
        dc.RestoreDC(saved);
    }
    return childs_.count();
}

}  // namespace pavane
