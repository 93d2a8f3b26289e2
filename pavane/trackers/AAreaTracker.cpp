#include "pavane/trackers/AAreaTracker.h"

#include "pavane/trackers/areas/record_layouts.h"
#include "pavane/trackers/drag_loop.h"
#include "pavane/trackers/shapes/polygon_shape.h"
#include "pavane/trackers/shapes/rect_handles.h"
#include "pavane/trackers/shapes/turned_rect.h"
#include "pavane/trackers/tracker_drawing.h"

#include <new>

namespace pavane
{

int AAreaTracker::Store(AFile& file) const { return ATracker::Store(file) && points_.Store(file); }

int AAreaTracker::Load(AFile& file)
{
    AArray<CPoint> points;
    if (!ATracker::Load(file) || !loadVertices(file, points))
        return 0;
    points_ = points;
    return 1;
}

int AAreaTracker::IsReady() const { return (style_ & trackerReady) != 0; }

AAreaTracker* AAreaTracker::Duplicate() const { return new (std::nothrow) AAreaTracker(*this); }

void AAreaTracker::GetAreaPoints(AArray<CPoint>& points) const { points = points_; }

void AAreaTracker::Scale(const PixelMapping& from, const PixelMapping& to)
{
    if (!from.usable() || !to.usable())
        return;
    const RectMinMaxTransform source = from.transform();
    const RectMinMaxTransform target = to.transform();
    for (int i = 0; i < points_.count(); ++i)
        points_(i) = {target.RPXtoGPX(source.GPXtoRPX(points_(i).x)),
                      target.RPYtoGPY(source.GPYtoRPY(points_(i).y))};
}

int AAreaTracker::HitTest(CPoint point, CWnd*)
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

int AAreaTracker::HitTestHandles(CPoint point)
{
    const int n = points_.count();
    return hitPolygon(points_.lpArray(), n, point, {handleSize_, vertexCatch_, edgeCatch_});
}

void AAreaTracker::GetTrueRect(CRect* rect) const
{
    *rect =
        grown(GetAroundRect(points_.lpArray(), points_.count()), handleSize_ / 2 + GetLineSize());
}

void AAreaTracker::GetHandleRect(int i, CRect* rect, const AArray<CPoint>& points) const
{
    *rect = i >= 0 && i < points.count() ? squareAbout(points(i), handleSize_) : CRect();
}

void AAreaTracker::Draw(CDC* dc, CWnd* window) { drawClipped(dc, window); }

void AAreaTracker::DrawShape(CDC& dc)
{
    if (drawsTrack() || !IsReady())
        DrawTrack(&dc);
    else if (IsActive())
        DrawActive(&dc);
    else
        DrawNotActive(&dc);
}

void AAreaTracker::DrawTrack(CDC* dc)
{
    drawAreaShape(*dc, fractionsOf(points_.lpArray(), points_.count()).data(), points_.count(),
                  handleSize_, IsActive() || !IsReady(), IsReady() != 0);
}

void AAreaTracker::DrawActive(CDC* dc)
{
    drawAreaShape(*dc, fractionsOf(points_.lpArray(), points_.count()).data(), points_.count(),
                  handleSize_, true, true);
}

void AAreaTracker::DrawNotActive(CDC* dc)
{
    drawAreaShape(*dc, fractionsOf(points_.lpArray(), points_.count()).data(), points_.count(),
                  handleSize_, false, true);
}

ShapeTrace AAreaTracker::trace() const
{
    ShapeTrace trace;
    trace.points.assign(points_.lpArray(), points_.lpArray() + points_.count());
    trace.closed = IsReady() != 0;
    trace.margin = handleSize_ / 2 + 1 + GetLineSize();
    return trace;
}

}  // namespace pavane
