#pragma once

#include "pavane/trackers/masks/AAreaArray.h"
#include "pavane/trackers/masks/mask_outlines.h"
#include "pavane/trackers/regions/RegionNotes.h"
#include "pavane/trackers/shapes/AreaShape.h"
#include "platform/api.h"

#include <vector>

namespace pavane
{

/// Appends an outline in cells, as `GetAreaCells` gives it, as a polygon. Corners that fall on
/// their predecessor are dropped. Non-zero unless memory is short.
PAVANE_API int appendPolygon(const AArray<CPoint>& cells, AAreaArray& areas);

/// The outline of a shape in cells, rounded as masks round it; replaces `cells`. 0 without memory.
PAVANE_API int cellsOf(const AreaShape& shape, AArray<CPoint>& cells);

/// The outlines of the shapes as polygons of whole cells, rounded as masks round them, in the place
/// of what `areas` held. That outlines were rounded is
/// noted once; shapes that are not whole, and never-clean areas, which no such file holds, are
/// noted one by one and left out. Non-zero unless memory is short.
PAVANE_API int polygonsOf(const std::vector<AreaShape>& shapes, AAreaArray& areas,
                          RegionNotes& notes);

/// The polygon that masks the cells of an outline, drawn along the edges of these cells, within
/// 0.4 cells of their centres, so that one cell and a line of cells are shapes too. Never-clean for
/// a hole.
PAVANE_API AreaShape shapeOf(const MaskOutline& outline);
PAVANE_API std::vector<AreaShape> shapesOf(const std::vector<MaskOutline>& outlines);

/// The polygons as shapes, vertices outside the map placed so that masks find the same cells; one
/// or two vertices as `shapeOf` draws them. Those of none are left out and noted.
PAVANE_API std::vector<AreaShape> shapesOf(const AAreaArray& areas, RegionNotes& notes);

}  // namespace pavane
