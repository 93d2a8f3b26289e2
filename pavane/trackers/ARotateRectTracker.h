#pragma once

#include "pavane/containers/APoint.h"
#include "pavane/trackers/ABaseTracker.h"

namespace pavane
{

struct ShapeTrace;

/// A rectangle turned about its centre. Hit codes: -1 nothing, 1 inside, 2 to 9 the handles (the
/// codes of an upright rectangle plus 2), 10 the handle that turns.
class PAVANE_API ARotateRectTracker : public ABaseTracker
{
public:
    ARotateRectTracker() = default;
    ARotateRectTracker(const ARotateRectTracker&) = default;
    ARotateRectTracker& operator=(const ARotateRectTracker&) = default;

    const char* GetClassName() const override { return "ARotateRectTracker"; }
    int Load(AFile& file) override;
    int Store(AFile& file) const override;
    ARotateRectTracker* Duplicate() const override;
    /// The four turned corners, clockwise from the top left.
    void GetAreaPoints(AArray<CPoint>& points) const override;
    int Track(CWnd* window, CPoint point, int allowInvert, CWnd* clipTo) override;
    int TrackRubberBand(CWnd* window, CPoint point, int allowInvert) override;
    int TrackHandle(int hit, CWnd* window, CPoint point, CWnd* clipTo) override;
    int SetCursor(CWnd* window, unsigned hitArea) override;
    int HitTest(CPoint point, CWnd* window) override;
    int HitTestHandles(CPoint point) override;
    void Draw(CDC* dc, CWnd* window) override;
    void GetTrueRect(CRect* rect) const override;
    void Scale(const PixelMapping& from, const PixelMapping& to) override;
    void DrawShape(CDC& dc) override;

    /// `angle` (radians) on a step of the turn, `direction` its sign of motion.
    virtual double JustifyAngle(double angle, double direction);
    /// The square of handle 0 to 8.
    virtual void GetHandleRect(int index, CRect* rect) const;
    virtual void OnChangedRect(CRect& rect, double angle) { (void)rect, (void)angle; }
    virtual void OnChangingRect(CRect& rect, double angle, CRect& next, double nextAngle)
    {
        (void)rect, (void)angle, (void)next, (void)nextAngle;
    }
    virtual void DrawActive(CDC* dc);
    virtual void DrawNotActive(CDC* dc);
    virtual void DrawTrack(CDC* dc);
    /// Widens what is below the least size about its centre.
    virtual void AdjustRect(CRect& rect);

    using ATracker::GetHandleSize;
    const CRect& rect() const { return rect_; }
    void SetRect(const CRect& rect) { rect_ = rect; }
    /// Radians; with y downwards the drawn shape turns clockwise.
    double angle() const { return angle_; }
    /// An angle that is not finite is refused.
    void SetAngle(double angle);
    CSize minSize() const { return minSize_; }
    int angleStep() const { return angleStep_; }
    void SetAngleStep(int degrees) { angleStep_ = degrees; }

protected:
    /// The first handle that is shown, 0 or 4.
    virtual int firstHandle() const;
    /// The outline as it is drawn: no coarser than the eye wants it.
    virtual void shownOutline(AArray<CPoint>& points) const { GetAreaPoints(points); }
    /// Half the extent of the turned outline in x and y.
    virtual APoint<double> halfExtent() const;

    CRect rect_;
    double angle_ = 0;
    CSize minSize_{8, 8};
    int angleStep_ = 15;
    int allowInvert_ = 1;  ///< of the drag that runs; not stored

private:
    class Drag;
    ShapeTrace trace() const;
};

}  // namespace pavane
