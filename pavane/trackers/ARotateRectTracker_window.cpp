#include "pavane/trackers/ARotateRectTracker.h"
#include "pavane/trackers/drag_loop.h"
#include "pavane/trackers/shapes/TurnedRectDrag.h"
#include "pavane/trackers/tracker_cursors.h"
#include "tessel/rounding.h"

#include <cmath>

namespace pavane
{

class ARotateRectTracker::Drag : public DragSession
{
public:
    Drag(ARotateRectTracker& tracker, int hit, CPoint press)
        : tracker_(tracker), hit_(hit), press_(press), centre_(centreOf(tracker.rect_)),
          drag_({tracker.rect_, tracker.angle_}, hit, press, tracker.validRect_, box(),
                tracker.allowInvert_ != 0),
          life_(tracker.life())
    {
        direction_.follow(pointerAngle(press, centre_));
    }

    int moveTo(CPoint point, int shift, int released) override
    {
        const TurnedRect old{tracker_.rect_, tracker_.angle_};
        TurnedRect next = adjusted(point, shift);
        if (next != old)
            tracker_.OnChangingRect(tracker_.rect_, tracker_.angle_, next.rect, next.angle);
        if (!life_.alive() || (next == old && !released))
            return 0;
        tracker_.rect_ = next.rect;
        tracker_.SetAngle(next.angle);
        CRect before = old.rect;
        tracker_.OnChangedRect(before, old.angle);
        return next != old;
    }
    void cancel() override
    {
        tracker_.rect_ = drag_.start().rect;
        tracker_.angle_ = drag_.start().angle;
    }
    ShapeTrace trace() const override { return tracker_.trace(); }

private:
    CRect box() const
    {
        const APoint<double> half = tracker_.halfExtent();
        const int x = truncated(std::ceil(half.x));
        const int y = truncated(std::ceil(half.y));
        return {saturatedSum(centre_.x, -x), saturatedSum(centre_.y, -y),
                saturatedSum(centre_.x, x), saturatedSum(centre_.y, y)};
    }
    TurnedRect adjusted(CPoint point, int shift)
    {
        if (hit_ == hitTurning && point == centre_)  // no direction there
            return {tracker_.rect_, tracker_.angle_};
        TurnedRect next = drag_.at(point);
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

    ARotateRectTracker& tracker_;
    int hit_;
    CPoint press_;
    CPoint centre_;
    TurnedRectDrag drag_;
    TurnDirection direction_;
    LifeWatch life_;
};

int ARotateRectTracker::Track(CWnd* window, CPoint point, int allowInvert, CWnd* clipTo)
{
    const int hit = HitTest(point, window);
    if (hit < 0)
        return 0;
    allowInvert_ = allowInvert;
    return TrackHandle(hit, window, point, clipTo);
}

int ARotateRectTracker::TrackRubberBand(CWnd* window, CPoint point, int)
{
    constexpr int bottomRight = hitFirstHandle + 2;
    const CRect before = rect_;
    const LifeWatch life(this->life());
    if (!mayBegin(window, point))
        return 0;
    allowInvert_ = 1;  // a new shape may go any way
    rect_ = {point.x, point.y, point.x, point.y};
    const int changed = TrackHandle(bottomRight, window, point, nullptr);
    if (life.alive() && dragCancelled())
        rect_ = before;
    return changed;
}

int ARotateRectTracker::TrackHandle(int hit, CWnd* window, CPoint point, CWnd* clipTo)
{
    if (hit < hitInside || hit > hitTurning || !mayBegin(window, point))
        return 0;
    const TurnedRect before{rect_, angle_};
    Drag drag(*this, hit, point);
    const DragEnd end = runDrag(*this, {finished_, dragEnd_, tracking_.on, tracking_.drawn}, drag,
                                window, point, clipTo);
    return end != DragEnd::dead && TurnedRect{rect_, angle_} != before;
}

int ARotateRectTracker::SetCursor(CWnd* window, unsigned hitArea)
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
