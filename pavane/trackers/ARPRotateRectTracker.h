#pragma once

#include "pavane/trackers/ABTracker.h"
#include "pavane/trackers/shapes/turned_rect.h"

#include <cstdint>

namespace pavane
{

struct ShapeTrace;

/// ARotateRectTracker in data values. The rectangle is turned in data coordinates, and its turned
/// corners are then put on the screen, so that it covers the same part of the map at any zoom;
/// where the two scales differ it looks sheared. Hit codes are those of ARotateRectTracker.
class PAVANE_API ARPRotateRectTracker : public ABTracker
{
public:
    ARPRotateRectTracker() = default;
    ARPRotateRectTracker(const ARPRotateRectTracker&) = default;
    ARPRotateRectTracker& operator=(const ARPRotateRectTracker&) = default;

    const char* GetClassName() const override { return "ARPRotateRectTracker"; }
    int Load(AFile& file) override;
    int Store(AFile& file) const override;
    ARPRotateRectTracker* Duplicate() const override;
    void GetAreaPoints(AArray<APoint<double>>& points, int count) const override;
    APoint<double> GetCenter() const override;
    int Track(CWnd* window, CPoint point, int allowInvert, CWnd* clipTo) override;
    int TrackRubberBand(CWnd* window, CPoint point, int allowInvert) override;
    int TrackHandle(int hit, CWnd* window, CPoint point, CWnd* clipTo) override;
    int SetCursor(CWnd* window, unsigned hitArea) override;
    int HitTest(CPoint point, CWnd* window) override;
    int HitTestHandles(CPoint point) override;
    void Draw(CDC* dc, CWnd* window) override;
    void GetTrueRect(CRect* rect) const override;
    void DrawShape(CDC& dc) override;

    virtual double JustifyAngle(double angle, double direction);
    virtual void GetHandleRect(int index, CRect* rect) const;
    virtual void OnChangedRect(ARect<double>& rect, double angle) { (void)rect, (void)angle; }
    virtual void OnChangingRect(ARect<double>& rect, double angle, ARect<double>& next,
                                double nextAngle)
    {
        (void)rect, (void)angle, (void)next, (void)nextAngle;
    }
    virtual void DrawActive(CDC* dc);
    virtual void DrawNotActive(CDC* dc);
    virtual void DrawTrack(CDC* dc);
    /// Widens what looks smaller than the least size (pixels) about its centre.
    virtual void AdjustRect(ARect<double>& rect);

    using ATracker::GetHandleSize;
    const ARect<double>& rect() const { return rect_; }
    /// Values that are not finite are refused.
    void SetRect(const ARect<double>& rect);
    /// Radians in data coordinates, from the x axis towards the y axis.
    double angle() const { return angle_; }
    void SetAngle(double angle);
    CSize minSize() const { return minSize_; }
    int angleStep() const { return angleStep_; }
    void SetAngleStep(int degrees) { angleStep_ = degrees; }

protected:
    /// The outline on the screen.
    virtual void pixelOutline(AArray<CPoint>& points) const;
    /// The first handle that is shown, 0 or 4.
    virtual int firstHandle() const;
    void pixelHandles(CPoint (&points)[turnedHandleCount]) const;
    /// Edge of a handle on the screen.
    int handleSize() const;
    /// Half the extent of the turned outline in x and y, in data values.
    virtual APoint<double> halfExtent() const;

    ARect<double> rect_;
    double angle_ = 0;
    CSize minSize_{8, 8};
    int angleStep_ = 15;
    std::uint32_t word_ = 0;  ///< kept in the record for hosts
    int allowInvert_ = 1;     ///< of the drag that runs; not stored

private:
    class Drag;
    ShapeTrace trace() const;
};

}  // namespace pavane
