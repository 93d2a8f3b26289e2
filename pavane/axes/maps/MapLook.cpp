#include "pavane/axes/maps/MapLook.h"

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

TMnMx rangeOf(const MapLook& look, const AMatrixAccess& cells)
{
    if (!look.hasRange)
        return {};
    if (!look.inPerCent)
        return {look.low, look.high};
    AMapHistogram histogram;
    if (!histogram.set(cells))
        return {};
    return histogram.percentileRange(look.low, look.high);
}

CString levelNoteOf(const LevelChoice& choice, const MapContent& content)
{
    if (content.range.isEmpty())
        return {};
    return levelNote(choice, content.range.greatest, content.noise.sigma);
}

CString noiseNoteOf(const LevelChoice& choice, const MapContent& content)
{
    const int needsNoise = choice.list.unit == LevelUnit::noise && !(content.noise.sigma > 0);
    return needsNoise ? "its noise is 0: there are no contours in sigma" : "";
}

void applyLevels(MapPicture& picture, const MapLook& look)
{
    picture.graph().contours().setLevels(levelsOf(look.levels, picture.graph()));
    picture.setHeaderNote(levelNoteOf(look.levels, picture.content()));
}

void applyWholeLook(MapPicture& picture, const MapLook& look)
{
    applyLook(picture, look);
    picture.setHeaderNote(levelNoteOf(look.levels, picture.content()));
}

void applyLook(MapPicture& picture, const MapLook& look)
{
    applyLook(picture.graph(), picture.content(), look);
    picture.figure().setSquareCells(!look.freeAspect && !picture.content().frame.unlikeAxes);
}

void applyLook(ALevelsColorGraph& graph, const MapContent& content, const MapLook& look)
{
    TMinMax centres = content.frame.centres();
    const TMnMx range = rangeOf(look, graph.cells());
    centres.zMin = range.min;
    centres.zMax = range.max;
    graph.setCentres(centres);
    graph.setScale(look.scale);
    (void)graph.SetColorPlay(look.play);
    graph.contours().setLevels(levelsOf(look.levels, graph));
}

}  // namespace pavane
