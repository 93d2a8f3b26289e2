#include "apps/view/map_options.h"

#include "pavane/axes/maps/ALevelsColorGraph.h"
#include "pavane/axes/maps/cells/AMapHistogram.h"
#include "pavane/axes/maps/MapPicture.h"

namespace pavane
{

ContourLevels levelsOf(const LevelChoice& choice, const ABMapGraph& graph)
{
    if (!choice.none && !choice.goesOn)
        return choice.list;
    ContourLevels levels;
    levels.unit = LevelUnit::absolute;
    if (!graph.cellRange().isEmpty())
        levels.factors = levelValues(choice, graph.cellRange().greatest, graph.noise().sigma);
    return levels;
}

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

TMnMx rangeOf(const ViewOptions& options, const AMatrixAccess& cells)
{
    if (!options.hasRange)
        return {};
    if (!options.inPerCent)
        return {options.low, options.high};
    AMapHistogram histogram;
    if (!histogram.set(cells))
        return {};
    return histogram.percentileRange(options.low, options.high);
}

std::string levelNoteOf(const LevelChoice& choice, const MapContent& content)
{
    if (content.range.isEmpty())
        return {};
    return levelNote(choice, content.range.greatest, content.noise.sigma);
}

void applyLevels(MapPicture& picture, const ViewOptions& options)
{
    picture.graph().contours().setLevels(levelsOf(options.levels, picture.graph()));
    picture.setHeaderNote(levelNoteOf(options.levels, picture.content()));
}

void applyOptions(MapPicture& picture, const ViewOptions& options)
{
    applyLook(picture, options);
    picture.setHeaderNote(levelNoteOf(options.levels, picture.content()));
}

void applyLook(MapPicture& picture, const ViewOptions& options)
{
    applyLook(picture.graph(), picture.content(), options);
    picture.figure().setSquareCells(!options.freeAspect);
}

void applyLook(ALevelsColorGraph& graph, const MapContent& content, const ViewOptions& options)
{
    TMinMax centres = content.frame.centres();
    const TMnMx range = rangeOf(options, graph.cells());
    centres.zMin = range.min;
    centres.zMax = range.max;
    graph.setCentres(centres);
    graph.setScale(scaleKind(options.scale));
    (void)graph.SetColorPlay(options.play);
    graph.contours().setLevels(levelsOf(options.levels, graph));
}

}  // namespace pavane
