#pragma once

#include "pavane/trackers/collections/TrackerCollection.h"

namespace pavane
{

/// How the pointer picks and draws areas in the windows of the programs.
inline void setUpPointer(TrackerCollection& areas)
{
    constexpr int clickTremble = 3;  // pixels that a click may tremble without moving an area
    constexpr int vertexReach = 8;   // pixels about vertices and edges in which they are caught
    constexpr int edgeReach = 4;
    constexpr int fewestCorners = 3;  // a polygon of fewer holds nothing
    areas.SetDeadZone(clickTremble);
    areas.SetClickSelects(1);
    areas.SetCatch(vertexReach, edgeReach);
    areas.SetFirstVertexCloses(1);
    areas.SetFewestCorners(fewestCorners);
}

}  // namespace pavane
