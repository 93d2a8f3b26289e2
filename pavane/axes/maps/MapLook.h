#pragma once

#include "pavane/axes/maps/cells/AMatrixAccess.h"
#include "pavane/axes/maps/cells/level_list.h"
#include "pavane/axes/maps/cells/map_scale.h"
#include "pavane/axes/maps/MapContent.h"
#include "pavane/axes/ranges/TMinMax.h"
#include "pavane/images/AColorPlay.h"
#include "platform/types.h"

namespace pavane
{

class ABMapGraph;
class ALevelsColorGraph;
class MapPicture;

/// What is asked of the colours and contours of a map, in words that suit any map: programs read it
/// from their command line, hosts fill it in.
struct MapLook {
    LevelChoice levels;
    MapScaleKind scale = MapScaleKind::linear;
    int hasRange = 0;
    double low = 0, high = 0;  ///< colour range, in the unit of the map
    int inPerCent = 0;         ///< or between percentiles of its cells
    AColorPlay play;
    int freeAspect = 0;  ///< cells need not be square
};

/// The range of colours that a look asks for on these cells; unset for none.
PAVANE_API TMnMx rangeOf(const MapLook& look, const AMatrixAccess& cells);

/// What is to be said of the levels asked for; empty for nothing.
PAVANE_API CString levelNoteOf(const LevelChoice& choice, const MapContent& content);

/// What a user hears before the map is drawn: levels in multiples of a noise that is 0. Empty for
/// nothing.
PAVANE_API CString noiseNoteOf(const LevelChoice& choice, const MapContent& content);

/// The levels asked for, for this map; as values of it where only these can say them.
PAVANE_API ContourLevels levelsOf(const LevelChoice& choice, const ABMapGraph& graph);

/// Gives the picture of a map the levels of a look and what is to be said of them; colours stay.
PAVANE_API void applyLevels(MapPicture& picture, const MapLook& look);
/// Gives the picture of a map everything that a look says; its header line tells what is to be said
/// of the levels.
PAVANE_API void applyWholeLook(MapPicture& picture, const MapLook& look);
/// The same without a word in its header line.
PAVANE_API void applyLook(MapPicture& picture, const MapLook& look);
/// Range, scale and levels, for the graph of a map.
PAVANE_API void applyLook(ALevelsColorGraph& graph, const MapContent& content, const MapLook& look);

}  // namespace pavane
