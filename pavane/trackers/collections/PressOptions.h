#pragma once

#include "platform/api.h"

namespace pavane
{

/// What presses find and what they do there; settings of a collection. None is stored.
class PAVANE_API PressOptions
{
public:
    /// Pixels that the pointer has to leave a press by before a drag begins; 0 at first.
    int deadZone() const { return deadZone_; }
    /// Pixels within which presses find vertices and edges; 0 at first.
    int vertexCatch() const { return vertexCatch_; }
    int edgeCatch() const { return edgeCatch_; }
    /// With a non-zero value a single press of the arrow tool makes the area under it current, and
    /// may drag it at once; at first only a double click does. A dead zone belongs to it, or a
    /// click that chooses an area may move it.
    void SetClickSelects(int on) { clickSelects_ = on; }
    int clickSelects() const { return clickSelects_; }
    /// With a non-zero value a press on the first vertex of an open polygon of three corners or
    /// more closes it; at first it adds one there.
    void SetFirstVertexCloses(int on) { firstVertexCloses_ = on; }
    int firstVertexCloses() const { return firstVertexCloses_; }
    /// Corners that a polygon has to have for a double click to close it; 1 at first.
    void SetFewestCorners(int n) { fewestCorners_ = n; }
    int fewestCorners() const { return fewestCorners_; }

protected:
    int deadZone_ = 0;
    int clickSelects_ = 0;
    int vertexCatch_ = 0;
    int edgeCatch_ = 0;
    int firstVertexCloses_ = 0;
    int fewestCorners_ = 1;
};

}  // namespace pavane
