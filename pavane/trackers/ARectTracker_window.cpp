#include "pavane/trackers/ARectTracker.h"
#include "pavane/trackers/drag_loop.h"
#include "pavane/trackers/shapes/RectDrag.h"
#include "pavane/trackers/tracker_cursors.h"

namespace pavane
{

class ARectTracker::Drag : public DragSession
{
public:
    Drag(ARectTracker& tracker, int hit, CPoint press)
        : tracker_(tracker), drag_(tracker.rect_, hit, press, tracker.validRect_),
          life_(tracker.life())
    {
    }

    int moveTo(CPoint point, int, int released) override
    {
        const CRect old = tracker_.rect_;
        CRect next = drag_.at(point);
        if (point != drag_.press())
            tracker_.AdjustRect(drag_.hit(), &next);
        if (next != old)
            tracker_.OnChangingRect(old, next);
        if (!life_.alive() || (next == old && !released))
            return 0;
        tracker_.rect_ = next;
        tracker_.OnChangedRect(old);
        return next != old;
    }
    void cancel() override { tracker_.rect_ = drag_.start(); }
    ShapeTrace trace() const override { return tracker_.trace(); }

private:
    ARectTracker& tracker_;
    RectDrag drag_;
    LifeWatch life_;
};

int ARectTracker::Track(CWnd* window, CPoint point, int allowInvert, CWnd* clipTo)
{
    int hit = HitTestHandles(point);
    if (hit < 0)
        return 0;
    if (!(style_ & trackerHandles))
        hit = hitMiddle;
    const int before = allowInvert_;
    const LifeWatch life(this->life());
    allowInvert_ = allowInvert;
    sides_ = allowInvert ? DragSides() : sidesOf(rect_, handleEdges(hit));
    const int changed = TrackHandle(hit, window, point, clipTo);
    if (life.alive() && dragCancelled())
        allowInvert_ = before;
    return changed;
}

int ARectTracker::TrackRubberBand(CWnd* window, CPoint point, int allowInvert)
{
    constexpr int bottomRight = 2;
    const CRect before = rect_;
    const int invertBefore = allowInvert_;
    const LifeWatch life(this->life());
    allowInvert_ = allowInvert;
    if (!mayBegin(window, point))
        return 0;
    sides_ = {};  // a new shape may go any way
    rect_ = {point.x, point.y, point.x, point.y};
    const int changed = TrackHandle(bottomRight, window, point, nullptr);
    if (life.alive() && dragCancelled()) {
        rect_ = before;
        allowInvert_ = invertBefore;
    }
    return changed;
}

int ARectTracker::TrackHandle(int hit, CWnd* window, CPoint point, CWnd* clipTo)
{
    if (hit < 0 || hit > hitMiddle || !mayBegin(window, point))
        return 0;
    const CRect before = rect_;
    Drag drag(*this, hit, point);
    const DragEnd end = runDrag(*this, {finished_, dragEnd_, tracking_.on, tracking_.drawn}, drag,
                                window, point, clipTo);
    if (end == DragEnd::dead)
        return 0;
    sides_ = {};
    return rect_ != before;
}

int ARectTracker::SetCursor(CWnd* window, unsigned hitArea)
{
    CPoint point;
    if (!pointerIn(window, hitArea, point))
        return 0;
    int hit = normalizedHit(rect_, HitTest(point, window));
    if (hit < 0)
        return 0;
    if (hit == hitMiddle && !normalized(rect_).PtInRect(point))
        hit = hitMiddleOutside;
    pavane::SetCursor(rectTrackerCursor(hit));
    return 1;
}

}  // namespace pavane
