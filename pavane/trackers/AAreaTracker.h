#pragma once

#include "pavane/trackers/ABaseTracker.h"

namespace pavane
{

struct ShapeTrace;

/// A free polygon, drawn vertex by vertex until it is closed (style bit trackerReady). Hit codes:
/// -1 nothing, 0 still open: a press adds a vertex, 1 inside, 2 + i vertex i.
class PAVANE_API AAreaTracker : public ABaseTracker
{
public:
    AAreaTracker() = default;
    AAreaTracker(const AAreaTracker&) = default;
    AAreaTracker& operator=(const AAreaTracker&) = default;

    const char* GetClassName() const override { return "AAreaTracker"; }
    int Load(AFile& file) override;
    int Store(AFile& file) const override;
    /// Non-zero once the polygon is closed.
    int IsReady() const override;
    AAreaTracker* Duplicate() const override;
    void GetAreaPoints(AArray<CPoint>& points) const override;
    int Track(CWnd* window, CPoint point, int allowInvert, CWnd* clipTo) override;
    int TrackRubberBand(CWnd* window, CPoint point, int allowInvert) override;
    /// Returns 1 also when the drag was cancelled; the points are then as before.
    int TrackHandle(int hit, CWnd* window, CPoint point, CWnd* clipTo) override;
    /// Closes the polygon.
    int TrackReady(CWnd* window, CPoint point) override;
    int SetCursor(CWnd* window, unsigned hitArea) override;
    int HitTest(CPoint point, CWnd* window) override;
    int HitTestHandles(CPoint point) override;
    void Draw(CDC* dc, CWnd* window) override;
    void GetTrueRect(CRect* rect) const override;
    void Scale(const PixelMapping& from, const PixelMapping& to) override;
    void DrawShape(CDC& dc) override;

    virtual void DrawTrack(CDC* dc);
    /// The square of vertex i of `points`.
    virtual void GetHandleRect(int i, CRect* rect, const AArray<CPoint>& points) const;
    virtual void OnChangedArea(AArray<CPoint>& points) { (void)points; }
    /// Before each change: the points and style as they are and as they will be, and the hit code.
    virtual void OnChangingArea(AArray<CPoint>& points, unsigned style, AArray<CPoint>& next,
                                unsigned nextStyle, int hit)
    {
        (void)points, (void)style, (void)next, (void)nextStyle, (void)hit;
    }
    virtual void DrawActive(CDC* dc);
    virtual void DrawNotActive(CDC* dc);

    using ATracker::GetHandleSize;
    const AArray<CPoint>& points() const { return points_; }
    AArray<CPoint>& points() { return points_; }

protected:
    AArray<CPoint> points_;

private:
    class Drag;
    ShapeTrace trace() const;
};

}  // namespace pavane
