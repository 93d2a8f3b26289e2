#include "pavane/trackers/ARPAreaTracker.h"
#include "pavane/trackers/drag_loop.h"
#include "pavane/trackers/shapes/data_drags.h"
#include "pavane/trackers/shapes/polygon_shape.h"
#include "pavane/trackers/shapes/turned_rect.h"
#include "pavane/trackers/tracker_cursors.h"
#include "platform/CWnd.h"

namespace pavane
{

class ARPAreaTracker::Drag : public DragSession
{
public:
    Drag(ARPAreaTracker& tracker, int hit, CPoint press)
        : tracker_(tracker), axis_(tracker.axis_), start_(tracker.points_),
          before_(tracker.points_), hit_(hit), press_(press), life_(tracker.life())
    {
    }

    /// An open polygon takes the press as a new vertex, unless it meets the last one.
    int begin() override
    {
        if (tracker_.IsReady())
            return 0;
        const int n = before_.count();
        if (n > 0 &&
            squareAbout(tracker_.pixel(before_(n - 1)), tracker_.handleSize_).PtInRect(press_)) {
            hit_ = n - 1 + hitFirstHandle;
            return 0;
        }
        hit_ = n + hitFirstHandle;
        const APoint<double> vertex = tracker_.value(press_);
        AArray<APoint<double>> next = before_;
        // painting the window before may have left the axis without room
        if (tracker_.axis_ != axis_ || !tracker_.convertible() || !isFinite(vertex) ||
            next.Add(vertex) < 0 || !change(next))
            return 0;
        start_ = tracker_.points_;
        return 1;
    }

    int moveTo(CPoint point, int, int) override
    {
        AArray<APoint<double>> next = start_;
        const int vertex = hit_ - hitFirstHandle;
        const AxisPixels pixels(axis_);
        if (vertex >= next.count() || next.count() < 1 || tracker_.axis_ != axis_ ||
            !pixels.usable())
            return 0;
        if (vertex >= 0) {
            if (point != press_)
                takeValue(next(vertex), pixels.value(clampedTo(tracker_.validRect_, point)));
        } else {
            const APoint<double> step = point == press_ ? APoint<double>() : stepTo(point, pixels);
            for (int i = 0; i < next.count(); ++i)
                next(i) = offsetBy(next(i), step);
        }
        return change(next);
    }
    void cancel() override { tracker_.points_ = before_; }
    ShapeTrace trace() const override { return tracker_.trace(); }

private:
    APoint<double> stepTo(CPoint point, const AxisPixels& pixels) const
    {
        return dataStep(boundingBox(start_.lpArray(), start_.count()), press_, point,
                        tracker_.validRect_, pixels);
    }
    static void takeValue(APoint<double>& vertex, const APoint<double>& value)
    {
        if (isFinite(value))
            vertex = value;
    }
    int change(AArray<APoint<double>>& next)
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

    ARPAreaTracker& tracker_;
    const ABAxis* axis_;             // at the press; not used once the tracker has another
    AArray<APoint<double>> start_;   // of the movement
    AArray<APoint<double>> before_;  // without a vertex that the press added
    int hit_;
    CPoint press_;
    LifeWatch life_;
};

int ARPAreaTracker::Track(CWnd* window, CPoint point, int, CWnd* clipTo)
{
    const int hit = HitTest(point, window);
    return hit < 0 ? 0 : TrackHandle(hit, window, point, clipTo);
}

int ARPAreaTracker::TrackRubberBand(CWnd* window, CPoint point, int)
{
    return mayBegin(window, point) && convertible() ? TrackHandle(0, window, point, nullptr) : 0;
}

int ARPAreaTracker::TrackHandle(int hit, CWnd* window, CPoint point, CWnd* clipTo)
{
    if (hit < 0 || (IsReady() && hit < hitInside) || !mayBegin(window, point) || !convertible())
        return 0;
    Drag drag(*this, hit, point);
    const DragEnd end = runDrag(*this, {finished_, dragEnd_, tracking_.on, tracking_.drawn}, drag,
                                window, point, clipTo);
    return end == DragEnd::released || end == DragEnd::escaped || end == DragEnd::rightButton;
}

int ARPAreaTracker::TrackReady(CWnd* window, CPoint point)
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

int ARPAreaTracker::SetCursor(CWnd* window, unsigned hitArea)
{
    CPoint point;
    const int hit = pointerIn(window, hitArea, point) ? HitTest(point, window) : -1;
    if (hit < hitInside)
        return 0;
    pavane::SetCursor(hit == hitInside ? moveTrackerCursor() : sizeTrackerCursor());
    return 1;
}

}  // namespace pavane
