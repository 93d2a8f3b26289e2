#pragma once

#include "pavane/trackers/areas/area_classes.h"

#include <string>
#include <string_view>

namespace pavane
{

// Between the record of an area and the numbers of its shape: pixels, or data values, as the class
// says. Records of classes without a known shape give 0.

/// 0 for a record that no tracker of the class can have written too.
PAVANE_API int shapeOfRecord(const AreaClass& of, std::string_view bytes, ShapeValues& shape);

/// Puts other numbers into a record; all other bytes stay. Pixels are cut towards zero. 0, and the
/// record as it was, for another kind of shape and for numbers that no record holds.
PAVANE_API int setShapeInRecord(const AreaClass& of, std::string& bytes, const ShapeValues& shape);

/// The record of a new area, not active, a polygon closed; empty for another kind of shape and for
/// numbers that no record holds.
PAVANE_API std::string newRecord(const AreaClass& of, const ShapeValues& shape);

/// Bytes of one vertex of a polygon's record; 0 for other shapes.
PAVANE_API std::size_t vertexBytes(const AreaClass& of);

}  // namespace pavane
