#pragma once

#include "pavane/trackers/planes.h"

#include <cstddef>

namespace pavane
{

struct ShapeTrace;

/// What free polygons are in either plane; AAreaTracker and ARPAreaTracker add their names and what
/// only one of them has. A polygon is drawn vertex by vertex until it is closed (style bit
/// trackerReady). Hit codes: -1 nothing, 0 still open: a press adds a vertex, 1 inside, 2 + i
/// vertex i.
template <typename Plane>
class PolygonTrackerOf : public Plane::Base
{
public:
    ~PolygonTrackerOf() override;
    int Load(AFile& file) override;
    int Store(AFile& file) const override;
    /// Non-zero once the polygon is closed.
    int IsReady() const override;
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
    void DrawShape(CDC& dc) override;
    int GetShape(ShapeValues& shape) const override;
    int SetShape(const ShapeValues& shape) override;
    std::size_t vertexBytes() const override;

    virtual void DrawTrack(CDC* dc);
    /// The square of vertex i of `points`, which are pixels.
    virtual void GetHandleRect(int i, CRect* rect, const AArray<CPoint>& points) const;
    /// After each change inside a drag.
    virtual void OnChangedArea(AArray<typename Plane::Point>& points) { (void)points; }
    /// Before each change: the points and style as they are and as they will be, and the hit code.
    virtual void OnChangingArea(AArray<typename Plane::Point>& points, unsigned style,
                                AArray<typename Plane::Point>& next, unsigned nextStyle, int hit)
    {
        (void)points, (void)style, (void)next, (void)nextStyle, (void)hit;
    }
    virtual void DrawActive(CDC* dc);
    virtual void DrawNotActive(CDC* dc);

    const AArray<typename Plane::Point>& points() const { return points_; }
    /// Values put in here have to be finite.
    AArray<typename Plane::Point>& points() { return points_; }

protected:
    void drawPolygon(CDC& dc, bool active, bool ready) const;

    AArray<typename Plane::Point> points_;

private:
    class Drag;
    ShapeTrace trace() const;
};

extern template class PAVANE_API PolygonTrackerOf<PixelPlane>;
extern template class PAVANE_API PolygonTrackerOf<ValuePlane>;

}  // namespace pavane
