#pragma once

#include "pavane/resources/tools.h"

namespace pavane
{

inline constexpr int drawingTools = toolRect | toolRotateRect | toolArea | toolEllipse;

/// Factors of one zoom step, by index.
inline constexpr int zoomFactors[] = {2, 3, 4, 6, 8};
inline constexpr int zoomFactorCount = 5;

}  // namespace pavane
