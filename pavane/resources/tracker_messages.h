#pragma once

namespace pavane
{

/// More crossings in a row of an area than its filler foresees.
inline constexpr const char* manyAreaFillPoints = "Many Area fill point";

// Memory for undo ran out; said once each time.
inline constexpr const char* oldStepsGone =
    "Memory is short: the oldest edits cannot be undone any more.";
inline constexpr const char* allStepsGone = "Memory is short: edits up to now cannot be undone.";
inline constexpr const char* undoneInPart = "Not everything of this edit could be undone.";

/// Behind the number of an area in the list.
inline constexpr const char* neverCleanInList = " (never)";

// Areas inside contours.
inline constexpr const char* contourLevelLabel = "Level: 5 sigma, or a value as in the map:";
inline constexpr const char* contourLevelIs =
    "A level is a number of sigma, as \"5 sigma\", or a value of the map, and not 0.";
inline constexpr const char* noNoiseForContour =
    "The noise of this map is 0 or not known: give the level of the contour as a value.";
inline constexpr const char* clickInContour = "Click inside a contour of ";
inline constexpr const char* outsideContour = "This cell is not inside a contour of ";
inline constexpr const char* contourIsHeld = "The areas hold all cells of this contour already.";
inline constexpr const char* contourAtEdge =
    "; the contour leaves the map, the area ends at its edge";
inline constexpr const char* noMemoryForAreas = "There is no memory for these areas.";

/// A tracker is asked for the client area of no window.
inline constexpr const char* trackerWithoutWindow = "NULL";

// Values of an area that cannot be: what stands in the table of its vertices is left as it was.
inline constexpr const char* notANumber = " is not a number.";  // behind the text in quotes
inline constexpr const char* outsideTheMap = "This would lie outside the map.";
inline constexpr const char* widthAboveZero = "The width must be above 0.";
inline constexpr const char* heightAboveZero = "The height must be above 0.";
inline constexpr const char* threeVerticesStay = "A polygon keeps at least three vertices.";
inline constexpr const char* noSuchValue = "There is no such value.";
inline constexpr const char* areaCannotBeThat = "The area cannot become that.";

/// In place of the numbers of the current area.
inline constexpr const char* noAreaText = "No area is selected.";

}  // namespace pavane
