#pragma once

#include "pavane/trackers/planes.h"
#include "pavane/trackers/shapes/turned_rect.h"

#include <cstdint>

namespace pavane
{

struct ShapeTrace;

/// What rectangles turned about their centre are in either plane: the base of ARotateRectTracker
/// and of ARPRotateRectTracker, and of nothing else. Hit codes: -1 nothing, 1 inside, 2 to 9 the
/// handles (the codes of an upright rectangle plus 2), 10 the handle that turns.
template <typename Plane>
class TurnedTrackerOf : public Plane::Base
{
public:
    ~TurnedTrackerOf() override;
    int Load(AFile& file) override;
    int Store(AFile& file) const override;
    int Track(CWnd* window, CPoint point, int allowInvert, CWnd* clipTo) override;
    int TrackRubberBand(CWnd* window, CPoint point, int allowInvert) override;
    int TrackHandle(int hit, CWnd* window, CPoint point, CWnd* clipTo) override;
    int SetCursor(CWnd* window, unsigned hitArea) override;
    int HitTest(CPoint point, CWnd* window) override;
    int HitTestHandles(CPoint point) override;
    void Draw(CDC* dc, CWnd* window) override;
    void GetTrueRect(CRect* rect) const override;
    void DrawShape(CDC& dc) override;
    int GetShape(ShapeValues& shape) const override;
    int SetShape(const ShapeValues& shape) override;

    /// `angle` (radians) on a step of the turn, `direction` its sign of motion.
    virtual double JustifyAngle(double angle, double direction);
    /// The square of handle 0 to 8.
    virtual void GetHandleRect(int index, CRect* rect) const;
    /// After each change inside a drag, and once more at its end.
    virtual void OnChangedRect(typename Plane::Rect& rect, double angle)
    {
        (void)rect, (void)angle;
    }
    /// Before each change: `next` may be altered.
    virtual void OnChangingRect(typename Plane::Rect& rect, double angle,
                                typename Plane::Rect& next, double nextAngle)
    {
        (void)rect, (void)angle, (void)next, (void)nextAngle;
    }
    virtual void DrawActive(CDC* dc);
    virtual void DrawNotActive(CDC* dc);
    virtual void DrawTrack(CDC* dc);
    /// Widens what looks smaller than the least size (pixels) about its centre.
    virtual void AdjustRect(typename Plane::Rect& rect);

    const typename Plane::Rect& rect() const { return rect_; }
    /// Values that are not finite are refused.
    void SetRect(const typename Plane::Rect& rect);
    /// Radians, from the x axis towards the y axis: with y downwards the drawn shape turns
    /// clockwise.
    double angle() const { return angle_; }
    /// An angle that is not finite is refused.
    void SetAngle(double angle);
    CSize minSize() const { return minSize_; }
    int angleStep() const { return angleStep_; }
    void SetAngleStep(int degrees) { angleStep_ = degrees; }

protected:
    void pixelHandles(CPoint (&points)[turnedHandleCount]) const;
    /// The turned corners on the screen, clockwise from the top left.
    void pixelCorners(AArray<CPoint>& points) const;
    /// Edge of a handle on the screen.
    int handleSize() const;

    typename Plane::Rect rect_;
    double angle_ = 0;
    CSize minSize_{8, 8};
    int angleStep_ = 15;
    std::uint32_t word_ = 0;  ///< kept in the record of data values for hosts
    int allowInvert_ = 1;     ///< of the drag that runs; not stored

private:
    friend typename Plane::Turned;
    TurnedTrackerOf() = default;

    class Drag;
    const typename Plane::Turned& self() const;
    ShapeTrace trace() const;
};

extern template class PAVANE_API TurnedTrackerOf<PixelPlane>;
extern template class PAVANE_API TurnedTrackerOf<ValuePlane>;

}  // namespace pavane
