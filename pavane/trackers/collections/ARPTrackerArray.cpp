#include "pavane/trackers/collections/ARPTrackerArray.h"

#include "pavane/axes/ABAxis.h"
#include "pavane/axes/ranges/zoom_step.h"
#include "pavane/containers/item_io.h"
#include "pavane/trackers/ARPAreaTracker.h"
#include "pavane/trackers/ARPEllipseTracker.h"
#include "pavane/trackers/ARPRectTracker.h"
#include "pavane/trackers/ARPRotateRectTracker.h"
#include "pavane/trackers/collections/tool_trackers.h"
#include "pavane/trackers/collections/tracker_records.h"
#include "pavane/trackers/masks/outline_cells.h"
#include "pavane/trackers/shapes/AxisPixels.h"
#include "pavane/trackers/tracker_registry.h"

#include <memory>
#include <new>

namespace pavane
{

void ARPTrackerArray::SetAxis(ABAxis* axis)
{
    if (axis == axis_)
        return;  // windows say it at every painting; what the axis shows is looked at when needed
    axis_ = axis;
    SetAxisItems();
}

void ARPTrackerArray::SetAxisItems()
{
    for (int i = 0; i < count(); ++i)
        (*this)(i)->SetAxis(axis_);
    if (auto* working = static_cast<ABTracker*>(workingTracker()))
        working->SetAxis(axis_);
    if (auto* drawn = static_cast<ABTracker*>(drawnTracker()))
        drawn->SetAxis(axis_);
    ForgetBoxes();
}

void ARPTrackerArray::adopt(ATracker& tracker)
{
    TrackerCollection::adopt(tracker);
    static_cast<ABTracker&>(tracker).SetAxis(axis_);
}

int ARPTrackerArray::GetAreaCells(const ABTracker& tracker, AArray<CPoint>& cells, int nx, int ny,
                                  const TMinMax& mapRange)
{
    const MapCells map{nx, ny, mapRange};
    AArray<APoint<double>> outline;
    if (map.usable()) {
        const auto* const ellipse = dynamic_cast<const ARPEllipseTracker*>(&tracker);
        tracker.GetAreaPoints(
            outline, ellipse ? ellipsePointsForMask(ellipse->rect(), ellipse->angle(), map) : 0);
    }
    return cellsOf(outline, map, cells);
}

int ARPTrackerArray::GetAreaCells(int i, AArray<CPoint>& cells, int nx, int ny,
                                  const TMinMax& mapRange) const
{
    return GetAreaCells(*(*this)(i), cells, nx, ny, mapRange);
}

int ARPTrackerArray::Store(AFile& file) const
{
    return storeItem(file, std::int32_t{GetCurItemNo()}) && storeTrackers(file, *this);
}

int ARPTrackerArray::StoreKept(AFile& file) const
{
    return storeItem(file, std::int32_t{GetCurItemNo()}) && storeKeptTrackers(file, *this);
}

int ARPTrackerArray::Load(AFile& file)
{
    LoadReport report;
    return Load(file, report);
}

int ARPTrackerArray::Load(AFile& file, LoadReport& report)
{
    report = {};
    std::int32_t current = -1;
    if (!loadItem(file, current)) {
        report.lines.push_back("the file ends before the first area");
        return 0;
    }
    return loadItems(file, current, report, [] {});
}

ABTracker* ARPTrackerArray::LoadObject(const CString& className, AFile& file)
{
    return static_cast<ABTracker*>(loadObject(className, file));
}

ABTracker* ARPTrackerArray::GetNewTracker(int mode)
{
    return newForTool<ABTracker, ARPRectTracker, ARPRotateRectTracker, ARPEllipseTracker,
                      ARPAreaTracker>(mode);
}

void ARPTrackerArray::SetNewMinMax(CWnd* window, TMinMax& range)
{
    if (axis_)
        axis_->setMinMax(range);
    ChangeTrackState(window);
}

ATracker* ARPTrackerArray::makeTracker(int mode) { return GetNewTracker(mode); }

ATracker* ARPTrackerArray::makeTrackerOfClass(const std::string& name)
{
    std::unique_ptr<ATracker> tracker(CreateTracker(name));
    if (!dynamic_cast<ABTracker*>(tracker.get()))
        return nullptr;  // a class in pixels has no place among data values
    return tracker.release();
}

int ARPTrackerArray::takesPress(CPoint p) const
{
    CRect rect;
    return AxisPixels(axis_).bounds(rect) && p.x >= rect.left && p.x <= rect.right &&
           p.y >= rect.top && p.y <= rect.bottom;
}

TMinMax ARPTrackerArray::shownRange() const { return axis_ ? axis_->getMinMax() : TMinMax(); }

int ARPTrackerArray::zoomedRange(CPoint p, TMinMax& range) const
{
    if (!axis_ || !AxisPixels(axis_).usable())
        return 0;
    TMnMx x{range.xMin, range.xMax};
    TMnMx y{range.yMin, range.yMax};
    if (!zoomSpan(x, axis_->GPXtoRPX(p.x), zoomScale_, axis_->getXDirect() == 0) ||
        !zoomSpan(y, axis_->GPYtoRPY(p.y), zoomScale_, axis_->getYDirect() == 0))
        return 0;
    range = {x.min, x.max, y.min, y.max, range.zMin, range.zMax};
    return 1;
}

APoint<double> ARPTrackerArray::shapePoint(CPoint pixel) const
{
    return AxisPixels(axis_).value(pixel);
}

CPoint ARPTrackerArray::pixelPoint(const APoint<double>& point) const
{
    return AxisPixels(axis_).pixel(point);
}

int ARPTrackerArray::shapeBounds(CWnd*, ATracker&, ARect<double>& bounds) const
{
    const AxisPixels pixels(axis_);
    CRect rect;
    if (!pixels.usable() || !pixels.bounds(rect))
        return 0;
    const APoint<double> a = pixels.value({rect.left, rect.top});
    const APoint<double> b = pixels.value({rect.right, rect.bottom});
    bounds = {a.x, a.y, b.x, b.y};
    return 1;
}

int ARPTrackerArray::pixelsMoved()
{
    AxisState now;
    if (axis_)
        now = {axis_->getGraphRect(), axis_->getMinMax(),  axis_->logX(),
               axis_->logY(),         axis_->getXDirect(), axis_->getYDirect()};
    const int moved = !(now == shownThrough_);
    shownThrough_ = now;
    return moved;
}

}  // namespace pavane
