#include "pavane/trackers/AAreaTracker.h"
#include "pavane/trackers/drag_loop.h"
#include "pavane/trackers/shapes/polygon_shape.h"
#include "pavane/trackers/shapes/RectDrag.h"
#include "pavane/trackers/shapes/turned_rect.h"
#include "pavane/trackers/tracker_cursors.h"
#include "platform/CWnd.h"
#include "tessel/rounding.h"

namespace pavane
{

class AAreaTracker::Drag : public DragSession
{
public:
    Drag(AAreaTracker& tracker, int hit, CPoint press)
        : tracker_(tracker), start_(tracker.points_), before_(tracker.points_), hit_(hit),
          press_(press), life_(tracker.life())
    {
    }

    /// An open polygon takes the press as a new vertex, unless it meets the last one.
    int begin() override
    {
        if (tracker_.IsReady())
            return 0;
        const int n = before_.count();
        if (n > 0 && squareAbout(before_(n - 1), tracker_.handleSize_).PtInRect(press_)) {
            hit_ = n - 1 + hitFirstHandle;
            return 0;
        }
        AArray<CPoint> next = before_;
        hit_ = n + hitFirstHandle;
        if (next.Add(press_) < 0 || !change(next))
            return 0;
        start_ = tracker_.points_;
        return 1;
    }

    int moveTo(CPoint point, int, int) override
    {
        AArray<CPoint> next = start_;
        const int vertex = hit_ - hitFirstHandle;
        if (vertex >= next.count() || next.count() < 1)
            return 0;
        if (vertex >= 0) {
            if (point != press_)
                next(vertex) = clampedTo(tracker_.validRect_, point);
        } else {
            const CPoint step =
                polygonStep(start_.lpArray(), start_.count(), press_, point, tracker_.validRect_);
            for (int i = 0; i < next.count(); ++i)
                next(i) = {saturatedSum(next(i).x, step.x), saturatedSum(next(i).y, step.y)};
        }
        return change(next);
    }
    void cancel() override { tracker_.points_ = before_; }
    ShapeTrace trace() const override { return tracker_.trace(); }

private:
    int change(AArray<CPoint>& next)
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

    AAreaTracker& tracker_;
    AArray<CPoint> start_;   // of the movement
    AArray<CPoint> before_;  // without a vertex that the press added
    int hit_;
    CPoint press_;
    LifeWatch life_;
};

int AAreaTracker::Track(CWnd* window, CPoint point, int, CWnd* clipTo)
{
    const int hit = HitTest(point, window);
    return hit < 0 ? 0 : TrackHandle(hit, window, point, clipTo);
}

int AAreaTracker::TrackRubberBand(CWnd* window, CPoint point, int)
{
    return mayBegin(window, point) ? TrackHandle(0, window, point, nullptr) : 0;
}

int AAreaTracker::TrackHandle(int hit, CWnd* window, CPoint point, CWnd* clipTo)
{
    if (hit < 0 || (IsReady() && hit < hitInside) || !mayBegin(window, point))
        return 0;
    Drag drag(*this, hit, point);
    const DragEnd end = runDrag(*this, {finished_, dragEnd_, tracking_.on, tracking_.drawn}, drag,
                                window, point, clipTo);
    return end == DragEnd::released || end == DragEnd::escaped || end == DragEnd::rightButton;
}

int AAreaTracker::TrackReady(CWnd* window, CPoint point)
{
    refreshRects(window);
    if (IsReady() || !inBothRects(point))
        return 0;
    if (window)
        invalidateTrace(*window, trace());
    style_ |= trackerReady;
    if (!window)
        return 1;
    invalidateTrace(*window, trace());  // the closing line too
    const LifeWatch life(this->life());
    tracking_.on = 1;  // the outline is drawn once more as drags draw it, closed now
    paintTrack(*this, {finished_, dragEnd_, tracking_.on, tracking_.drawn}, *window);
    if (life.alive())
        tracking_.on = 0;
    return 1;
}

int AAreaTracker::SetCursor(CWnd* window, unsigned hitArea)
{
    CPoint point;
    const int hit = pointerIn(window, hitArea, point) ? HitTest(point, window) : -1;
    if (hit < hitInside)
        return 0;
    pavane::SetCursor(hit == hitInside ? moveTrackerCursor() : sizeTrackerCursor());
    return 1;
}

}  // namespace pavane
