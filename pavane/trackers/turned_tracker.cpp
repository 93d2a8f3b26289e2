// Turned rectangles and ellipses of both planes.

#include "pavane/trackers/areas/record_layouts.h"
#include "pavane/trackers/ARotateRectTracker.h"
#include "pavane/trackers/ARPRotateRectTracker.h"
#include "pavane/trackers/drag_loop.h"
#include "pavane/trackers/plane_screen.h"
#include "pavane/trackers/shapes/data_drags.h"
#include "pavane/trackers/shapes/polygon_shape.h"
#include "pavane/trackers/shapes/TurnedRectDrag.h"
#include "pavane/trackers/tracker_cursors.h"

#include <algorithm>
#include <cmath>
#include <utility>
#include <vector>

namespace pavane
{

/// What the planes do each their own way.
struct TurnedParts {
    using Pixels = ARotateRectTracker;
    using Values = ARPRotateRectTracker;

    template <typename Turned>
    static int firstHandle(const Turned& shape)
    {
        return shape.firstHandle();
    }
    template <typename Turned>
    static ShapeValues::Kind kind(const Turned& shape)
    {
        return shape.shapeKind();
    }

    static TurnedRect start(const Pixels& shape) { return {shape.rect_, shape.angle_}; }
    static TurnedDataRect start(const Values& shape) { return {shape.rect_, shape.angle_}; }

    /// The outline that a press is inside of or near.
    static void hitOutline(const Pixels& shape, AArray<CPoint>& points)
    {
        shape.GetAreaPoints(points);
    }
    static void hitOutline(const Values& shape, AArray<CPoint>& points)
    {
        shape.pixelOutline(points);
    }

    /// The outline that is repainted.
    static void traced(const Pixels& shape, AArray<CPoint>& points) { shape.shownOutline(points); }
    static void traced(const Values& shape, AArray<CPoint>& points) { shape.pixelOutline(points); }
    static CPoint centre(const Pixels& shape) { return centreOf(shape.rect_); }
    static CPoint centre(const Values& shape) { return shape.pixel(shape.GetCenter()); }

    /// The outline between the pixels; an ellipse in data values gets as many points as a smooth
    /// curve needs on the screen.
    static std::vector<CPointF> fineOutline(const Pixels& shape, const CPointF*)
    {
        AArray<CPoint> points;
        shape.shownOutline(points);
        return fractionsOf(points.lpArray(), points.count());
    }
    static std::vector<CPointF> fineOutline(const Values& shape, const CPointF* handles)
    {
        constexpr double fewest = 12;
        constexpr double most = 720;
        double reach = fewest;
        for (int i = 4; i < turningHandle; ++i)
            reach = std::max({reach, std::abs(handles[i].x - handles[turningHandle].x),
                              std::abs(handles[i].y - handles[turningHandle].y)});
        AArray<APoint<double>> values;
        shape.GetAreaPoints(values, static_cast<int>(std::min(reach, most)));
        std::vector<CPointF> outline;
        outline.reserve(static_cast<std::size_t>(values.count()));
        for (int i = 0; i < values.count(); ++i)
            outline.push_back(screenOf(shape).finePixel(values(i)));
        return outline;
    }

    static TurnedRectDrag drag(const Pixels& shape, int hit, CPoint press)
    {
        const CPoint centre = centreOf(shape.rect_);
        const APoint<double> half = shape.halfExtent();
        const int x = truncated(std::ceil(half.x));
        const int y = truncated(std::ceil(half.y));
        const CRect box{saturatedSum(centre.x, -x), saturatedSum(centre.y, -y),
                        saturatedSum(centre.x, x), saturatedSum(centre.y, y)};
        return {start(shape), hit, press, shape.validRect_, box, shape.allowInvert_ != 0};
    }
    static TurnedDataDrag drag(const Values& shape, int hit, CPoint press)
    {
        return {start(shape),
                hit,
                press,
                shape.validRect_,
                shape.halfExtent(),
                shape.allowInvert_ != 0,
                screenOf(shape)};
    }
    /// The angle that a turn has at the press.
    static double firstAngle(const Pixels& shape, CPoint press)
    {
        return pointerAngle(press, centreOf(shape.rect_));
    }
    static double firstAngle(const Values& shape, CPoint) { return shape.angle_; }
    /// Whether the pointer says where a shape is turned to. In data values the drag does.
    static bool hasDirection(const TurnedRectDrag& drag, CPoint pointer)
    {
        return pointer != centreOf(drag.start().rect);
    }
    static bool hasDirection(const TurnedDataDrag&, CPoint) { return true; }
};

namespace
{

void widen(CRect& rect, double, CSize least, const WindowPixels&) { widenToLeast(rect, least); }
void widen(ARect<double>& rect, double angle, CSize least, const AxisPixels& pixels)
{
    widenToLeast(rect, angle, least, pixels);
}

/// Handles and outline between the pixels.
template <typename Plane>
struct FineShape {
    explicit FineShape(const typename Plane::Turned& shape)
    {
        typename Plane::Point places[turnedHandleCount];
        turnedHandles(TurnedParts::start(shape), places);
        for (int i = 0; i < turnedHandleCount; ++i)
            handles[i] = screenOf(shape).finePixel(places[i]);
        outline = TurnedParts::fineOutline(shape, handles);
    }
    int count() const { return static_cast<int>(outline.size()); }

    CPointF handles[turnedHandleCount];
    std::vector<CPointF> outline;
};

}  // namespace

template <typename Plane>
class TurnedTrackerOf<Plane>::Drag : public DragSession
{
    using Turned = typename Plane::Turned;
    using Shape = decltype(TurnedParts::start(std::declval<Turned&>()));

public:
    Drag(TurnedTrackerOf& tracker, int hit, CPoint press)
        : tracker_(tracker), screen_(screenOf(tracker)), hit_(hit), press_(press),
          drag_(TurnedParts::drag(tracker.self(), hit, press)), life_(tracker.life())
    {
        direction_.follow(TurnedParts::firstAngle(tracker.self(), press));
    }

    int moveTo(CPoint point, int shift, int released) override
    {
        const Shape old = TurnedParts::start(tracker_.self());
        Shape next = goes(point) ? adjusted(point, shift) : old;
        if (!(next == old))
            tracker_.OnChangingRect(tracker_.rect_, tracker_.angle_, next.rect, next.angle);
        if (!life_.alive() || (next == old && !released))
            return 0;
        tracker_.SetRect(next.rect);
        tracker_.SetAngle(next.angle);
        auto before = old.rect;
        const bool changed = !(TurnedParts::start(tracker_.self()) == old);
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
    /// Nothing moves once another map has come, or this one has no room.
    bool goes(CPoint point) const
    {
        return screenOf(tracker_) == screen_ && screen_.usable() &&
               (hit_ != hitTurning || TurnedParts::hasDirection(drag_, point));
    }
    Shape adjusted(CPoint point, int shift)
    {
        Shape next = drag_.at(point);
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

    TurnedTrackerOf& tracker_;
    const decltype(screenOf(std::declval<Turned&>())) screen_;  // at the press
    int hit_;
    CPoint press_;
    decltype(TurnedParts::drag(std::declval<Turned&>(), 0, CPoint())) drag_;
    TurnDirection direction_;
    LifeWatch life_;
};

template <typename Plane>
TurnedTrackerOf<Plane>::~TurnedTrackerOf() = default;

template <typename Plane>
const typename Plane::Turned& TurnedTrackerOf<Plane>::self() const
{
    return static_cast<const typename Plane::Turned&>(*this);
}

template <typename Plane>
int TurnedTrackerOf<Plane>::Store(AFile& file) const
{
    const TurnedFields<typename Plane::Rect> fields{rect_, angle_, minSize_, angleStep_, word_};
    return ATracker::Store(file) && fields.store(file);
}

template <typename Plane>
int TurnedTrackerOf<Plane>::Load(AFile& file)
{
    TurnedFields<typename Plane::Rect> fields;
    if (!Plane::Base::Load(file) || !fields.load(file))
        return 0;
    rect_ = fields.rect;
    angle_ = fields.angle;
    minSize_ = fields.least;
    angleStep_ = fields.angleStep;
    word_ = fields.word;
    return 1;
}

template <typename Plane>
int TurnedTrackerOf<Plane>::GetShape(ShapeValues& shape) const
{
    shape = {TurnedParts::kind(self()), asValues(rect_), angle_, {}};
    return 1;
}

template <typename Plane>
int TurnedTrackerOf<Plane>::SetShape(const ShapeValues& shape)
{
    if (shape.kind != TurnedParts::kind(self()))
        return 0;
    auto next = rect_;
    assign(next, shape.rect);
    SetRect(next);
    SetAngle(shape.angle);
    return 1;
}

template <typename Plane>
void TurnedTrackerOf<Plane>::SetRect(const typename Plane::Rect& rect)
{
    if (isFinite(rect))
        rect_ = rect;
}

template <typename Plane>
void TurnedTrackerOf<Plane>::SetAngle(double angle)
{
    if (plausibleAngle(angle))
        angle_ = angle;
}

template <typename Plane>
void TurnedTrackerOf<Plane>::pixelHandles(CPoint (&points)[turnedHandleCount]) const
{
    typename Plane::Point handles[turnedHandleCount];
    turnedHandles(TurnedParts::start(self()), handles);
    for (int i = 0; i < turnedHandleCount; ++i)
        points[i] = screenOf(*this).pixel(handles[i]);
}

template <typename Plane>
void TurnedTrackerOf<Plane>::pixelCorners(AArray<CPoint>& points) const
{
    CPoint handles[turnedHandleCount];
    pixelHandles(handles);
    points.GrowBy(4);
    for (int i = 0; i < points.count(); ++i)
        points(i) = handles[i];
}

template <typename Plane>
int TurnedTrackerOf<Plane>::handleSize() const
{
    return this->GetHandleSize(screenOf(*this).pixels(rect_));
}

template <typename Plane>
int TurnedTrackerOf<Plane>::HitTest(CPoint point, CWnd* window)
{
    CRect all;
    this->GetTrueRect(&all);
    if (!this->mayBeHit(window, point) || !this->caughtBox(all).PtInRect(point))
        return hitNothing;
    const int hit = this->HitTestHandles(point);
    return hit > hitInside && !(this->style_ & trackerHandles) ? hitInside : hit;
}

template <typename Plane>
int TurnedTrackerOf<Plane>::HitTestHandles(CPoint point)
{
    for (int i = TurnedParts::firstHandle(self()); i < turnedHandleCount; ++i) {
        CRect handle;
        GetHandleRect(i, &handle);
        if (handle.PtInRect(point))
            return i + hitFirstHandle;
    }
    AArray<CPoint> points;
    TurnedParts::hitOutline(self(), points);
    const int n = points.count();
    const int reach = this->edgeCatch_;
    const int caught = insidePolygon(points.lpArray(), n, point) ||
                       (reach > 0 && nearOutline(points.lpArray(), n, point, reach));
    return caught ? hitInside : hitNothing;
}

template <typename Plane>
void TurnedTrackerOf<Plane>::GetTrueRect(CRect* rect) const
{
    constexpr int beyondHandles = 2;
    CPoint handles[turnedHandleCount];
    pixelHandles(handles);
    *rect = grown(boundingBox(handles, turnedHandleCount), handleSize() / 2 + beyondHandles);
}

template <typename Plane>
void TurnedTrackerOf<Plane>::GetHandleRect(int index, CRect* rect) const
{
    CPoint handles[turnedHandleCount];
    pixelHandles(handles);
    *rect = index >= 0 && index < turnedHandleCount ? squareAbout(handles[index], handleSize())
                                                    : CRect();
}

template <typename Plane>
double TurnedTrackerOf<Plane>::JustifyAngle(double angle, double direction)
{
    return snappedAngle(angle, direction, angleStep_);
}

template <typename Plane>
void TurnedTrackerOf<Plane>::AdjustRect(typename Plane::Rect& rect)
{
    widen(rect, angle_, minSize_, screenOf(*this));
}

template <typename Plane>
void TurnedTrackerOf<Plane>::Draw(CDC* dc, CWnd* window)
{
    this->drawClipped(dc, window);
}

template <typename Plane>
void TurnedTrackerOf<Plane>::DrawShape(CDC& dc)
{
    if (this->drawsTrack())
        DrawTrack(&dc);
    else if (this->IsActive())
        DrawActive(&dc);
    else
        DrawNotActive(&dc);
}

template <typename Plane>
void TurnedTrackerOf<Plane>::DrawActive(CDC* dc)
{
    const FineShape<Plane> fine(self());
    drawTurnedShape(*dc, fine.outline.data(), fine.count(), fine.handles,
                    TurnedParts::firstHandle(self()), handleSize(), this->GetOutlineLook());
}

template <typename Plane>
void TurnedTrackerOf<Plane>::DrawNotActive(CDC* dc)
{
    const FineShape<Plane> fine(self());
    drawTrackerOutline(*dc, fine.outline.data(), fine.count(), true, this->GetOutlineLook());
}

template <typename Plane>
void TurnedTrackerOf<Plane>::DrawTrack(CDC* dc)
{
    if (this->IsActive())
        DrawActive(dc);
    else
        DrawNotActive(dc);
}

template <typename Plane>
ShapeTrace TurnedTrackerOf<Plane>::trace() const
{
    CPoint handles[turnedHandleCount];
    pixelHandles(handles);
    AArray<CPoint> points;
    TurnedParts::traced(self(), points);
    ShapeTrace trace;
    trace.points.assign(points.lpArray(), points.lpArray() + points.count());
    trace.stem = {TurnedParts::centre(self()), handles[turningHandle]};
    trace.margin = this->handleSize_ + this->GetLineSize();
    return trace;
}

template <typename Plane>
int TurnedTrackerOf<Plane>::Track(CWnd* window, CPoint point, int allowInvert, CWnd* clipTo)
{
    const int hit = this->HitTest(point, window);
    if (hit < 0)
        return 0;
    allowInvert_ = allowInvert;
    return this->TrackHandle(hit, window, point, clipTo);
}

template <typename Plane>
int TurnedTrackerOf<Plane>::TrackRubberBand(CWnd* window, CPoint point, int)
{
    constexpr int bottomRight = hitFirstHandle + 2;
    const auto before = rect_;
    const LifeWatch life(ATracker::life());
    if (!this->mayBegin(window, point) || !screenOf(*this).usable())
        return 0;
    allowInvert_ = 1;  // a new shape may go any way
    const auto p = screenOf(*this).value(point);
    SetRect({p.x, p.y, p.x, p.y});
    const int changed = this->TrackHandle(bottomRight, window, point, nullptr);
    if (life.alive() && this->dragCancelled())
        rect_ = before;
    return changed;
}

template <typename Plane>
int TurnedTrackerOf<Plane>::TrackHandle(int hit, CWnd* window, CPoint point, CWnd* clipTo)
{
    if (hit < hitInside || hit > hitTurning || !this->mayBegin(window, point) ||
        !screenOf(*this).usable())
        return 0;
    const auto before = TurnedParts::start(self());
    Drag drag(*this, hit, point);
    const DragEnd end =
        runDrag(*this, {this->finished_, this->dragEnd_, this->tracking_.on, this->tracking_.drawn},
                drag, window, point, clipTo);
    return end != DragEnd::dead && !(TurnedParts::start(self()) == before);
}

template <typename Plane>
int TurnedTrackerOf<Plane>::SetCursor(CWnd* window, unsigned hitArea)
{
    CPoint point;
    const int hit =
        this->pointerIn(window, hitArea, point) ? this->HitTest(point, window) : hitNothing;
    if (hit < 0)
        return 0;
    pavane::SetCursor(hit == hitInside    ? moveTrackerCursor()
                      : hit == hitTurning ? turnTrackerCursor()
                                          : sizeTrackerCursor());
    return 1;
}

template class TurnedTrackerOf<PixelPlane>;
template class TurnedTrackerOf<ValuePlane>;

}  // namespace pavane
