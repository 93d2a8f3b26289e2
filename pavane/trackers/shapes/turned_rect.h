#pragma once

#include "pavane/containers/AArray.h"
#include "pavane/containers/APoint.h"
#include "platform/api.h"
#include "platform/geometry.h"

namespace pavane
{

// Geometry of a rectangle that is turned about its centre, in pixels. Angles are radians; with y
// downwards a positive one turns clockwise on the screen.

inline constexpr int turnedHandleCount = 9;
/// The handle that turns: halfway between the centre and the right side.
inline constexpr int turningHandle = 8;

// Hit codes: nothing -1, inside 1, handle i is i + 2.
inline constexpr int hitInside = 1;
inline constexpr int hitFirstHandle = 2;

inline constexpr double pi = 3.141592653589793;

/// `p` turned about `centre`; the offsets are cut towards zero.
PAVANE_API CPoint PointTransform(CPoint p, CPoint centre, double angle);

/// The centre of `rect`, halves cut towards zero.
PAVANE_API CPoint centreOf(const CRect& rect);

/// The turned handles: four corners clockwise from the top left, then the middles of top, right,
/// bottom and left, then the one that turns.
PAVANE_API void turnedHandles(const CRect& rect, double angle, CPoint (&points)[turnedHandleCount]);

/// Half of the lengths of both sides.
PAVANE_API APoint<double> halfSides(const CRect& rect);
/// Half of the box about the turned rectangle with these half sides, and about the ellipse in it.
PAVANE_API APoint<double> halfBoxOfRect(const APoint<double>& half, double angle);
PAVANE_API APoint<double> halfBoxOfEllipse(const APoint<double>& half, double angle);

/// The square of edge `size` about `centre`.
PAVANE_API CRect squareAbout(CPoint centre, int size);

/// `angle` on a multiple of `step` degrees, in the direction of motion: an exact multiple goes on
/// by one step. A step below 1 returns the angle unchanged.
/// Deliberate: past -180 degrees the multiple k becomes 360 - k; hosts rely on -180 coming out as
/// 180.
PAVANE_API double snappedAngle(double angle, double direction, int step);

/// The angle of `pointer` about `centre`, counter-clockwise on the screen.
/// Deliberate: PointTransform turns the other way round, so the handle mirrors the pointer; stored
/// pixel shapes and hosts' hooks depend on both.
PAVANE_API double pointerAngle(CPoint pointer, CPoint centre);

/// Widens what is below `least` to exactly that about its old centre.
PAVANE_API void widenToLeast(CRect& rect, CSize least);

inline constexpr int mostEllipsePoints = 65536;
/// The outline of the ellipse inscribed in the turned rectangle, as many points as its larger
/// semi-axis has pixels, but `fewest` at least and `most` at most; the first is at the end of the x
/// semi-axis. None for a box below 2 pixels.
PAVANE_API void ellipseOutline(AArray<CPoint>& points, const CRect& rect, double angle,
                               int fewest = 0, int most = mostEllipsePoints);

}  // namespace pavane
