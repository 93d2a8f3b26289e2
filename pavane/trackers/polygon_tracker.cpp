// Polygons of both planes.

#include "pavane/trackers/AAreaTracker.h"
#include "pavane/trackers/areas/record_layouts.h"
#include "pavane/trackers/ARPAreaTracker.h"
#include "pavane/trackers/drag_loop.h"
#include "pavane/trackers/plane_screen.h"
#include "pavane/trackers/shapes/data_drags.h"
#include "pavane/trackers/shapes/polygon_shape.h"
#include "pavane/trackers/shapes/ShapeValues.h"
#include "pavane/trackers/shapes/turned_rect.h"
#include "pavane/trackers/tracker_cursors.h"
#include "platform/CWnd.h"

#include <utility>
#include <vector>

namespace pavane
{

namespace
{

/// By how much all points move.
CPoint stepOf(const AArray<CPoint>& points, CPoint press, CPoint pointer, const CRect& valid,
              const WindowPixels&)
{
    return polygonStep(points.lpArray(), points.count(), press, pointer, valid);
}
APoint<double> stepOf(const AArray<APoint<double>>& points, CPoint press, CPoint pointer,
                      const CRect& valid, const AxisPixels& pixels)
{
    if (pointer == press)
        return {};
    return dataStep(boundingBox(points.lpArray(), points.count()), press, pointer, valid, pixels);
}

CPoint offsetBy(CPoint p, CPoint step)
{
    return {saturatedSum(p.x, step.x), saturatedSum(p.y, step.y)};
}

}  // namespace

template <typename Plane>
class PolygonTrackerOf<Plane>::Drag : public DragSession
{
    using Points = AArray<typename Plane::Point>;

public:
    Drag(PolygonTrackerOf& tracker, int hit, CPoint press)
        : tracker_(tracker), screen_(screenOf(tracker)), start_(tracker.points_),
          before_(tracker.points_), hit_(hit), press_(press), life_(tracker.life())
    {
    }

    /// An open polygon takes the press as a new vertex, unless it meets the last one.
    int begin() override
    {
        if (tracker_.IsReady())
            return 0;
        const int n = before_.count();
        if (n > 0) {
            const CPoint last = screenOf(tracker_).pixel(before_(n - 1));
            if (squareAbout(last, tracker_.handleSize_).PtInRect(press_)) {
                hit_ = n - 1 + hitFirstHandle;
                return 0;
            }
        }
        hit_ = n + hitFirstHandle;
        // painting the window before may have left the axis without room
        if (!goes())
            return 0;
        const auto vertex = screen_.value(press_);
        Points next = before_;
        if (!isFinite(vertex) || next.Add(vertex) < 0 || !change(next))
            return 0;
        start_ = tracker_.points_;
        return 1;
    }

    int moveTo(CPoint point, int, int) override
    {
        Points next = start_;
        const int vertex = hit_ - hitFirstHandle;
        if (vertex >= next.count() || next.count() < 1 || !goes())
            return 0;
        if (vertex < 0) {
            const auto step = stepOf(start_, press_, point, tracker_.validRect_, screen_);
            for (int i = 0; i < next.count(); ++i)
                next(i) = offsetBy(next(i), step);
        } else if (point != press_) {
            const auto to = screen_.value(clampedTo(tracker_.validRect_, point));
            if (isFinite(to))
                next(vertex) = to;
        }
        return change(next);
    }
    void cancel() override { tracker_.points_ = before_; }
    ShapeTrace trace() const override { return tracker_.trace(); }

private:
    /// Nothing moves once another map has come, or this one has no room.
    bool goes() const { return screenOf(tracker_) == screen_ && screen_.usable(); }
    int change(Points& next)
    {
        if (samePoints(tracker_.points_, next))
            return 0;
        tracker_.OnChangingArea(tracker_.points_, tracker_.style_, next, tracker_.style_, hit_);
        if (!life_.alive())
            return 0;
        tracker_.points_ = next;
        tracker_.OnChangedArea(tracker_.points_);
        return 1;
    }

    PolygonTrackerOf& tracker_;
    const decltype(screenOf(std::declval<PolygonTrackerOf&>())) screen_;  // at the press
    Points start_;                                                        // of the movement
    Points before_;  // without a vertex that the press added
    int hit_;
    CPoint press_;
    LifeWatch life_;
};

template <typename Plane>
PolygonTrackerOf<Plane>::~PolygonTrackerOf() = default;

template <typename Plane>
int PolygonTrackerOf<Plane>::Store(AFile& file) const
{
    return ATracker::Store(file) && points_.Store(file);
}

template <typename Plane>
int PolygonTrackerOf<Plane>::Load(AFile& file)
{
    AArray<typename Plane::Point> points;
    if (!Plane::Base::Load(file) || !loadVertices(file, points))
        return 0;
    points_ = points;
    return 1;
}

template <typename Plane>
int PolygonTrackerOf<Plane>::GetShape(ShapeValues& shape) const
{
    shape = {ShapeValues::Kind::polygon, {}, 0, {}};
    shape.points.reserve(static_cast<std::size_t>(points_.count()));
    for (int i = 0; i < points_.count(); ++i)
        shape.points.push_back(asValues(points_(i)));
    return 1;
}

template <typename Plane>
int PolygonTrackerOf<Plane>::SetShape(const ShapeValues& shape)
{
    if (shape.kind != ShapeValues::Kind::polygon)
        return 0;
    const int n = static_cast<int>(shape.points.size());
    if (points_.count() != n)
        points_.GrowBy(n);
    if (points_.count() != n)
        return 0;
    for (int i = 0; i < n; ++i)
        assign(points_(i), shape.points[static_cast<std::size_t>(i)]);
    return 1;
}

template <typename Plane>
std::size_t PolygonTrackerOf<Plane>::vertexBytes() const
{
    return sizeof(typename Plane::Point);
}

template <typename Plane>
int PolygonTrackerOf<Plane>::IsReady() const
{
    return (this->style_ & trackerReady) != 0;
}

template <typename Plane>
int PolygonTrackerOf<Plane>::HitTest(CPoint point, CWnd*)
{
    if (!this->IsReady())
        return 0;
    CRect all;
    this->GetTrueRect(&all);
    if (!this->caughtBox(all).PtInRect(point))
        return hitNothing;
    const int hit = this->HitTestHandles(point);
    return hit > hitInside && !(this->style_ & trackerHandles) ? hitInside : hit;
}

template <typename Plane>
int PolygonTrackerOf<Plane>::HitTestHandles(CPoint point)
{
    const AArray<CPoint>& points = pixelsOf(screenOf(*this), points_);
    return hitPolygon(points.lpArray(), points.count(), point,
                      {this->handleSize_, this->vertexCatch_, this->edgeCatch_});
}

template <typename Plane>
void PolygonTrackerOf<Plane>::GetTrueRect(CRect* rect) const
{
    const AArray<CPoint>& points = pixelsOf(screenOf(*this), points_);
    *rect = grown(GetAroundRect(points.lpArray(), points.count()),
                  this->handleSize_ / 2 + this->GetLineSize());
}

template <typename Plane>
void PolygonTrackerOf<Plane>::GetHandleRect(int i, CRect* rect, const AArray<CPoint>& points) const
{
    *rect = i >= 0 && i < points.count() ? squareAbout(points(i), this->handleSize_) : CRect();
}

template <typename Plane>
void PolygonTrackerOf<Plane>::Draw(CDC* dc, CWnd* window)
{
    this->drawClipped(dc, window);
}

template <typename Plane>
void PolygonTrackerOf<Plane>::DrawShape(CDC& dc)
{
    if (this->drawsTrack() || !this->IsReady())
        DrawTrack(&dc);
    else if (this->IsActive())
        DrawActive(&dc);
    else
        DrawNotActive(&dc);
}

template <typename Plane>
void PolygonTrackerOf<Plane>::drawPolygon(CDC& dc, bool active, bool ready) const
{
    const auto screen = screenOf(*this);
    std::vector<CPointF> points;
    points.reserve(static_cast<std::size_t>(points_.count()));
    for (int i = 0; i < points_.count(); ++i)
        points.push_back(screen.finePixel(points_(i)));
    drawAreaShape(dc, points.data(), points_.count(), this->handleSize_, active, ready,
                  this->GetOutlineLook());
}

template <typename Plane>
void PolygonTrackerOf<Plane>::DrawTrack(CDC* dc)
{
    drawPolygon(*dc, this->IsActive() || !this->IsReady(), this->IsReady() != 0);
}

template <typename Plane>
void PolygonTrackerOf<Plane>::DrawActive(CDC* dc)
{
    drawPolygon(*dc, true, true);
}

template <typename Plane>
void PolygonTrackerOf<Plane>::DrawNotActive(CDC* dc)
{
    drawPolygon(*dc, false, true);
}

template <typename Plane>
ShapeTrace PolygonTrackerOf<Plane>::trace() const
{
    const AArray<CPoint>& points = pixelsOf(screenOf(*this), points_);
    ShapeTrace trace;
    trace.points.assign(points.lpArray(), points.lpArray() + points.count());
    trace.closed = this->IsReady() != 0;
    trace.margin = this->handleSize_ / 2 + 1 + this->GetLineSize();
    return trace;
}

template <typename Plane>
int PolygonTrackerOf<Plane>::Track(CWnd* window, CPoint point, int, CWnd* clipTo)
{
    const int hit = this->HitTest(point, window);
    return hit < 0 ? 0 : this->TrackHandle(hit, window, point, clipTo);
}

template <typename Plane>
int PolygonTrackerOf<Plane>::TrackRubberBand(CWnd* window, CPoint point, int)
{
    return this->mayBegin(window, point) && screenOf(*this).usable()
               ? this->TrackHandle(0, window, point, nullptr)
               : 0;
}

template <typename Plane>
int PolygonTrackerOf<Plane>::TrackHandle(int hit, CWnd* window, CPoint point, CWnd* clipTo)
{
    if (hit < 0 || (this->IsReady() && hit < hitInside) || !this->mayBegin(window, point) ||
        !screenOf(*this).usable())
        return 0;
    Drag drag(*this, hit, point);
    const DragEnd end =
        runDrag(*this, {this->finished_, this->dragEnd_, this->tracking_.on, this->tracking_.drawn},
                drag, window, point, clipTo);
    return end == DragEnd::released || end == DragEnd::escaped || end == DragEnd::rightButton;
}

template <typename Plane>
int PolygonTrackerOf<Plane>::TrackReady(CWnd* window, CPoint point)
{
    this->refreshRects(window);
    if (this->IsReady() || !this->inBothRects(point))
        return 0;
    if (window)
        invalidateTrace(*window, trace());
    this->style_ |= trackerReady;
    if (!window)
        return 1;
    invalidateTrace(*window, trace());  // the closing line too
    const LifeWatch life(ATracker::life());
    auto& tracking = this->tracking_;
    tracking.on = 1;  // the outline is drawn once more as drags draw it, closed now
    paintTrack(*this, {this->finished_, this->dragEnd_, tracking.on, tracking.drawn}, *window);
    if (life.alive())
        tracking.on = 0;
    return 1;
}

template <typename Plane>
int PolygonTrackerOf<Plane>::SetCursor(CWnd* window, unsigned hitArea)
{
    CPoint point;
    const int hit =
        this->pointerIn(window, hitArea, point) ? this->HitTest(point, window) : hitNothing;
    if (hit < hitInside)
        return 0;
    pavane::SetCursor(hit == hitInside ? moveTrackerCursor() : sizeTrackerCursor());
    return 1;
}

template class PolygonTrackerOf<PixelPlane>;
template class PolygonTrackerOf<ValuePlane>;

}  // namespace pavane
