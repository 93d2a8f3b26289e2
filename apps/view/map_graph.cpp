#include "apps/view/map_graph.h"

#include "pavane/axes/A2DAxis.h"
#include "pavane/axes/maps/ALevelsColorGraph.h"
#include "pavane/axes/maps/map_titles.h"

#include <cmath>
#include <numbers>

namespace pavane
{

namespace
{

constexpr double arcsecondsPerDegree = 3600.0;

/// The beam in units of the axes, turned as the sky is in the map.
MapBeam beamOf(const MapHeader& header, const MapFrame& frame)
{
    const double angle = header.bpa * std::numbers::pi / 180;
    const MapPlace end = frame.onAxes(std::sin(angle), std::cos(angle));
    const double unit = arcsecondsPerDegree / frame.arcseconds;
    return {header.bmaj * unit, header.bmin * unit,
            std::atan2(end.x, end.y) * 180 / std::numbers::pi};
}

}  // namespace

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

TMinMax centresOf(const MapFrame& frame)
{
    TMinMax centres;
    centres.xMin = frame.xFirst;
    centres.xMax = frame.xLast;
    centres.yMin = frame.yFirst;
    centres.yMax = frame.yLast;
    return centres;
}

ContourLevels levelsOf(const LevelChoice& choice, const ViewInputs& inputs)
{
    ContourLevels levels;
    levels.unit = LevelUnit::absolute;
    if (!inputs.range.isEmpty())
        levels.factors = levelValues(choice, inputs.range.greatest, inputs.noise.sigma);
    return levels;
}

std::string levelNoteOf(const LevelChoice& choice, const ViewInputs& inputs)
{
    if (inputs.range.isEmpty())
        return {};
    return levelNote(choice, inputs.range.greatest, inputs.noise.sigma);
}

ALevelsColorGraph* addMapGraph(A2DAxis& axis, const AMatrixAccess& cells,
                               const ViewOptions& options, const ViewInputs& inputs)
{
    axis.setNameOX(inputs.frame.xTitle);
    axis.setNameOY(inputs.frame.yTitle);
    TMinMax centres = centresOf(inputs.frame);
    if (options.hasRange) {
        centres.zMin = options.low;
        centres.zMax = options.high;
    }
    auto* const graph = new ALevelsColorGraph(&axis, cells, centres, 0);
    graph->setStatistics(inputs.range, inputs.noise);
    graph->setNames(inputs.frame.xTitle, inputs.frame.yTitle, mapValueTitle(inputs.map.header));
    const std::string note = levelNoteOf(options.levels, inputs);
    const CString line = mapHeaderLine(inputs.map.header, inputs.range, inputs.noise);
    graph->setHeaderText(0, line + (note.empty() ? "" : "   " + note));
    graph->setScale(scaleKind(options.scale));
    graph->contours().setLevels(levelsOf(options.levels, inputs));
    graph->contours().setWidth(1);
    if (inputs.map.header.hasBeam && inputs.frame.onSky)
        graph->setBeam(beamOf(inputs.map.header, inputs.frame));
    return graph;
}

}  // namespace pavane
