#include "apps/view/figure.h"

#include "apps/view/overlays.h"
#include "apps/view/square_cells.h"
#include "pavane/axes/A2DAxis.h"
#include "pavane/maps/AAxisColorOP.h"
#include "pavane/maps/ALevelsColorGraph.h"
#include "platform/CDC.h"

#include <cmath>
#include <numbers>

namespace pavane
{

namespace
{

constexpr double arcsecondsPerDegree = 3600.0;
/// Room between the plot and the colour bar, and around the figure, in pixels.
constexpr int barGap = 14;
constexpr int margin = 8;

MapScaleKind scaleKind(ViewScale scale)
{
    switch (scale) {
    case ViewScale::squareRoot:
        return MapScaleKind::squareRoot;
    case ViewScale::logarithmic:
        return MapScaleKind::logarithmic;
    case ViewScale::equalised:
        return MapScaleKind::equalized;
    default:
        return MapScaleKind::linear;
    }
}

/// Centres of the first and last cells, and the colour range when one was asked for.
TMinMax centresOf(const ViewOptions& options, const MapFrame& frame)
{
    TMinMax centres;
    centres.xMin = frame.xFirst;
    centres.xMax = frame.xLast;
    centres.yMin = frame.yFirst;
    centres.yMax = frame.yLast;
    if (options.hasRange) {
        centres.zMin = options.low;
        centres.zMax = options.high;
    }
    return centres;
}

/// The levels asked for, as values of the map.
ContourLevels levelsOf(const ViewOptions& options, const ViewInputs& inputs)
{
    ContourLevels levels;
    levels.unit = LevelUnit::absolute;
    if (!inputs.range.isEmpty())
        levels.factors = levelValues(options.levels, inputs.range.greatest, inputs.noise.sigma);
    return levels;
}

/// The beam in units of the axes, turned as the sky is in the map.
MapBeam beamOf(const MapHeader& header, const MapFrame& frame)
{
    const double angle = header.bpa * std::numbers::pi / 180;
    const MapPlace end = frame.onAxes(std::sin(angle), std::cos(angle));
    const double unit = arcsecondsPerDegree / frame.arcseconds;
    return {header.bmaj * unit, header.bmin * unit,
            std::atan2(end.x, end.y) * 180 / std::numbers::pi};
}

/// The map graph with everything that the command line says about it; the axis owns it.
ALevelsColorGraph* addGraph(A2DAxis& axis, const AMatrixAccess& cells, int unit,
                            const ViewOptions& options, const ViewInputs& inputs)
{
    auto* const graph = new ALevelsColorGraph(&axis, cells, centresOf(options, inputs.frame), 0);
    graph->setNames(inputs.frame.xTitle, inputs.frame.yTitle, valueTitle(inputs));
    graph->setHeaderText(0, headerLine(inputs));
    graph->setScale(scaleKind(options.scale));
    graph->contours().setLevels(levelsOf(options, inputs));
    graph->contours().setWidth(unit);
    if (inputs.map.header.hasBeam && inputs.frame.onSky)
        graph->setBeam(beamOf(inputs.map.header, inputs.frame));
    return graph;
}

/// Lays the axis out in `rect`, with square cells unless any shape will do, and returns the plot.
CRect layOutPlot(A2DAxis& axis, CDC& dc, const CRect& rect, int columns, int rows, int freeAspect)
{
    axis.layOut(dc, rect);
    // a narrower plot can need a higher header, which leaves less room than was shared out
    constexpr int rounds = 4;
    for (int i = 0; i < rounds && !freeAspect; ++i) {
        const CRect plot = axis.getGraphRect();
        const CRect square = squareCells(plot, columns, rows);
        if (square == plot)
            break;
        axis.setBorderRect(
            CRect(square.left, square.top, rect.right - square.right, rect.bottom - square.bottom));
        axis.layOut(dc, rect);
    }
    return axis.getGraphRect();
}

}  // namespace

void drawFigure(CDC& dc, int width, int height, int unit, const ViewOptions& options,
                const ViewInputs& inputs)
{
    const CRect all(0, 0, width * unit, height * unit);
    dc.FillSolidRect(all, RGB(255, 255, 255));

    const AFloatMatrixAccess cells(inputs.map.cells);
    A2DAxis axis(inputs.frame.xDirection, 1, nullptr, 0);
    axis.setNameOX(inputs.frame.xTitle);
    axis.setNameOY(inputs.frame.yTitle);
    ALevelsColorGraph* const graph = addGraph(axis, cells, unit, options, inputs);

    CRect inner = all;
    inner.DeflateRect(margin * unit, margin * unit);
    axis.layOut(dc, inner);
    AAxisColorOP bar(*graph);
    bar.setFHeight(axis.getFHeight());
    CRect axisRect = inner;
    axisRect.right -= bar.neededBreadth(dc, axis.getGraphRect().Height()) + barGap * unit;
    const CRect plot =
        layOutPlot(axis, dc, axisRect, cells.columns(), cells.rows(), options.freeAspect);
    axis.draw(dc, axisRect);
    drawAreas(dc, axis, inputs.frame, inputs.areas, unit);
    drawModel(dc, axis, inputs.frame, inputs.model, unit);
    CRect barRect(plot.right + barGap * unit, plot.top, inner.right, plot.bottom);
    bar.draw(dc, barRect);
}

}  // namespace pavane
