#pragma once

namespace pavane
{

/// Bits of a collection's tool mode; 0 is the arrow, which selects and changes areas.
enum ToolMode : int {
    toolArrow = 0,
    toolZoomIn = 1,
    toolZoomOut = 2,
    toolRect = 4,
    toolRotateRect = 8,
    toolArea = 16,
    toolEllipse = 32
};
inline constexpr int drawingTools = toolRect | toolRotateRect | toolArea | toolEllipse;

/// Factors of one zoom step, by index.
inline constexpr int zoomFactors[] = {2, 3, 4, 6, 8};
inline constexpr int zoomFactorCount = 5;

}  // namespace pavane
