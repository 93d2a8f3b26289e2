#include "pavane/trackers/ARPRotateRectTracker.h"
#include "pavane/trackers/drag_loop.h"
#include "pavane/trackers/shapes/data_drags.h"
#include "pavane/trackers/tracker_cursors.h"

namespace pavane
{

class ARPRotateRectTracker::Drag : public DragSession
{
public:
    Drag(ARPRotateRectTracker& tracker, int hit, CPoint press)
        : tracker_(tracker), axis_(tracker.axis_), hit_(hit), press_(press),
          drag_({tracker.rect_, tracker.angle_}, hit, press, tracker.validRect_,
                tracker.halfExtent(), tracker.allowInvert_ != 0, AxisPixels(tracker.axis_)),
          life_(tracker.life())
    {
        direction_.follow(tracker.angle_);
    }

    int moveTo(CPoint point, int shift, int released) override
    {
        const TurnedDataRect old{tracker_.rect_, tracker_.angle_};
        const bool sameMap = tracker_.axis_ == axis_ && tracker_.convertible();
        TurnedDataRect next = sameMap ? adjusted(point, shift) : old;
        if (!(next == old))
            tracker_.OnChangingRect(tracker_.rect_, tracker_.angle_, next.rect, next.angle);
        if (!life_.alive() || (next == old && !released))
            return 0;
        tracker_.SetRect(next.rect);
        tracker_.SetAngle(next.angle);
        ARect<double> before = old.rect;
        const bool changed = !(TurnedDataRect{tracker_.rect_, tracker_.angle_} == old);
        tracker_.OnChangedRect(before, old.angle);
        return changed;
    }
    void cancel() override
    {
        tracker_.rect_ = drag_.start().rect;
        tracker_.angle_ = drag_.start().angle;
    }
    ShapeTrace trace() const override { return tracker_.trace(); }

private:
    TurnedDataRect adjusted(CPoint point, int shift)
    {
        TurnedDataRect next = drag_.at(point);
        if (point == press_)
            return next;
        if (isSizing(hit_))
            tracker_.AdjustRect(next.rect);
        if (hit_ != hitTurning)
            return next;
        const double direction = direction_.follow(next.angle);
        if (shift)
            next.angle = tracker_.JustifyAngle(next.angle, direction);
        return next;
    }

    ARPRotateRectTracker& tracker_;
    const ABAxis* axis_;  // at the press; not used once the tracker has another
    int hit_;
    CPoint press_;
    TurnedDataDrag drag_;
    TurnDirection direction_;
    LifeWatch life_;
};

int ARPRotateRectTracker::Track(CWnd* window, CPoint point, int allowInvert, CWnd* clipTo)
{
    const int hit = HitTest(point, window);
    if (hit < 0)
        return 0;
    allowInvert_ = allowInvert;
    return TrackHandle(hit, window, point, clipTo);
}

int ARPRotateRectTracker::TrackRubberBand(CWnd* window, CPoint point, int)
{
    constexpr int bottomRight = hitFirstHandle + 2;
    const ARect<double> before = rect_;
    const LifeWatch life(this->life());
    if (!mayBegin(window, point) || !convertible())
        return 0;
    allowInvert_ = 1;  // a new shape may go any way
    const APoint<double> p = value(point);
    SetRect({p.x, p.y, p.x, p.y});
    const int changed = TrackHandle(bottomRight, window, point, nullptr);
    if (life.alive() && dragCancelled())
        rect_ = before;
    return changed;
}

int ARPRotateRectTracker::TrackHandle(int hit, CWnd* window, CPoint point, CWnd* clipTo)
{
    if (hit < hitInside || hit > hitTurning || !mayBegin(window, point) || !convertible())
        return 0;
    const TurnedDataRect before{rect_, angle_};
    Drag drag(*this, hit, point);
    const DragEnd end = runDrag(*this, {finished_, dragEnd_, tracking_.on, tracking_.drawn}, drag,
                                window, point, clipTo);
    return end != DragEnd::dead && !(TurnedDataRect{rect_, angle_} == before);
}

int ARPRotateRectTracker::SetCursor(CWnd* window, unsigned hitArea)
{
    CPoint point;
    const int hit = pointerIn(window, hitArea, point) ? HitTest(point, window) : -1;
    if (hit < 0)
        return 0;
    pavane::SetCursor(hit == hitInside    ? moveTrackerCursor()
                      : hit == hitTurning ? turnTrackerCursor()
                                          : sizeTrackerCursor());
    return 1;
}

}  // namespace pavane
