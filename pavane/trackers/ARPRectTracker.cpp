#include "pavane/trackers/ARPRectTracker.h"

#include "pavane/trackers/areas/record_layouts.h"
#include "pavane/trackers/drag_loop.h"
#include "pavane/trackers/shapes/data_drags.h"
#include "pavane/trackers/shapes/shape_outline.h"
#include "pavane/trackers/tracker_drawing.h"

#include <algorithm>
#include <new>

namespace pavane
{

ARPRectTracker::ARPRectTracker() : minTrackSize_{2 * handleSize_, 2 * handleSize_} {}

int ARPRectTracker::Store(AFile& file) const
{
    return ATracker::Store(file) &&
           RectFields<ARect<double>>{rect_, minTrackSize_, allowInvert_}.store(file);
}

int ARPRectTracker::Load(AFile& file)
{
    RectFields<ARect<double>> fields;
    if (!ABTracker::Load(file) || !fields.load(file))
        return 0;
    rect_ = fields.rect;
    minTrackSize_ = fields.least;
    allowInvert_ = fields.allowInvert;
    return 1;
}

ARPRectTracker* ARPRectTracker::Duplicate() const
{
    return new (std::nothrow) ARPRectTracker(*this);
}

void ARPRectTracker::SetRect(const ARect<double>& rect)
{
    if (isFinite(rect))
        rect_ = rect;
}

CRect ARPRectTracker::pixelRect() const { return AxisPixels(axis_).pixels(rect_); }

void ARPRectTracker::GetAreaPoints(AArray<APoint<double>>& points, int) const
{
    rectOutline(rect_, points);
}

APoint<double> ARPRectTracker::GetCenter() const { return centreOf(rect_); }

int ARPRectTracker::HitTest(CPoint point, CWnd*)
{
    const int hit = HitTestHandles(point);
    return hit >= 0 && !(style_ & trackerHandles) ? hitMiddle : hit;
}

int ARPRectTracker::HitTestHandles(CPoint point)
{
    const CRect rect = pixelRect();
    CRect all;
    GetTrueRect(&all);
    all = grown(all, extraCatch());
    return hitRectHandles(rect, point, GetHandleSize(rect), handleSize_, all);
}

void ARPRectTracker::GetTrueRect(CRect* rect) const
{
    *rect = grown(normalized(pixelRect()), std::max(handleSize_ / 2 - 1, 0));
}

void ARPRectTracker::GetHandleRect(int code, CRect* rect) const
{
    const CRect pixels = pixelRect();
    *rect = handleRect(pixels, code, GetHandleSize(pixels), handleSize_);
}

int ARPRectTracker::GetHandleMask() const { return handleMask(pixelRect(), handleSize_); }

void ARPRectTracker::AdjustRect(int hit, CRect* pixels)
{
    keepLeastSize(*pixels, hit, minTrackSize_, validRect_, sides_);
}

void ARPRectTracker::Draw(CDC* dc, CWnd* window) { drawClipped(dc, window); }

void ARPRectTracker::DrawShape(CDC& dc)
{
    if (drawsTrack())
        DrawTrackRect(&dc, pixelRect());
    else if (IsActive())
        DrawActive(&dc);
    else
        DrawNotActive(&dc);
}

void ARPRectTracker::DrawActive(CDC* dc)
{
    const CRect pixels = pixelRect();
    drawRectShape(*dc, AxisPixels(axis_).finePixels(rect_), pixels, GetHandleSize(pixels),
                  handleSize_, true);
}

void ARPRectTracker::DrawNotActive(CDC* dc)
{
    const CRect pixels = pixelRect();
    drawRectShape(*dc, AxisPixels(axis_).finePixels(rect_), pixels, GetHandleSize(pixels),
                  handleSize_, false);
}

void ARPRectTracker::DrawTrackRect(CDC* dc, const CRect& pixels)
{
    const ARect<double> place =
        pixels == pixelRect() ? AxisPixels(axis_).finePixels(rect_) : fractionsOf(pixels);
    drawRectShape(*dc, place, pixels, GetHandleSize(pixels), handleSize_, IsActive() != 0);
}

ShapeTrace ARPRectTracker::trace() const
{
    return rectTrace(pixelRect(), handleSize_ + GetLineSize());
}

}  // namespace pavane
