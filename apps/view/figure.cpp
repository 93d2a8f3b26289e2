#include "apps/view/figure.h"

#include "apps/view/map_graph.h"
#include "apps/view/overlays.h"
#include "apps/view/square_cells.h"
#include "pavane/axes/A2DAxis.h"
#include "pavane/axes/figure_units.h"
#include "pavane/axes/maps/AAxisColorOP.h"
#include "pavane/axes/maps/ALevelsColorGraph.h"
#include "platform/CDC.h"
#include "tessel/rounding.h"

#include <algorithm>
#include <cmath>

namespace pavane
{

namespace
{

/// Room between the plot and the colour bar, and around the figure, in pixels.
constexpr int barGap = 14;
constexpr int margin = 8;
/// Parts of a cell that the sides of a zoomed range are counted in.
constexpr double cellParts = 1000;

/// Columns and rows that are shown, in parts of a cell.
CSize shownCells(const MapFrame& frame, const AMatrixAccess& cells, const TMinMax* range)
{
    const double columns = range ? (range->xMax - range->xMin) / frame.xStep : cells.columns();
    const double rows = range ? (range->yMax - range->yMin) / frame.yStep : cells.rows();
    return {truncated(std::fabs(columns) * cellParts), truncated(std::fabs(rows) * cellParts)};
}

/// Lays the axis out in `rect`, with square cells unless any shape will do, and returns the plot.
CRect layOutPlot(A2DAxis& axis, CDC& dc, const CRect& rect, CSize shown, int freeAspect)
{
    axis.layOut(dc, rect);
    // a narrower plot can need a higher header, which leaves less room than was shared out
    constexpr int rounds = 4;
    for (int i = 0; i < rounds && !freeAspect; ++i) {
        const CRect plot = axis.getGraphRect();
        const CRect square = squareCells(plot, shown.cx, shown.cy);
        if (square == plot)
            break;
        axis.setBorderRect(
            CRect(square.left, square.top, rect.right - square.right, rect.bottom - square.bottom));
        axis.layOut(dc, rect);
    }
    return axis.getGraphRect();
}

}  // namespace

void drawFigure(CDC& dc, const CRect& all, const ViewOptions& options, const ViewInputs& inputs,
                const FigureView& view)
{
    dc.FillSolidRect(all, RGB(255, 255, 255));

    const AFloatMatrixAccess cells(inputs.map.cells);
    TMinMax range = view.range ? *view.range : TMinMax();
    A2DAxis axis(inputs.frame.xDirection, 1, view.range ? &range : nullptr, 0);
    ALevelsColorGraph* const graph = addMapGraph(axis, cells, options, inputs);

    const int gap = unitsOf(dc, barGap);
    CRect inner = all;
    inner.DeflateRect(unitsOf(dc, margin), unitsOf(dc, margin));
    axis.layOut(dc, inner);
    AAxisColorOP bar(*graph);
    bar.setFHeight(axis.getFHeight());
    CRect axisRect = inner;
    axisRect.right -= bar.neededBreadth(dc, axis.getGraphRect().Height()) + gap;
    axis.layOut(dc, axisRect);
    bar.setFHeight(axis.getFHeight());  // a narrower axis has smaller labels
    const CSize shown = shownCells(inputs.frame, cells, view.range);
    const CRect plot = layOutPlot(axis, dc, axisRect, shown, options.freeAspect);
    axis.draw(dc, axisRect);
    drawAreas(dc, axis, view.areas ? *view.areas : inputs.areas);
    drawModel(dc, axis, inputs.frame, inputs.model);
    CRect barRect(plot.right + gap, plot.top, inner.right, plot.bottom);
    bar.draw(dc, barRect);
    if (!view.notes)
        return;
    for (const std::string& note :
         {levelNoteOf(options.levels, inputs), std::string(graph->contours().leftOutText())})
        if (!note.empty() &&
            std::find(view.notes->begin(), view.notes->end(), note) == view.notes->end())
            view.notes->push_back(note);
}

}  // namespace pavane
