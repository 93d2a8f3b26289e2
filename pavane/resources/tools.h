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
    toolEllipse = 32,
    toolContour = 64  ///< of windows with a map: takes an area from a contour
};

/// Groups of buttons of the tracker toolbar; 0 stands for all of them.
enum TrackerButtons : int {
    trackerButtonsDraw = 1,  ///< arrow, rectangle, turned rectangle, ellipse, polygon
    trackerButtonsEdit = 2,  ///< undo, redo, copy, delete
    trackerButtonsZoom = 4,  ///< zoom in with its list of factors, zoom back, whole map
    trackerButtonsCells = 8  ///< cells of the areas
};

}  // namespace pavane
