#pragma once

#include "pavane/containers/AArray.h"
#include "pavane/trackers/shapes/AxisPixels.h"
#include "pavane/trackers/shapes/RectDrag.h"
#include "pavane/trackers/shapes/TurnedRectDrag.h"

namespace pavane
{

// Drags of shapes in data values. The pointer is in pixels, the shape in values (RP); what a drag
// does not touch keeps its bits, and nothing that is not finite ever comes out.

/// `start` with those edges replaced that lie on another pixel in `after` than in `before`.
PAVANE_API ARect<double> withDraggedEdges(const ARect<double>& start, const CRect& before,
                                          const CRect& after, const AxisPixels& pixels);

/// The offset in values that a move from `press` to `pointer` adds to a shape that covers `box`
/// (in order): shortened so that no side gets farther out of `valid` (pixels).
PAVANE_API APoint<double> dataStep(const ARect<double>& box, CPoint press, CPoint pointer,
                                   const CRect& valid, const AxisPixels& pixels);

/// The bounding box of n points, in order.
PAVANE_API ARect<double> boundingBox(const APoint<double>* points, int n);

/// `p` with the offset added; the bits stay where it is 0.
PAVANE_API APoint<double> offsetBy(const APoint<double>& p, const APoint<double>& step);
PAVANE_API ARect<double> offsetBy(const ARect<double>& r, const APoint<double>& step);

/// A rectangle in data values and its turn about its centre, from the x towards the y axis.
struct TurnedDataRect {
    ARect<double> rect;
    double angle = 0;
    friend bool operator==(const TurnedDataRect&, const TurnedDataRect&) = default;
};

/// The middle of a rectangle, for any finite edges.
PAVANE_API APoint<double> centreOf(const ARect<double>& rect);
/// Half of the lengths of both sides.
PAVANE_API APoint<double> halfSides(const ARect<double>& rect);
/// The handles as in turned_rect.h, in values.
PAVANE_API void turnedHandles(const TurnedDataRect& shape,
                              APoint<double> (&points)[turnedHandleCount]);
/// Widens what looks smaller than `least` pixels about its centre.
PAVANE_API void widenToLeast(ARect<double>& rect, double angle, CSize least,
                             const AxisPixels& pixels);

/// One drag of a turned rectangle in data values; see TurnedRectDrag.
class PAVANE_API TurnedDataDrag
{
public:
    /// `halfExtent`: half the box of the turned outline, for moves.
    TurnedDataDrag(const TurnedDataRect& start, int hit, CPoint press, const CRect& valid,
                   const APoint<double>& halfExtent, bool mayInvert, const AxisPixels& pixels);
    TurnedDataRect at(CPoint pointer) const;
    const TurnedDataRect& start() const { return start_; }

private:
    TurnedDataRect sized(CPoint pointer) const;
    TurnedDataRect turned(CPoint pointer) const;

    TurnedDataRect start_;
    int hit_;
    CPoint press_;
    CRect valid_;
    APoint<double> halfExtent_;
    bool mayInvert_;
    AxisPixels pixels_;
};

}  // namespace pavane
