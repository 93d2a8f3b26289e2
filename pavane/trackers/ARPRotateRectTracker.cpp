#include "pavane/trackers/ARPRotateRectTracker.h"

#include "pavane/trackers/areas/record_layouts.h"
#include "pavane/trackers/drag_loop.h"
#include "pavane/trackers/shapes/AxisPixels.h"
#include "pavane/trackers/shapes/data_drags.h"
#include "pavane/trackers/shapes/polygon_shape.h"
#include "pavane/trackers/shapes/shape_outline.h"
#include "pavane/trackers/tracker_drawing.h"

#include <algorithm>
#include <cmath>
#include <new>
#include <vector>

namespace pavane
{

namespace
{

/// The handles and the outline of a turned shape between the pixels; an ellipse gets as many points
/// as a smooth curve needs on the screen.
struct FineShape {
    FineShape(const ARPRotateRectTracker& shape, const APoint<double> (&places)[turnedHandleCount])
    {
        constexpr double fewest = 12;
        constexpr double most = 720;
        const AxisPixels pixels(shape.axis());
        for (int i = 0; i < turnedHandleCount; ++i)
            handles[i] = pixels.finePixel(places[i]);
        double reach = fewest;
        for (int i = 4; i < 8; ++i)
            reach = std::max({reach, std::abs(handles[i].x - handles[8].x),
                              std::abs(handles[i].y - handles[8].y)});
        AArray<APoint<double>> values;
        shape.GetAreaPoints(values, static_cast<int>(std::min(reach, most)));
        outline.reserve(static_cast<std::size_t>(values.count()) + 1);
        for (int i = 0; i < values.count(); ++i)
            outline.push_back(pixels.finePixel(values(i)));
    }
    CPointF handles[turnedHandleCount];
    std::vector<CPointF> outline;
};

}  // namespace

int ARPRotateRectTracker::Store(AFile& file) const
{
    return ATracker::Store(file) &&
           TurnedFields<ARect<double>>{rect_, angle_, minSize_, angleStep_, word_}.store(file);
}

int ARPRotateRectTracker::Load(AFile& file)
{
    TurnedFields<ARect<double>> fields;
    if (!ABTracker::Load(file) || !fields.load(file))
        return 0;
    rect_ = fields.rect;
    angle_ = fields.angle;
    minSize_ = fields.least;
    angleStep_ = fields.angleStep;
    word_ = fields.word;
    return 1;
}

ARPRotateRectTracker* ARPRotateRectTracker::Duplicate() const
{
    return new (std::nothrow) ARPRotateRectTracker(*this);
}

void ARPRotateRectTracker::SetRect(const ARect<double>& rect)
{
    if (isFinite(rect))
        rect_ = rect;
}

void ARPRotateRectTracker::SetAngle(double angle)
{
    if (plausibleAngle(angle))
        angle_ = angle;
}

void ARPRotateRectTracker::GetAreaPoints(AArray<APoint<double>>& points, int) const
{
    turnedOutline(rect_, angle_, points);
}

APoint<double> ARPRotateRectTracker::GetCenter() const { return centreOf(rect_); }

void ARPRotateRectTracker::pixelHandles(CPoint (&points)[turnedHandleCount]) const
{
    APoint<double> handles[turnedHandleCount];
    turnedHandles({rect_, angle_}, handles);
    for (int i = 0; i < turnedHandleCount; ++i)
        points[i] = pixel(handles[i]);
}

void ARPRotateRectTracker::pixelOutline(AArray<CPoint>& points) const
{
    CPoint handles[turnedHandleCount];
    pixelHandles(handles);
    points.GrowBy(4);
    for (int i = 0; i < points.count(); ++i)
        points(i) = handles[i];
}

int ARPRotateRectTracker::handleSize() const
{
    return GetHandleSize(AxisPixels(axis_).pixels(rect_));
}

int ARPRotateRectTracker::firstHandle() const { return 0; }

int ARPRotateRectTracker::HitTest(CPoint point, CWnd* window)
{
    CRect all;
    GetTrueRect(&all);
    if (!mayBeHit(window, point) || !caughtBox(all).PtInRect(point))
        return hitNothing;
    const int hit = HitTestHandles(point);
    return hit > hitInside && !(style_ & trackerHandles) ? hitInside : hit;
}

int ARPRotateRectTracker::HitTestHandles(CPoint point)
{
    for (int i = firstHandle(); i < turnedHandleCount; ++i) {
        CRect handle;
        GetHandleRect(i, &handle);
        if (handle.PtInRect(point))
            return i + hitFirstHandle;
    }
    AArray<CPoint> points;
    pixelOutline(points);
    const int caught =
        insidePolygon(points.lpArray(), points.count(), point) ||
        (edgeCatch_ > 0 && nearOutline(points.lpArray(), points.count(), point, edgeCatch_));
    return caught ? hitInside : hitNothing;
}

void ARPRotateRectTracker::GetTrueRect(CRect* rect) const
{
    constexpr int beyondHandles = 2;
    CPoint handles[turnedHandleCount];
    pixelHandles(handles);
    *rect = grown(boundingBox(handles, turnedHandleCount), handleSize() / 2 + beyondHandles);
}

void ARPRotateRectTracker::GetHandleRect(int index, CRect* rect) const
{
    CPoint handles[turnedHandleCount];
    pixelHandles(handles);
    *rect = index >= 0 && index < turnedHandleCount ? squareAbout(handles[index], handleSize())
                                                    : CRect();
}

double ARPRotateRectTracker::JustifyAngle(double angle, double direction)
{
    return snappedAngle(angle, direction, angleStep_);
}

void ARPRotateRectTracker::AdjustRect(ARect<double>& rect)
{
    widenToLeast(rect, angle_, minSize_, AxisPixels(axis_));
}

APoint<double> ARPRotateRectTracker::halfExtent() const
{
    const double a = std::abs(rect_.right / 2 - rect_.left / 2);
    const double b = std::abs(rect_.bottom / 2 - rect_.top / 2);
    const double c = std::abs(std::cos(angle_));
    const double s = std::abs(std::sin(angle_));
    return {a * c + b * s, a * s + b * c};
}

void ARPRotateRectTracker::Draw(CDC* dc, CWnd* window) { drawClipped(dc, window); }

void ARPRotateRectTracker::DrawShape(CDC& dc)
{
    if (drawsTrack())
        DrawTrack(&dc);
    else if (IsActive())
        DrawActive(&dc);
    else
        DrawNotActive(&dc);
}

void ARPRotateRectTracker::DrawActive(CDC* dc)
{
    APoint<double> handles[turnedHandleCount];
    turnedHandles({rect_, angle_}, handles);
    const FineShape fine(*this, handles);
    drawTurnedShape(*dc, fine.outline.data(), static_cast<int>(fine.outline.size()), fine.handles,
                    firstHandle(), handleSize());
}

void ARPRotateRectTracker::DrawNotActive(CDC* dc)
{
    APoint<double> handles[turnedHandleCount];
    turnedHandles({rect_, angle_}, handles);
    const FineShape fine(*this, handles);
    drawTrackerOutline(*dc, fine.outline.data(), static_cast<int>(fine.outline.size()), true);
}

void ARPRotateRectTracker::DrawTrack(CDC* dc)
{
    if (IsActive())
        DrawActive(dc);
    else
        DrawNotActive(dc);
}

ShapeTrace ARPRotateRectTracker::trace() const
{
    CPoint handles[turnedHandleCount];
    pixelHandles(handles);
    AArray<CPoint> points;
    pixelOutline(points);
    ShapeTrace trace;
    trace.points.assign(points.lpArray(), points.lpArray() + points.count());
    trace.stem = {pixel(GetCenter()), handles[turningHandle]};
    trace.margin = handleSize_ + GetLineSize();
    return trace;
}

}  // namespace pavane
