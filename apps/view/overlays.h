#pragma once

#include "pavane/axes/maps/MapContent.h"
#include "pavane/measures/maps/polarisation.h"
#include "tessel/progress_function.h"
#include "tessel/SkyCoordinates.h"

#include <memory>
#include <string>
#include <vector>

namespace pavane
{

class AVectorGraph;
class MapPicture;
struct MadeMap;
struct MadeTold;
struct ViewOptions;

/// What lies over a map, read and computed.
struct MapOverlays {
    SkyCoordinates shown;               ///< of the map below
    std::unique_ptr<MapContent> other;  ///< the map whose contours are drawn; null for none
    SkyCoordinates otherSky;
    std::unique_ptr<PolarMap> polar;  ///< null without vectors
};

/// Reads what the options ask for over a map; nothing without a wish. 0 with `error`, a line that
/// names the file.
int readOverlays(const ViewOptions& options, const MapContent& map, MapOverlays& overlays,
                 std::string& error);

/// Draws it over a picture, in place of contours of the map's own where those of another one are
/// drawn. The overlays have to outlive it.
void addOverlays(MapPicture& picture, const ViewOptions& options, const MapOverlays& overlays);

/// Finds the vectors of the options' Q and U over a map that is shown, and its degree of
/// polarisation where that is wanted. 0 with `error`, a line that names the file.
int findVectors(const ViewOptions& options, const MapContent& map, PolarMap& polar,
                std::string& error, const ProgressFunction& progress = {});
/// What the bar of vectors says, by what they are.
void setVectorUnit(AVectorGraph& vectors, const ViewOptions& options, const PolarMap& polar);

/// Makes the polarised intensity, its degree or angle, as makeOfOne does.
int makePolarisation(const ViewOptions& options, MadeMap& made, MadeTold& told, std::string& error,
                     const ProgressFunction& progress);

}  // namespace pavane
