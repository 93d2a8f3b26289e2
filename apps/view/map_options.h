#pragma once

#include "apps/view/inputs.h"
#include "apps/view/options.h"
#include "pavane/axes/maps/cells/AMatrixAccess.h"
#include "pavane/axes/maps/cells/map_scale.h"
#include "pavane/axes/ranges/TMinMax.h"

namespace pavane
{

class ABMapGraph;
class ALevelsColorGraph;
class MapPicture;

/// The range of colours that the options ask for on these cells; unset for none.
TMnMx rangeOf(const ViewOptions& options, const AMatrixAccess& cells);

/// What is to be said of the levels asked for; empty for nothing.
std::string levelNoteOf(const LevelChoice& choice, const MapContent& content);

/// The levels of an option for this map; as values of it where only these can say them.
ContourLevels levelsOf(const LevelChoice& choice, const ABMapGraph& graph);

/// The scale of the library that an option stands for.
MapScaleKind scaleKind(ViewScale scale);

/// Gives the picture of a map the levels of the options and what is to be said of them; colours
/// stay.
void applyLevels(MapPicture& picture, const ViewOptions& options);
/// Gives the picture of a map everything that the options say about colours and contours; its
/// header line tells what is to be said of the levels.
void applyOptions(MapPicture& picture, const ViewOptions& options);
/// The same without a word in its header line.
void applyLook(MapPicture& picture, const ViewOptions& options);
/// Range, scale and levels, for the graph of a map.
void applyLook(ALevelsColorGraph& graph, const MapContent& content, const ViewOptions& options);

}  // namespace pavane
