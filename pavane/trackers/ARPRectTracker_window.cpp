#include "pavane/trackers/ARPRectTracker.h"
#include "pavane/trackers/drag_loop.h"
#include "pavane/trackers/shapes/data_drags.h"
#include "pavane/trackers/tracker_cursors.h"

namespace pavane
{

class ARPRectTracker::Drag : public DragSession
{
public:
    Drag(ARPRectTracker& tracker, int hit, CPoint press)
        : tracker_(tracker), axis_(tracker.axis_), start_(tracker.rect_),
          drag_(tracker.pixelRect(), hit, press, tracker.validRect_), life_(tracker.life())
    {
    }

    int moveTo(CPoint point, int, int released) override
    {
        const ARect<double> old = tracker_.rect_;
        ARect<double> next = at(point);
        if (!(next == old))
            tracker_.OnChangingRect(old, next);
        if (!life_.alive() || (next == old && !released))
            return 0;
        tracker_.SetRect(next);
        const bool changed = !(tracker_.rect_ == old);
        tracker_.OnChangedRect(old);
        return changed;
    }
    void cancel() override { tracker_.rect_ = start_; }
    ShapeTrace trace() const override { return tracker_.trace(); }

private:
    ARect<double> at(CPoint point)
    {
        const AxisPixels pixels(axis_);
        if (tracker_.axis_ != axis_ || !pixels.usable())  // another map came meanwhile
            return tracker_.rect_;
        if (point == drag_.press())
            return start_;
        if (drag_.hit() == hitMiddle) {
            const APoint<double> corners[] = {{start_.left, start_.top},
                                              {start_.right, start_.bottom}};
            return offsetBy(start_, dataStep(boundingBox(corners, 2), drag_.press(), point,
                                             tracker_.validRect_, pixels));
        }
        CRect next = drag_.at(point);
        tracker_.AdjustRect(drag_.hit(), &next);
        return withDraggedEdges(start_, drag_.start(), next, pixels);
    }

    ARPRectTracker& tracker_;
    const ABAxis* axis_;  // at the press; not used once the tracker has another
    ARect<double> start_;
    RectDrag drag_;
    LifeWatch life_;
};

int ARPRectTracker::Track(CWnd* window, CPoint point, int allowInvert, CWnd* clipTo)
{
    const int hit = HitTest(point, window);
    if (hit < 0)
        return 0;
    const int before = allowInvert_;
    const LifeWatch life(this->life());
    allowInvert_ = allowInvert;
    sides_ = allowInvert ? DragSides() : sidesOf(pixelRect(), handleEdges(hit));
    const int changed = TrackHandle(hit, window, point, clipTo);
    if (life.alive() && dragCancelled())
        allowInvert_ = before;
    return changed;
}

int ARPRectTracker::TrackRubberBand(CWnd* window, CPoint point, int allowInvert)
{
    constexpr int bottomRight = 2;
    const ARect<double> before = rect_;
    const int invertBefore = allowInvert_;
    const LifeWatch life(this->life());
    allowInvert_ = allowInvert;
    if (!mayBegin(window, point) || !convertible())
        return 0;
    sides_ = {};  // a new shape may go any way
    const APoint<double> p = value(point);
    SetRect({p.x, p.y, p.x, p.y});
    const int changed = TrackHandle(bottomRight, window, point, nullptr);
    if (life.alive() && dragCancelled()) {
        rect_ = before;
        allowInvert_ = invertBefore;
    }
    return changed;
}

int ARPRectTracker::TrackHandle(int hit, CWnd* window, CPoint point, CWnd* clipTo)
{
    if (hit < 0 || hit > hitMiddle || !mayBegin(window, point) || !convertible())
        return 0;
    const ARect<double> before = rect_;
    Drag drag(*this, hit, point);
    const DragEnd end = runDrag(*this, {finished_, dragEnd_, tracking_.on, tracking_.drawn}, drag,
                                window, point, clipTo);
    if (end == DragEnd::dead)
        return 0;
    sides_ = {};
    return !(rect_ == before);
}

int ARPRectTracker::SetCursor(CWnd* window, unsigned hitArea)
{
    CPoint point;
    if (!pointerIn(window, hitArea, point))
        return 0;
    const CRect pixels = pixelRect();
    int hit = normalizedHit(pixels, HitTest(point, window));
    if (hit < 0)
        return 0;
    if (hit == hitMiddle && !normalized(pixels).PtInRect(point))
        hit = hitMiddleOutside;
    pavane::SetCursor(rectTrackerCursor(hit));
    return 1;
}

}  // namespace pavane
