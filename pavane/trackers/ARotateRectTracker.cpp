#include "pavane/trackers/ARotateRectTracker.h"

#include "pavane/trackers/areas/record_layouts.h"
#include "pavane/trackers/drag_loop.h"
#include "pavane/trackers/shapes/polygon_shape.h"
#include "pavane/trackers/shapes/rect_handles.h"
#include "pavane/trackers/shapes/turned_rect.h"
#include "pavane/trackers/tracker_drawing.h"
#include "tessel/rounding.h"

#include <algorithm>
#include <cmath>
#include <new>

namespace pavane
{

int ARotateRectTracker::Store(AFile& file) const
{
    return ATracker::Store(file) &&
           TurnedFields<CRect>{rect_, angle_, minSize_, angleStep_, 0}.store(file);
}

int ARotateRectTracker::Load(AFile& file)
{
    TurnedFields<CRect> fields;
    if (!ATracker::Load(file) || !fields.load(file))
        return 0;
    rect_ = fields.rect;
    angle_ = fields.angle;
    minSize_ = fields.least;
    angleStep_ = fields.angleStep;
    return 1;
}

ARotateRectTracker* ARotateRectTracker::Duplicate() const
{
    return new (std::nothrow) ARotateRectTracker(*this);
}

void ARotateRectTracker::SetAngle(double angle)
{
    if (plausibleAngle(angle))
        angle_ = angle;
}

void ARotateRectTracker::GetAreaPoints(AArray<CPoint>& points) const
{
    CPoint handles[turnedHandleCount];
    turnedHandles(rect_, angle_, handles);
    points.GrowBy(4);
    for (int i = 0; i < points.count(); ++i)
        points(i) = handles[i];
}

void ARotateRectTracker::Scale(const PixelMapping& from, const PixelMapping& to)
{
    if (!from.usable() || !to.usable())
        return;
    const RectMinMaxTransform source = from.transform();
    const RectMinMaxTransform target = to.transform();
    const auto x = [&](int gx) { return target.RPXtoGPX(source.GPXtoRPX(gx)); };
    const auto y = [&](int gy) { return target.RPYtoGPY(source.GPYtoRPY(gy)); };
    if (angle_ == 0) {
        rect_ = normalized({x(rect_.left), y(rect_.top), x(rect_.right), y(rect_.bottom)});
        return;
    }
    // the sides keep their directions on the map; where the two scales differ their angle would
    // not stay a right one, so the x side says how the shape is turned
    const double scaleX = to.pixelsPerUnitX() / from.pixelsPerUnitX();
    const double scaleY = to.pixelsPerUnitY() / from.pixelsPerUnitY();
    const double c = std::cos(angle_);
    const double s = std::sin(angle_);
    const CSize extent = extentOf(rect_);
    const int width = truncated(extent.cx * std::hypot(scaleX * c, scaleY * s) + 0.5);
    const int height = truncated(extent.cy * std::hypot(scaleX * s, scaleY * c) + 0.5);
    const CPoint centre = centreOf(rect_);
    const int left = saturatedSum(x(centre.x), -(width / 2));
    const int top = saturatedSum(y(centre.y), -(height / 2));
    rect_ = {left, top, saturatedSum(left, width), saturatedSum(top, height)};
    if (scaleX != scaleY)
        angle_ = std::atan2(scaleY * s, scaleX * c);
}

int ARotateRectTracker::HitTest(CPoint point, CWnd* window)
{
    CRect all;
    GetTrueRect(&all);
    if (!mayBeHit(window, point) || !caughtBox(all).PtInRect(point))
        return hitNothing;
    const int hit = HitTestHandles(point);
    return hit > hitInside && !(style_ & trackerHandles) ? hitInside : hit;
}

int ARotateRectTracker::firstHandle() const { return 0; }

int ARotateRectTracker::HitTestHandles(CPoint point)
{
    for (int i = firstHandle(); i < turnedHandleCount; ++i) {
        CRect handle;
        GetHandleRect(i, &handle);
        if (handle.PtInRect(point))
            return i + hitFirstHandle;
    }
    AArray<CPoint> points;
    GetAreaPoints(points);
    const int caught =
        insidePolygon(points.lpArray(), points.count(), point) ||
        (edgeCatch_ > 0 && nearOutline(points.lpArray(), points.count(), point, edgeCatch_));
    return caught ? hitInside : hitNothing;
}

void ARotateRectTracker::GetTrueRect(CRect* rect) const
{
    constexpr int beyondHandles = 2;
    CPoint handles[turnedHandleCount];
    turnedHandles(rect_, angle_, handles);
    *rect =
        grown(boundingBox(handles, turnedHandleCount), GetHandleSize(rect_) / 2 + beyondHandles);
}

void ARotateRectTracker::GetHandleRect(int index, CRect* rect) const
{
    CPoint handles[turnedHandleCount];
    turnedHandles(rect_, angle_, handles);
    *rect = index >= 0 && index < turnedHandleCount
                ? squareAbout(handles[index], GetHandleSize(rect_))
                : CRect();
}

double ARotateRectTracker::JustifyAngle(double angle, double direction)
{
    return snappedAngle(angle, direction, angleStep_);
}

void ARotateRectTracker::AdjustRect(CRect& rect) { widenToLeast(rect, minSize_); }

APoint<double> ARotateRectTracker::halfExtent() const
{
    const CSize extent = extentOf(rect_);
    const double a = extent.cx / 2.0;
    const double b = extent.cy / 2.0;
    const double c = std::abs(std::cos(angle_));
    const double s = std::abs(std::sin(angle_));
    return {a * c + b * s, a * s + b * c};
}

void ARotateRectTracker::Draw(CDC* dc, CWnd* window) { drawClipped(dc, window); }

void ARotateRectTracker::DrawShape(CDC& dc)
{
    if (drawsTrack())
        DrawTrack(&dc);
    else if (IsActive())
        DrawActive(&dc);
    else
        DrawNotActive(&dc);
}

void ARotateRectTracker::DrawActive(CDC* dc)
{
    AArray<CPoint> points;
    shownOutline(points);
    CPoint handles[turnedHandleCount];
    turnedHandles(rect_, angle_, handles);
    CPointF places[turnedHandleCount];
    std::ranges::copy(fractionsOf(handles, turnedHandleCount), places);
    drawTurnedShape(*dc, fractionsOf(points.lpArray(), points.count()).data(), points.count(),
                    places, firstHandle(), GetHandleSize(rect_));
}

void ARotateRectTracker::DrawNotActive(CDC* dc)
{
    AArray<CPoint> points;
    shownOutline(points);
    drawTrackerOutline(*dc, points.lpArray(), points.count(), true);
}

void ARotateRectTracker::DrawTrack(CDC* dc)
{
    if (IsActive())
        DrawActive(dc);
    else
        DrawNotActive(dc);
}

ShapeTrace ARotateRectTracker::trace() const
{
    CPoint handles[turnedHandleCount];
    turnedHandles(rect_, angle_, handles);
    AArray<CPoint> points;
    shownOutline(points);
    ShapeTrace trace;
    trace.points.assign(points.lpArray(), points.lpArray() + points.count());
    trace.stem = {centreOf(rect_), handles[turningHandle]};
    trace.margin = handleSize_ + GetLineSize();
    return trace;
}

}  // namespace pavane
