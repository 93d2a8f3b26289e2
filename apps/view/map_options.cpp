#include "apps/view/map_options.h"

#include "pavane/axes/maps/ALevelsColorGraph.h"
#include "pavane/axes/maps/MapPicture.h"

namespace pavane
{

namespace
{

/// The scale of the library that an option stands for.
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

/// The levels asked for, as values of the map.
ContourLevels levelsOf(const LevelChoice& choice, const ABMapGraph& graph)
{
    ContourLevels levels;
    levels.unit = LevelUnit::absolute;
    if (!graph.cellRange().isEmpty())
        levels.factors = levelValues(choice, graph.cellRange().greatest, graph.noise().sigma);
    return levels;
}

}  // namespace

std::string levelNoteOf(const LevelChoice& choice, const MapContent& content)
{
    if (content.range.isEmpty())
        return {};
    return levelNote(choice, content.range.greatest, content.noise.sigma);
}

void applyOptions(MapPicture& picture, const ViewOptions& options)
{
    applyLook(picture, options);
    picture.setHeaderNote(levelNoteOf(options.levels, picture.content()));
}

void applyLook(MapPicture& picture, const ViewOptions& options)
{
    const MapContent& content = picture.content();
    ALevelsColorGraph& graph = picture.graph();
    if (options.hasRange) {
        TMinMax centres = content.frame.centres();
        centres.zMin = options.low;
        centres.zMax = options.high;
        graph.setCentres(centres);
    }
    graph.setScale(scaleKind(options.scale));
    graph.contours().setLevels(levelsOf(options.levels, graph));
    picture.figure().setSquareCells(!options.freeAspect);
}

}  // namespace pavane
