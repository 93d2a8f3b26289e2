#include "pavane/trackers/collections/ATrackerArray.h"

#include "pavane/axes/ranges/zoom_step.h"
#include "pavane/containers/item_io.h"
#include "pavane/containers/MemoryFile.h"
#include "pavane/trackers/AAreaTracker.h"
#include "pavane/trackers/AEllipseTracker.h"
#include "pavane/trackers/ARectTracker.h"
#include "pavane/trackers/ARotateRectTracker.h"
#include "pavane/trackers/collections/tool_trackers.h"
#include "pavane/trackers/collections/tracker_records.h"
#include "pavane/trackers/masks/outline_cells.h"
#include "pavane/trackers/tracker_registry.h"
#include "tessel/rounding.h"

#include <cmath>
#include <memory>
#include <new>

namespace pavane
{

namespace
{

bool equal(const PixelMapping& a, const PixelMapping& b)
{
    return a.rect == b.rect && a.range == b.range && a.modeX == b.modeX && a.modeY == b.modeY;
}

static_assert(sizeof(TMinMax) == 48 && sizeof(CRect) == 16, "stored as they lie in memory");

// Deliberate: the first mode word stands in the file twice, and both go into the same field; every
// stored collection in pixels has it so.
int storeMapping(AFile& file, const PixelMapping& mapping)
{
    return storeItem(file, mapping.modeX) && storeItem(file, mapping.modeY) &&
           file.write(&mapping.range, sizeof mapping.range) &&
           file.write(&mapping.rect, sizeof mapping.rect) && storeItem(file, mapping.modeX);
}

int loadMapping(AFile& file, PixelMapping& mapping)
{
    return loadItem(file, mapping.modeX) && loadItem(file, mapping.modeY) &&
           file.read(&mapping.range, sizeof mapping.range) &&
           file.read(&mapping.rect, sizeof mapping.rect) && loadItem(file, mapping.modeX);
}

/// Distances between pixels are ints: no rectangle may be longer than they hold.
int measurable(const CRect& r)
{
    constexpr int most = offsetLimit;
    return r.left > -most && r.top > -most && r.right < most && r.bottom < most && r.left < most &&
           r.top < most && r.right > -most && r.bottom > -most;
}

}  // namespace

void ATrackerArray::CheckMinMax(const CRect& device, const TMinMax& range, int modeX, int modeY)
{
    const PixelMapping next{device, range, modeX, modeY};
    if (!next.usable() || !measurable(device) || equal(next, mapping_))
        return;
    endDrag();
    const PixelMapping before = mapping_;
    mapping_ = next;
    if (before.usable()) {
        for (int i = 0; i < count(); ++i)
            (*this)(i)->Scale(before, next);
        if (auto* working = static_cast<ABaseTracker*>(workingTracker()))
            working->Scale(before, next);
    }
    ForgetBoxes();
}

int ATrackerArray::GetAreaCells(int i, AArray<CPoint>& cells, int nx, int ny,
                                const TMinMax& mapRange) const
{
    const MapCells map{nx, ny, mapRange};
    AArray<CPoint> pixels;
    if (mapping_.usable() && map.usable())
        (*this)(i)->GetAreaPoints(pixels);
    const int n = pixels.count();
    AArray<APoint<double>> values(n, n, 1);
    if (values.count() != n)
        return 0;
    const RectMinMaxTransform toValues = mapping_.transform();
    for (int k = 0; k < n; ++k)
        values(k) = {toValues.GPXtoRPX(pixels(k).x), toValues.GPYtoRPY(pixels(k).y)};
    return cellsOf(values, map, cells);
}

int ATrackerArray::Store(AFile& file) const
{
    return storeItem(file, std::int32_t{GetCurItemNo()}) && storeMapping(file, mapping_) &&
           storeTrackers(file, *this);
}

int ATrackerArray::Load(AFile& file)
{
    LoadReport report;
    return Load(file, report);
}

int ATrackerArray::Load(AFile& file, LoadReport& report)
{
    report = {};
    PixelMapping next;
    std::int32_t current = -1;
    if (!loadItem(file, current) || !loadMapping(file, next)) {
        report.lines.push_back("the file ends before the first area");
        return 0;
    }
    return loadItems(file, current, report, [&] { mapping_ = next; });
}

ABaseTracker* ATrackerArray::LoadObject(const CString& className, AFile& file)
{
    return static_cast<ABaseTracker*>(loadObject(className, file));
}

ABaseTracker* ATrackerArray::GetNewTracker(int mode)
{
    return newForTool<ABaseTracker, ARectTracker, ARotateRectTracker, AEllipseTracker,
                      AAreaTracker>(mode);
}

void ATrackerArray::SetNewMinMax(CWnd* window, TMinMax& range)
{
    CheckMinMax(CRect(mapping_.rect), range, mapping_.modeX, mapping_.modeY);
    ChangeTrackState(window);
}

ATracker* ATrackerArray::makeTracker(int mode) { return GetNewTracker(mode); }

ATracker* ATrackerArray::makeTrackerOfClass(const std::string& name)
{
    std::unique_ptr<ATracker> tracker(CreateTracker(name));
    if (!dynamic_cast<ABaseTracker*>(tracker.get()))
        return nullptr;  // a class in data values has no place among pixels
    return tracker.release();
}

int ATrackerArray::zoomedRange(CPoint p, TMinMax& range) const
{
    if (!mapping_.usable() || !(mapping_.range.xMax > mapping_.range.xMin))
        return 0;
    const RectMinMaxTransform toValues = mapping_.transform();
    TMnMx x{range.xMin, range.xMax};
    TMnMx y{range.yMin, range.yMax};
    if (!zoomSpan(x, toValues.GPXtoRPX(p.x), zoomScale_, 0) ||
        !zoomSpan(y, toValues.GPYtoRPY(p.y), zoomScale_, 0))
        return 0;
    range = {x.min, x.max, y.min, y.max, range.zMin, range.zMax};
    return 1;
}

APoint<double> ATrackerArray::shapePoint(CPoint pixel) const
{
    return {static_cast<double>(pixel.x), static_cast<double>(pixel.y)};
}

CPoint ATrackerArray::pixelPoint(const APoint<double>& point) const
{
    return {truncated(point.x), truncated(point.y)};
}

/// Whole pixels; what a key moves by is not lost while it is less than one.
APoint<double> ATrackerArray::shapeOffset(APoint<double> value)
{
    if (!mapping_.usable())
        return {};
    const APoint<int> pixels = pixelSteps_.take(
        {value.x * mapping_.pixelsPerUnitX(), value.y * mapping_.pixelsPerUnitY()});
    return {static_cast<double>(pixels.x), static_cast<double>(pixels.y)};
}

int ATrackerArray::shapeBounds(CWnd* window, ATracker& tracker, ARect<double>& bounds) const
{
    if (window)
        tracker.GetValidRect(window);
    const CRect& valid = tracker.validRect();
    bounds = {static_cast<double>(valid.left), static_cast<double>(valid.top),
              static_cast<double>(valid.right), static_cast<double>(valid.bottom)};
    return !valid.IsRectEmpty();
}

std::string ATrackerArray::mappingBytes() const
{
    MemoryFile file;
    (void)storeMapping(file, mapping_);  // memory takes every write
    return file.bytes();
}

int ATrackerArray::setMappingBytes(std::string_view bytes)
{
    MemoryFile file{std::string(bytes)};
    ForgetBoxes();
    return loadMapping(file, mapping_);
}

int ATrackerArray::mappingNumber()
{
    for (std::size_t i = mappings_.size(); i-- > 0;)
        if (equal(mappings_[i], mapping_))
            return static_cast<int>(i);
    mappings_.push_back(mapping_);
    return static_cast<int>(mappings_.size()) - 1;
}

void ATrackerArray::rescale(ATracker& tracker, int fromMapping, int toMapping)
{
    static_cast<ABaseTracker&>(tracker).Scale(mappings_[static_cast<std::size_t>(fromMapping)],
                                              mappings_[static_cast<std::size_t>(toMapping)]);
}

}  // namespace pavane
