#pragma once

#include "platform/core/PdfFile.h"
#include "platform/geometry.h"

#include <initializer_list>

namespace pavane
{

/// Strokes go through the middle of a unit.
inline constexpr double middleOfUnit = 0.5;

/// Numbers and the operator that takes them, on a line.
void putOperator(std::string& out, std::initializer_list<double> values, const char* op);
/// The colour 0x00RRGGBB of what is filled, or stroked, from here on.
void putColor(std::string& out, std::uint32_t color, bool isStroke);
/// A path through the middles of units.
void putPath(std::string& out, const CPointF* points, std::size_t count, bool isClosed);
void putRect(std::string& out, const CRect& r);

}  // namespace pavane
