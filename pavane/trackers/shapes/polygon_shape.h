#pragma once

#include "pavane/containers/AArray.h"
#include "platform/api.h"
#include "platform/geometry.h"

#include <algorithm>

namespace pavane
{

/// The bounding box of n points, their greatest coordinates as right and bottom.
/// Deliberate: right and bottom start at -1, so that points that all lie at negative coordinates
/// get a right and bottom of -1, and no points at all (2147483647, 2147483647, -1, -1); hosts
/// recognise an empty shape by it.
PAVANE_API CRect GetAroundRect(const CPoint* points, int n);

/// The true bounding box: the same from the first point on; empty for no points.
PAVANE_API CRect boundingBox(const CPoint* points, int n);

/// Whether `p` is inside the closed polygon by the alternate rule; of a point on an edge, the left
/// and upper ones are inside.
PAVANE_API int insidePolygon(const CPoint* points, int n, CPoint p);

/// The first of the n vertices whose handle of edge `size` has `p` in it, -1 for none.
PAVANE_API int hitVertex(const CPoint* points, int n, CPoint p, int size);

/// Whether `p` is at most `reach` pixels from an edge of the closed polygon.
PAVANE_API int nearOutline(const CPoint* points, int n, CPoint p, int reach);

/// How a press finds a polygon: handles of edge `handle`, vertices and edges as of
/// ATracker::SetCatch.
struct PolygonCatch {
    int handle = 0;
    int vertex = 0;
    int edge = 0;
};
/// -1 nothing, 1 inside or on an edge, 2 + i vertex i: the first whose handle has `p` in it, else
/// the nearest one within reach. In a polygon smaller than four reaches these shrink with it, so
/// that there is room left to move it by.
PAVANE_API int hitPolygon(const CPoint* points, int n, CPoint p, const PolygonCatch& reach);

/// By how much the polygon moves: the step from `press` to `pointer`, shortened where its
/// GetAroundRect would leave `valid` (right and bottom included).
PAVANE_API CPoint polygonStep(const CPoint* points, int n, CPoint press, CPoint pointer,
                              const CRect& valid);

template <typename P>
bool samePoints(const AArray<P>& a, const AArray<P>& b)
{
    return std::equal(a.lpArray(), a.lpArray() + a.count(), b.lpArray(), b.lpArray() + b.count());
}

}  // namespace pavane
