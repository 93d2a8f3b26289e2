#pragma once

#include "pavane/axes/A2DAxis.h"
#include "pavane/axes/maps/AAxisColorOP.h"
#include "pavane/axes/maps/ALevelsColorGraph.h"
#include "pavane/axes/maps/MapFigure.h"
#include "platform/CDC.h"
#include "tessel/AMatrix.h"

/// Colours, bar and, unless `typed` is null, contours of a map on a device of 900 x 900, with an
/// axis, a graph and a figure of its own.
inline void drawLargeFigure(pavane::CDC& dc, const pavane::AMatrix<float>& cells, const char* typed)
{
    using namespace pavane;
    const AFloatMatrixAccess access(cells);
    A2DAxis axis(-1, 1, nullptr, 0);
    TMinMax centres;
    centres.xMin = 100;
    centres.xMax = -100;
    centres.yMin = -100;
    centres.yMax = 100;
    auto* const graph = new ALevelsColorGraph(&axis, access, centres, 0);  // owned by axis
    ContourLevels levels;
    levels.unit = LevelUnit::absolute;
    if (typed)
        (void)levels.read(typed);
    graph->contours().setLevels(levels);
    AAxisColorOP bar(*graph);
    MapFigure figure;
    figure.setAxis(&axis);
    figure.setMap(graph);
    figure.setBar(&bar);
    figure.draw(dc, figure.layOut(dc, CRect(0, 0, 900, 900)));
}
