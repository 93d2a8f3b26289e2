// Areas of an axis window that are made of cells: of contours and masks, grown and shrunk.
#include "pavane/axes/A2DAxis.h"
#include "pavane/axes/maps/ABMapGraph.h"
#include "pavane/axes/maps/cells/contour_level.h"
#include "pavane/axes/windows/AAxisWnd.h"
#include "pavane/resources/tracker_messages.h"
#include "pavane/tables/table_dialogs.h"
#include "pavane/trackers/ABTracker.h"
#include "pavane/trackers/areas/StepLabel.h"
#include "pavane/trackers/collections/ATrackerArrayInAxis.h"
#include "pavane/trackers/collections/shape_trackers.h"
#include "pavane/trackers/masks/cell_regions.h"
#include "pavane/trackers/masks/mask_outlines.h"
#include "pavane/trackers/regions/area_polygons.h"
#include "platform/message.h"
#include "tessel/rounding.h"

#include <algorithm>
#include <cmath>
#include <memory>

namespace pavane
{

namespace
{

constexpr int mostCells = 1000;

/// Whether all cells of a mask are in another of its size.
int isInside(const ABitMatrix& mask, const ABitMatrix& other)
{
    for (int row = 0; row < mask.rows() && row < other.rows(); ++row)
        for (std::int64_t word = 0; word < mask.rowWords(); ++word)
            if (mask.row(row)[word] & ~other.row(row)[word])
                return 0;
    return other.rows() == mask.rows();
}

/// Ranges may fall.
int isBetween(double value, double a, double b)
{
    return value >= std::min(a, b) && value <= std::max(a, b);
}

CString areasText(int count) { return std::to_string(count) + (count == 1 ? " area" : " areas"); }

}  // namespace

AMnMxMCTransform AAxisWnd::cellTransform() const
{
    return AMnMxMCTransform(map_->centres(), map_->cells().rows(), map_->cells().columns());
}

int AAxisWnd::AddAreasOfMask(const ABitMatrix& mask, const CString& label, int isExact)
{
    if (!map_ || mask.rows() != map_->cells().rows() || mask.columns() != map_->cells().columns())
        return -1;
    OutlineRules rules;
    rules.isExact = isExact;
    std::vector<MaskOutline> outlines;
    if (!outlinesOfMask(mask, rules, outlines))
        return -1;
    const HWND self = GetSafeHwnd();
    RegionNotes notes;
    trackers_->BeginEdits(label);
    const int added = addShapes(*trackers_, nullptr, shapesOf(outlines), cellTransform(), notes);
    trackers_->EndEdits(this);
    if (added > 0 && CWnd::FromHandle(self) == this)
        trackers_->ChangeActiveTrack(this, trackers_->trackerCount() - added);
    return added;
}

double AAxisWnd::contourValue() const
{
    const double noise = map_ ? map_->noise().sigma : 0;
    return contourLevel_.value(noise);
}

int AAxisWnd::SetContourLevel(const ContourLevel& level)
{
    if (!level.isUsable())
        return 0;
    contourLevel_ = level;
    return 1;
}

int AAxisWnd::AddAreaOfContour(int row, int column)
{
    if (!map_)
        return 0;
    const double level = contourValue();
    if (!std::isfinite(level) || level == 0) {
        OnNotice(noNoiseForContour);
        return 0;
    }
    const CString told = contourLevel_.text();
    ABitMatrix mask;
    const ContourPlace place = contourMask(map_->cells(), level, row, column, mask);
    if (place == ContourPlace::noMemory || place == ContourPlace::outside) {
        OnNotice(place == ContourPlace::outside ? CString(outsideContour) + told + '.'
                                                : CString(noMemoryForAreas));
        return 0;
    }
    if (trackers_->trackerCount() > 0) {
        ABitMatrix held(mask.rows(), mask.columns());
        trackers_->FillMatrix(held, mask.columns(), mask.rows(), map_->centres());
        if (isInside(mask, held)) {
            OnNotice(contourIsHeld);
            return 0;
        }
    }
    const HWND self = GetSafeHwnd();
    const int added = AddAreasOfMask(mask, "Area from contour", 0);
    if (CWnd::FromHandle(self) != this)
        return 0;
    if (added < 1)
        OnNotice(noMemoryForAreas);
    else
        OnNotice(
            "Contour of " + told + ": " + std::to_string(mask.count()) + " cells" +
            (added > 1 ? ", with " + std::to_string(added - 1) + " of holes never cleaned" : "") +
            (place == ContourPlace::atEdge ? contourAtEdge : "") + '.');
    return added > 0;
}

/// A press with the tool for contours.
int AAxisWnd::pressContour(CPoint point)
{
    ABAxis* const axis = GetPlot();
    if (!map_ || !axis || !plotRect().PtInRect(point))
        return 0;
    const double column = std::floor(map_->RPXtoMPX(axis->GPXtoRPX(point.x)) + 0.5);
    const double row = std::floor(map_->RPYtoMPY(axis->GPYtoRPY(point.y)) + 0.5);
    (void)AddAreaOfContour(truncated(row), truncated(column));
    return 1;
}

/// The key of the same tool: about the brightest cell that is shown, of a negative level the
/// darkest.
int AAxisWnd::contourAtPeak()
{
    if (!map_ || !(trackers_->mode() & toolContour))
        return 0;
    const TMinMax shown = shownRange();
    const double sign = contourLevel_.number < 0 ? -1 : 1;
    int peakRow = -1;
    int peakColumn = -1;
    double peak = -HUGE_VAL;
    for (int row = 0; row < map_->cells().rows(); ++row) {
        if (!isBetween(map_->MPYtoRPY(row), shown.yMin, shown.yMax))
            continue;
        for (int column = 0; column < map_->cells().columns(); ++column) {
            const double value = sign * map_->cells().cell(row, column);
            if (value > peak && isBetween(map_->MPXtoRPX(column), shown.xMin, shown.xMax))
                peak = value, peakRow = row, peakColumn = column;
        }
    }
    (void)AddAreaOfContour(peakRow, peakColumn);
    return 1;
}

void AAxisWnd::askContourLevel()
{
    CString text = contourLevel_.text();
    while (askText(this, "Contour of areas", contourLevelLabel, text)) {
        ContourLevel level;
        if (level.read(text) && SetContourLevel(level)) {
            OnNotice("Areas are taken inside contours of " + contourLevel_.text() + '.');
            return;
        }
        (void)AfxMessageBox(contourLevelIs, MB_OK | MB_ICONERROR);
    }
}

/// Asks for the number of cells; `sign` -1 shrinks.
void AAxisWnd::askGrowth(int sign)
{
    if (askNumber(this, sign > 0 ? "Grow areas" : "Shrink areas", "Cells", 1, mostCells, growth_))
        (void)GrowAreas(sign * growth_);
}

int AAxisWnd::GrowAreas(int cells)
{
    if (!map_ || !cells || std::abs(cells) > mostCells)
        return 0;
    std::vector<int> items = trackers_->SelectedItems();
    const int isAll = items.empty();
    // nobody means all of both kinds: what one gains the other loses
    for (int i = 0; isAll && i < trackers_->trackerCount(); ++i)
        if (!trackers_->trackerAt(i)->IsNeverClean())
            items.push_back(i);
    const HWND self = GetSafeHwnd();
    int changed = 0;
    int gone = 0;
    std::vector<int> made;
    trackers_->BeginEdits(StepLabel(cells > 0 ? "Growth" : "Shrinking", items).text());
    int shift = 0;  // of what stands behind areas that became several
    for (const int item : items) {
        const int now = replaceGrown(item + shift, cells);
        gone += now == 0;
        changed += now > 0;
        for (int k = 0; k < now && !isAll; ++k)
            made.push_back(item + shift + k);
        shift += now > 1 ? now - 1 : 0;
    }
    trackers_->EndEdits(this);
    if (CWnd::FromHandle(self) != this)
        return changed;
    for (const int item : made)
        trackers_->SelectItem(this, item, 1);
    if (CWnd::FromHandle(self) == this)
        OnNotice(
            (cells > 0 ? "Grown by " : "Shrunk by ") + std::to_string(std::abs(cells)) +
            (std::abs(cells) == 1 ? " cell: " : " cells: ") + areasText(changed) +
            (gone ? "; " + areasText(gone) + " would have no cell, and stay as they were" : "") +
            '.');
    return changed;
}

/// Puts area i, grown, in its place; how many areas it has become, 0 when it would have no cell,
/// and stays, -1 when it cannot be done.
int AAxisWnd::replaceGrown(int i, int cells)
{
    const AMatrixAccess& map = map_->cells();
    ABitMatrix own(map.rows(), map.columns());
    ABitMatrix other;
    const ATracker* const old = trackers_->trackerAt(i);
    if (!old || !old->IsReady() || own.rows() != map.rows())
        return -1;
    const int isNeverClean = old->IsNeverClean();
    const AreaLabel label = old->label();
    trackers_->FillMatrixForItem(i, own, map.columns(), map.rows(), map_->centres());
    if (!own.count() || !(cells > 0 ? growMask(own, cells, other) : shrinkMask(own, -cells, other)))
        return own.count() ? -1 : 0;
    OutlineRules rules;
    rules.withHoles = !isNeverClean;  // there are no holes in what is not cleaned
    std::vector<MaskOutline> outlines;
    if (!outlinesOfMask(other, rules, outlines))
        return -1;
    std::vector<std::unique_ptr<ABTracker>> made;
    for (const MaskOutline& outline : outlines) {
        std::unique_ptr<ABTracker> tracker(newTracker(shapeOf(outline), cellTransform()));
        if (!tracker)
            return -1;
        tracker->SetActive(0);
        tracker->SetNeverClean(isNeverClean || outline.isHole);
        if (!outline.isHole)
            tracker->SetLabel(label);
        made.push_back(std::move(tracker));
    }
    if (made.empty())
        return 0;
    (void)trackers_->DeleteItems(i, 1);
    int at = i;
    for (std::unique_ptr<ABTracker>& tracker : made)
        if (trackers_->InsertAt(at, tracker.get()) >= 0)
            (void)tracker.release(), ++at;
    return at - i;
}

}  // namespace pavane
