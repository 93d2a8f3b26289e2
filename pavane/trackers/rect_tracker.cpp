// Upright rectangles of both planes.

#include "pavane/trackers/areas/record_layouts.h"
#include "pavane/trackers/ARectTracker.h"
#include "pavane/trackers/ARPRectTracker.h"
#include "pavane/trackers/drag_loop.h"
#include "pavane/trackers/plane_screen.h"
#include "pavane/trackers/shapes/data_drags.h"
#include "pavane/trackers/shapes/RectDrag.h"
#include "pavane/trackers/shapes/ShapeValues.h"
#include "pavane/trackers/tracker_cursors.h"

#include <algorithm>
#include <utility>

namespace pavane
{

namespace
{

/// What a press takes hold of. Pixels ask the handles alone.
int pressed(RectTrackerOf<PixelPlane>& tracker, CPoint point, CWnd*)
{
    const int hit = tracker.HitTestHandles(point);
    return hit >= 0 && !(tracker.GetStyle() & trackerHandles) ? hitMiddle : hit;
}
int pressed(RectTrackerOf<ValuePlane>& tracker, CPoint point, CWnd* window)
{
    return tracker.HitTest(point, window);
}

/// The rectangle with the pointer at `to`. In pixels moves are adjusted too.
CRect dragged(RectTrackerOf<PixelPlane>& tracker, const RectDrag& drag, const CRect&, CPoint to)
{
    CRect next = drag.at(to);
    if (to != drag.press())
        tracker.AdjustRect(drag.hit(), &next);
    return next;
}
/// In data values what is not dragged keeps its bits.
ARect<double> dragged(RectTrackerOf<ValuePlane>& tracker, const RectDrag& drag,
                      const ARect<double>& start, CPoint to)
{
    const AxisPixels pixels = screenOf(tracker);
    if (to == drag.press())
        return start;
    if (drag.hit() == hitMiddle) {
        const APoint<double> corners[] = {{start.left, start.top}, {start.right, start.bottom}};
        return offsetBy(start, dataStep(boundingBox(corners, 2), drag.press(), to,
                                        tracker.validRect(), pixels));
    }
    CRect next = drag.at(to);
    tracker.AdjustRect(drag.hit(), &next);
    return withDraggedEdges(start, drag.start(), next, pixels);
}

}  // namespace

template <typename Plane>
class RectTrackerOf<Plane>::Drag : public DragSession
{
public:
    Drag(RectTrackerOf& tracker, int hit, CPoint press)
        : tracker_(tracker), screen_(screenOf(tracker)), start_(tracker.rect_),
          drag_(tracker.pixelRect(), hit, press, tracker.validRect_), life_(tracker.life())
    {
    }

    int moveTo(CPoint point, int, int released) override
    {
        const auto old = tracker_.rect_;
        // nothing moves once another map has come, or this one has no room
        const bool goes = screenOf(tracker_) == screen_ && screen_.usable();
        auto next = goes ? dragged(tracker_, drag_, start_, point) : old;
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
    RectTrackerOf& tracker_;
    const decltype(screenOf(std::declval<RectTrackerOf&>())) screen_;  // at the press
    typename Plane::Rect start_;
    RectDrag drag_;
    LifeWatch life_;
};

template <typename Plane>
RectTrackerOf<Plane>::~RectTrackerOf() = default;

template <typename Plane>
int RectTrackerOf<Plane>::Store(AFile& file) const
{
    return ATracker::Store(file) &&
           RectFields<typename Plane::Rect>{rect_, minTrackSize_, allowInvert_}.store(file);
}

template <typename Plane>
int RectTrackerOf<Plane>::Load(AFile& file)
{
    RectFields<typename Plane::Rect> fields;
    if (!Plane::Base::Load(file) || !fields.load(file))
        return 0;
    rect_ = fields.rect;
    minTrackSize_ = fields.least;
    allowInvert_ = fields.allowInvert;
    return 1;
}

template <typename Plane>
int RectTrackerOf<Plane>::GetShape(ShapeValues& shape) const
{
    shape = {ShapeValues::Kind::rectangle, asValues(rect_), 0, {}};
    return 1;
}

template <typename Plane>
int RectTrackerOf<Plane>::SetShape(const ShapeValues& shape)
{
    if (shape.kind != ShapeValues::Kind::rectangle)
        return 0;
    auto next = rect_;
    assign(next, shape.rect);
    SetRect(next);
    return 1;
}

template <typename Plane>
int RectTrackerOf<Plane>::moveCode() const
{
    return hitMiddle;
}

template <typename Plane>
void RectTrackerOf<Plane>::SetRect(const typename Plane::Rect& rect)
{
    if (isFinite(rect))
        rect_ = rect;
}

template <typename Plane>
CRect RectTrackerOf<Plane>::pixelRect() const
{
    return screenOf(*this).pixels(rect_);
}

template <typename Plane>
CRect RectTrackerOf<Plane>::caughtRect() const
{
    CRect all;
    this->GetTrueRect(&all);
    return grown(all, std::max(this->edgeCatch_ - std::max(this->handleSize_ / 2 - 1, 0), 0));
}

template <typename Plane>
void RectTrackerOf<Plane>::GetTrueRect(CRect* rect) const
{
    *rect = grown(normalized(pixelRect()), std::max(this->handleSize_ / 2 - 1, 0));
}

template <typename Plane>
void RectTrackerOf<Plane>::GetHandleRect(int code, CRect* rect) const
{
    const CRect pixels = pixelRect();
    *rect = handleRect(pixels, code, this->GetHandleSize(pixels), this->handleSize_);
}

template <typename Plane>
int RectTrackerOf<Plane>::GetHandleMask() const
{
    return handleMask(pixelRect(), this->handleSize_);
}

template <typename Plane>
void RectTrackerOf<Plane>::AdjustRect(int hit, CRect* pixels)
{
    keepLeastSize(*pixels, hit, minTrackSize_, this->validRect_, sides_);
}

template <typename Plane>
void RectTrackerOf<Plane>::Draw(CDC* dc, CWnd* window)
{
    this->drawClipped(dc, window);
}

template <typename Plane>
void RectTrackerOf<Plane>::DrawShape(CDC& dc)
{
    if (this->drawsTrack())
        DrawTrackRect(&dc, pixelRect());
    else if (this->IsActive())
        DrawActive(&dc);
    else
        DrawNotActive(&dc);
}

template <typename Plane>
void RectTrackerOf<Plane>::DrawActive(CDC* dc)
{
    const CRect pixels = pixelRect();
    drawRectShape(*dc, screenOf(*this).finePixels(rect_), pixels, this->GetHandleSize(pixels),
                  this->handleSize_, true, this->GetOutlineLook());
}

template <typename Plane>
void RectTrackerOf<Plane>::DrawNotActive(CDC* dc)
{
    const CRect pixels = pixelRect();
    drawRectShape(*dc, screenOf(*this).finePixels(rect_), pixels, this->GetHandleSize(pixels),
                  this->handleSize_, false, this->GetOutlineLook());
}

template <typename Plane>
void RectTrackerOf<Plane>::DrawTrackRect(CDC* dc, const CRect& pixels)
{
    const ARect<double> place =
        pixels == pixelRect() ? screenOf(*this).finePixels(rect_) : fractionsOf(pixels);
    drawRectShape(*dc, place, pixels, this->GetHandleSize(pixels), this->handleSize_,
                  this->IsActive() != 0, this->GetOutlineLook());
}

template <typename Plane>
ShapeTrace RectTrackerOf<Plane>::trace() const
{
    return rectTrace(pixelRect(), this->handleSize_ + this->GetLineSize());
}

template <typename Plane>
int RectTrackerOf<Plane>::Track(CWnd* window, CPoint point, int allowInvert, CWnd* clipTo)
{
    const int hit = pressed(*this, point, window);
    if (hit < 0)
        return 0;
    const int before = allowInvert_;
    const LifeWatch life(ATracker::life());
    allowInvert_ = allowInvert;
    sides_ = allowInvert ? DragSides() : sidesOf(pixelRect(), handleEdges(hit));
    const int changed = this->TrackHandle(hit, window, point, clipTo);
    if (life.alive() && this->dragCancelled())
        allowInvert_ = before;
    return changed;
}

template <typename Plane>
int RectTrackerOf<Plane>::TrackRubberBand(CWnd* window, CPoint point, int allowInvert)
{
    constexpr int bottomRight = 2;
    const auto before = rect_;
    const int invertBefore = allowInvert_;
    const LifeWatch life(ATracker::life());
    allowInvert_ = allowInvert;
    if (!this->mayBegin(window, point) || !screenOf(*this).usable())
        return 0;
    sides_ = {};  // a new shape may go any way
    const auto p = screenOf(*this).value(point);
    SetRect({p.x, p.y, p.x, p.y});
    const int changed = this->TrackHandle(bottomRight, window, point, nullptr);
    if (life.alive() && this->dragCancelled()) {
        rect_ = before;
        allowInvert_ = invertBefore;
    }
    return changed;
}

template <typename Plane>
int RectTrackerOf<Plane>::TrackHandle(int hit, CWnd* window, CPoint point, CWnd* clipTo)
{
    if (hit < 0 || hit > hitMiddle || !this->mayBegin(window, point) || !screenOf(*this).usable())
        return 0;
    const auto before = rect_;
    Drag drag(*this, hit, point);
    const DragEnd end =
        runDrag(*this, {this->finished_, this->dragEnd_, this->tracking_.on, this->tracking_.drawn},
                drag, window, point, clipTo);
    if (end == DragEnd::dead)
        return 0;
    sides_ = {};
    return !(rect_ == before);
}

template <typename Plane>
int RectTrackerOf<Plane>::SetCursor(CWnd* window, unsigned hitArea)
{
    CPoint point;
    if (!this->pointerIn(window, hitArea, point))
        return 0;
    const CRect pixels = pixelRect();
    int hit = normalizedHit(pixels, this->HitTest(point, window));
    if (hit < 0)
        return 0;
    if (hit == hitMiddle && !normalized(pixels).PtInRect(point))
        hit = hitMiddleOutside;
    pavane::SetCursor(rectTrackerCursor(hit));
    return 1;
}

template class RectTrackerOf<PixelPlane>;
template class RectTrackerOf<ValuePlane>;

}  // namespace pavane
