#include "pavane/trackers/ARectTracker.h"

#include "pavane/trackers/areas/record_layouts.h"
#include "pavane/trackers/drag_loop.h"
#include "pavane/trackers/shapes/RectDrag.h"
#include "pavane/trackers/tracker_drawing.h"

#include <algorithm>
#include <new>

namespace pavane
{

ARectTracker::ARectTracker() : minTrackSize_{2 * handleSize_, 2 * handleSize_} {}

ARectTracker::ARectTracker(const CRect& rect, unsigned style) : ARectTracker()
{
    rect_ = rect;
    style_ = style;
}

int ARectTracker::Store(AFile& file) const
{
    return ATracker::Store(file) &&
           RectFields<CRect>{rect_, minTrackSize_, allowInvert_}.store(file);
}

int ARectTracker::Load(AFile& file)
{
    RectFields<CRect> fields;
    if (!ATracker::Load(file) || !fields.load(file))
        return 0;
    rect_ = fields.rect;
    minTrackSize_ = fields.least;
    allowInvert_ = fields.allowInvert;
    return 1;
}

ARectTracker* ARectTracker::Duplicate() const { return new (std::nothrow) ARectTracker(*this); }

void ARectTracker::GetAreaPoints(AArray<CPoint>& points) const
{
    points.GrowBy(4);
    if (points.count() < 4)
        return;
    points(0) = {rect_.left, rect_.top};
    points(1) = {rect_.right, rect_.top};
    points(2) = {rect_.right, rect_.bottom};
    points(3) = {rect_.left, rect_.bottom};
}

void ARectTracker::Scale(const PixelMapping& from, const PixelMapping& to)
{
    if (!from.usable() || !to.usable())
        return;
    const RectMinMaxTransform source = from.transform();
    const RectMinMaxTransform target = to.transform();
    rect_ = {target.RPXtoGPX(source.GPXtoRPX(rect_.left)),
             target.RPYtoGPY(source.GPYtoRPY(rect_.top)),
             target.RPXtoGPX(source.GPXtoRPX(rect_.right)),
             target.RPYtoGPY(source.GPYtoRPY(rect_.bottom))};
}

int ARectTracker::HitTest(CPoint point, CWnd*)
{
    CRect all;
    GetTrueRect(&all);
    if (!grown(all, extraCatch()).PtInRect(point))
        return hitNothing;
    return style_ & trackerHandles ? HitTestHandles(point) : hitMiddle;
}

int ARectTracker::HitTestHandles(CPoint point)
{
    CRect all;
    GetTrueRect(&all);
    if (!grown(all, extraCatch()).PtInRect(point))
        return hitNothing;
    const int mask = GetHandleMask();
    for (int code = 0; code < hitMiddle; ++code) {
        CRect handle;
        GetHandleRect(code, &handle);
        if (mask >> code & 1 && handle.PtInRect(point))
            return code;
    }
    return hitMiddle;
}

void ARectTracker::GetTrueRect(CRect* rect) const
{
    *rect = grown(normalized(rect_), std::max(handleSize_ / 2 - 1, 0));
}

void ARectTracker::GetHandleRect(int code, CRect* rect) const
{
    *rect = handleRect(rect_, code, GetHandleSize(rect_), handleSize_);
}

int ARectTracker::GetHandleMask() const { return handleMask(rect_, handleSize_); }

void ARectTracker::AdjustRect(int hit, CRect* rect)
{
    keepLeastSize(*rect, hit, minTrackSize_, validRect_, sides_);
}

void ARectTracker::Draw(CDC* dc, CWnd* window) { drawClipped(dc, window); }

void ARectTracker::DrawShape(CDC& dc)
{
    if (drawsTrack())
        DrawTrackRect(&dc, rect_);
    else if (IsActive())
        DrawActive(&dc);
    else
        DrawNotActive(&dc);
}

void ARectTracker::DrawActive(CDC* dc)
{
    drawRectShape(*dc, fractionsOf(rect_), rect_, GetHandleSize(rect_), handleSize_, true);
}

void ARectTracker::DrawNotActive(CDC* dc)
{
    drawRectShape(*dc, fractionsOf(rect_), rect_, GetHandleSize(rect_), handleSize_, false);
}

void ARectTracker::DrawTrackRect(CDC* dc, const CRect& rect)
{
    drawRectShape(*dc, fractionsOf(rect), rect, GetHandleSize(rect), handleSize_, IsActive() != 0);
}

ShapeTrace ARectTracker::trace() const { return rectTrace(rect_, handleSize_ + GetLineSize()); }

}  // namespace pavane
