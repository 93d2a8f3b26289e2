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
