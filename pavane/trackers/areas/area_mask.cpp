#include "pavane/trackers/areas/area_mask.h"

#include "pavane/trackers/areas/centre_fill.h"
#include "pavane/trackers/masks/mask_order.h"
#include "pavane/trackers/masks/mask_outlines.h"
#include "pavane/trackers/masks/scan_fill.h"
#include "pavane/trackers/regions/area_polygons.h"
#include "pavane/trackers/shapes/area_geometry.h"

#include <limits>
#include <new>
#include <utility>

namespace pavane
{

namespace
{

constexpr const char* stoppedText = "stopped";
constexpr const char* noMemory = "there is no memory for the mask";

/// Throws std::bad_alloc.
void fillShape(ABitMatrix& mask, const AreaShape& shape, MaskRule rule, const StopFlag* stop)
{
    if (rule == MaskRule::centres) {
        fillCentres(mask, shape, stop);
        return;
    }
    AArray<CPoint> cells;
    int overflow = 0;  // for those who use the customary fillers alone
    if (!cellsOf(shape, cells) || !fillPolygon(mask, cells.lpArray(), cells.count(),
                                               std::numeric_limits<int>::max(), overflow, stop))
        throw std::bad_alloc();
}

/// Throws std::bad_alloc.
int makeMask(const AreaList& areas, ABitMatrix& made, MaskRule rule, CString& error,
             const StopFlag* stop)
{
    if (!made.rows())
        throw std::bad_alloc();
    for (std::size_t i = 0; i < areas.size(); ++i)
        if (!isWhole(areas[i])) {
            error = "area " + std::to_string(i + 1) + " has no size or lies too far away";
            return 0;
        }
    const auto at = [&](int i) -> const AreaShape& { return areas[static_cast<std::size_t>(i)]; };
    fillInOrder(
        made, static_cast<int>(areas.size()), [&](int i) { return at(i).isNeverClean; },
        [&](int i) {
            if (!isStopped(stop))
                fillShape(made, at(i), rule, stop);
        });
    if (isStopped(stop))
        error = stoppedText;
    return error.empty();
}

AreaShape allOf(const ABitMatrix& mask)
{
    AreaShape all;
    all.centre = {(mask.columns() - 1) / 2.0, (mask.rows() - 1) / 2.0};
    all.width = mask.columns();
    all.height = mask.rows();
    all.isNeverClean = 1;
    return all;
}

}  // namespace

int maskOfAreas(const AreaList& areas, int rows, int columns, MaskRule rule, ABitMatrix& mask,
                CString& error, const StopFlag* stop)
{
    error.clear();
    if (rows < 1 || columns < 1) {
        error = "a mask of " + std::to_string(rows) + " x " + std::to_string(columns) +
                " cells holds none";
        return 0;
    }
    try {
        ABitMatrix made(rows, columns);
        if (!makeMask(areas, made, rule, error, stop))
            return 0;
        mask = std::move(made);
    } catch (const std::bad_alloc&) {
        error = noMemory;
        return 0;
    }
    return 1;
}

int areasOfMask(const ABitMatrix& mask, AreaList& areas, CString& error, const StopFlag* stop)
{
    error.clear();
    if (!mask.rows()) {
        error = "the mask has no cells";
        return 0;
    }
    try {
        std::vector<MaskOutline> outlines;
        OutlineRules rules;
        rules.stop = stop;
        if (!outlinesOfMask(mask, rules, outlines)) {
            error = isStopped(stop) ? stoppedText : noMemory;
            return 0;
        }
        AreaList made;
        for (std::size_t i = 0; i < outlines.size() && !isStopped(stop); ++i)
            made.push_back(shapeOf(outlines[i]));
        if (isStopped(stop)) {
            error = stoppedText;
            return 0;
        }
        if (made.empty())
            made.push_back(allOf(mask));
        areas = std::move(made);
    } catch (const std::bad_alloc&) {
        error = noMemory;
        return 0;
    }
    return 1;
}

}  // namespace pavane
