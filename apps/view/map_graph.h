#pragma once

#include "apps/view/inputs.h"
#include "apps/view/options.h"
#include "pavane/axes/maps/cells/map_scale.h"

namespace pavane
{

class A2DAxis;
class ALevelsColorGraph;
class AMatrixAccess;

/// The scale of the library that an option stands for.
MapScaleKind scaleKind(ViewScale scale);

/// Centres of the first and last cells (RP).
TMinMax centresOf(const MapFrame& frame);

/// The levels asked for, as values of the map.
ContourLevels levelsOf(const LevelChoice& choice, const ViewInputs& inputs);

/// What is to be said of them; empty for nothing.
std::string levelNoteOf(const LevelChoice& choice, const ViewInputs& inputs);

/// Colour map and contours with everything that the options say about them, in an axis with the
/// titles of the map, which owns them.
ALevelsColorGraph* addMapGraph(A2DAxis& axis, const AMatrixAccess& cells,
                               const ViewOptions& options, const ViewInputs& inputs);

}  // namespace pavane
