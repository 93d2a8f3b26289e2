#pragma once

#include "pavane/trackers/ABTracker.h"

namespace pavane
{

struct ShapeTrace;

/// AAreaTracker in data values.
class PAVANE_API ARPAreaTracker : public ABTracker
{
public:
    ARPAreaTracker() = default;
    ARPAreaTracker(const ARPAreaTracker&) = default;
    ARPAreaTracker& operator=(const ARPAreaTracker&) = default;

    const char* GetClassName() const override { return "ARPAreaTracker"; }
    int Load(AFile& file) override;
    int Store(AFile& file) const override;
    int IsReady() const override;
    ARPAreaTracker* Duplicate() const override;
    void GetAreaPoints(AArray<APoint<double>>& points, int count) const override;
    /// The mean of the vertices.
    APoint<double> GetCenter() const override;
    int Track(CWnd* window, CPoint point, int allowInvert, CWnd* clipTo) override;
    int TrackRubberBand(CWnd* window, CPoint point, int allowInvert) override;
    /// Returns 1 also when the drag was cancelled; the points are then as before.
    int TrackHandle(int hit, CWnd* window, CPoint point, CWnd* clipTo) override;
    int TrackReady(CWnd* window, CPoint point) override;
    int SetCursor(CWnd* window, unsigned hitArea) override;
    int HitTest(CPoint point, CWnd* window) override;
    int HitTestHandles(CPoint point) override;
    void Draw(CDC* dc, CWnd* window) override;
    void GetTrueRect(CRect* rect) const override;
    void DrawShape(CDC& dc) override;

    virtual void DrawTrack(CDC* dc);
    /// The square of pixel vertex i of `points`.
    virtual void GetHandleRect(int i, CRect* rect, const AArray<CPoint>& points) const;
    virtual void OnChangedArea(AArray<APoint<double>>& points) { (void)points; }
    virtual void OnChangingArea(AArray<APoint<double>>& points, unsigned style,
                                AArray<APoint<double>>& next, unsigned nextStyle, int hit)
    {
        (void)points, (void)style, (void)next, (void)nextStyle, (void)hit;
    }
    virtual void DrawActive(CDC* dc);
    virtual void DrawNotActive(CDC* dc);

    using ATracker::GetHandleSize;
    const AArray<APoint<double>>& points() const { return points_; }
    /// Values put in here have to be finite.
    AArray<APoint<double>>& points() { return points_; }
    /// Replaces `points` by the vertices on the screen.
    void GetPixelPoints(AArray<CPoint>& points) const;

protected:
    void drawPolygon(CDC& dc, bool active, bool ready) const;

    AArray<APoint<double>> points_;

private:
    class Drag;
    ShapeTrace trace() const;
};

}  // namespace pavane
