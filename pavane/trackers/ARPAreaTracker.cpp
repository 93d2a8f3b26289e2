#include "pavane/trackers/ARPAreaTracker.h"

#include "pavane/trackers/areas/record_layouts.h"
#include "pavane/trackers/drag_loop.h"
#include "pavane/trackers/shapes/AxisPixels.h"
#include "pavane/trackers/shapes/data_drags.h"
#include "pavane/trackers/shapes/polygon_shape.h"
#include "pavane/trackers/shapes/rect_handles.h"
#include "pavane/trackers/shapes/turned_rect.h"
#include "pavane/trackers/tracker_drawing.h"

#include <new>
#include <vector>

namespace pavane
{

int ARPAreaTracker::Store(AFile& file) const
{
    return ATracker::Store(file) && points_.Store(file);
}

int ARPAreaTracker::Load(AFile& file)
{
    AArray<APoint<double>> points;
    if (!ABTracker::Load(file) || !loadVertices(file, points))
        return 0;
    points_ = points;
    return 1;
}

int ARPAreaTracker::IsReady() const { return (style_ & trackerReady) != 0; }

ARPAreaTracker* ARPAreaTracker::Duplicate() const
{
    return new (std::nothrow) ARPAreaTracker(*this);
}

void ARPAreaTracker::GetAreaPoints(AArray<APoint<double>>& points, int) const { points = points_; }

APoint<double> ARPAreaTracker::GetCenter() const
{
    APoint<double> sum;
    const int n = points_.count();
    for (int i = 0; i < n; ++i)
        sum = {sum.x + points_(i).x, sum.y + points_(i).y};
    return n > 0 ? APoint<double>{sum.x / n, sum.y / n} : sum;
}

void ARPAreaTracker::GetPixelPoints(AArray<CPoint>& points) const
{
    const int n = points_.count();
    if (points.allocated() < n || points.count() != n)
        points.GrowBy(n);
    for (int i = 0; i < points.count(); ++i)
        points(i) = pixel(points_(i));
}

int ARPAreaTracker::HitTest(CPoint point, CWnd*)
{
    if (!IsReady())
        return 0;
    CRect all;
    GetTrueRect(&all);
    if (!caughtBox(all).PtInRect(point))
        return hitNothing;
    const int hit = HitTestHandles(point);
    return hit > hitInside && !(style_ & trackerHandles) ? hitInside : hit;
}

int ARPAreaTracker::HitTestHandles(CPoint point)
{
    AArray<CPoint> points;
    GetPixelPoints(points);
    const int n = points.count();
    return hitPolygon(points.lpArray(), n, point, {handleSize_, vertexCatch_, edgeCatch_});
}

void ARPAreaTracker::GetTrueRect(CRect* rect) const
{
    AArray<CPoint> points;
    GetPixelPoints(points);
    *rect = grown(GetAroundRect(points.lpArray(), points.count()), handleSize_ / 2 + GetLineSize());
}

void ARPAreaTracker::GetHandleRect(int i, CRect* rect, const AArray<CPoint>& points) const
{
    *rect = i >= 0 && i < points.count() ? squareAbout(points(i), handleSize_) : CRect();
}

void ARPAreaTracker::Draw(CDC* dc, CWnd* window) { drawClipped(dc, window); }

void ARPAreaTracker::DrawShape(CDC& dc)
{
    if (drawsTrack() || !IsReady())
        DrawTrack(&dc);
    else if (IsActive())
        DrawActive(&dc);
    else
        DrawNotActive(&dc);
}

void ARPAreaTracker::drawPolygon(CDC& dc, bool active, bool ready) const
{
    const AxisPixels pixels(axis_);
    std::vector<CPointF> points;
    points.reserve(static_cast<std::size_t>(points_.count()));
    for (int i = 0; i < points_.count(); ++i)
        points.push_back(pixels.finePixel(points_(i)));
    drawAreaShape(dc, points.data(), points_.count(), handleSize_, active, ready);
}

void ARPAreaTracker::DrawTrack(CDC* dc)
{
    drawPolygon(*dc, IsActive() || !IsReady(), IsReady() != 0);
}
void ARPAreaTracker::DrawActive(CDC* dc) { drawPolygon(*dc, true, true); }
void ARPAreaTracker::DrawNotActive(CDC* dc) { drawPolygon(*dc, false, true); }

ShapeTrace ARPAreaTracker::trace() const
{
    AArray<CPoint> points;
    GetPixelPoints(points);
    ShapeTrace trace;
    trace.points.assign(points.lpArray(), points.lpArray() + points.count());
    trace.closed = IsReady() != 0;
    trace.margin = handleSize_ / 2 + 1 + GetLineSize();
    return trace;
}

}  // namespace pavane
