#pragma once

#include "pavane/trackers/shapes/rect_handles.h"
#include "pavane/trackers/shapes/turned_rect.h"
#include "platform/api.h"
#include "platform/geometry.h"

namespace pavane
{

/// An unturned rectangle and its turn about its centre (radians), in pixels.
struct TurnedRect {
    CRect rect;
    double angle = 0;
    friend bool operator==(const TurnedRect&, const TurnedRect&) = default;
};

inline void turnedHandles(const TurnedRect& shape, CPoint (&points)[turnedHandleCount])
{
    turnedHandles(shape.rect, shape.angle, points);
}

/// What the handles of a turned shape do: hit codes 1 inside, 2 to 9 sizing, 10 turning.
inline constexpr int hitTurning = hitFirstHandle + turningHandle;
constexpr bool isSizing(int hit) { return hit >= hitFirstHandle && hit < hitTurning; }

/// Follows the pointer's way round a centre, for the direction that a snapped turn needs.
class TurnDirection
{
public:
    /// The direction of motion from the last angle to this one; the old one when there is none.
    PAVANE_API double follow(double angle);

private:
    bool begun_ = false;
    double last_ = 0;
    double direction_ = 1;
};

/// One drag of a turned rectangle, in pixels, as RectDrag is one of an upright rectangle.
///
/// Sizing is measured in the turned frame. The side opposite to the handle stays: exactly in a
/// rectangle that is not turned, otherwise within the two pixels that whole coordinates cost.
class PAVANE_API TurnedRectDrag
{
public:
    /// `box`: what a move keeps inside `valid` (right and bottom included). With `mayInvert` a side
    /// may be dragged past the opposite one; the rectangle is then put in order again.
    TurnedRectDrag(const TurnedRect& start, int hit, CPoint press, const CRect& valid,
                   const CRect& box, bool mayInvert);

    /// The shape with the pointer at `pointer`, before a least size or a step of the turn; the
    /// start itself at the press.
    TurnedRect at(CPoint pointer) const;
    const TurnedRect& start() const { return start_; }

private:
    TurnedRect moved(CPoint pointer) const;
    TurnedRect sized(CPoint pointer) const;
    TurnedRect sizedUpright(double x, double y) const;
    TurnedRect sizedTurned(double x, double y) const;
    double offOpposite(const CRect& rect) const;

    TurnedRect start_;
    int hit_;
    CPoint press_;
    CRect valid_;
    CRect box_;
    bool mayInvert_;
    HandleEdges edges_;
    double cos_;
    double sin_;
};

}  // namespace pavane
