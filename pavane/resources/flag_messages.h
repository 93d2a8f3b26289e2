#pragma once

namespace pavane
{

// Of the window in which visibilities are flagged.
inline constexpr const char* flagsPointsByRectangles =
    "Drag a rectangle about the points to flag; Escape ends it.";
inline constexpr const char* restoresPointsByRectangles =
    "Drag a rectangle about the flagged points to bring back; Escape ends it.";
inline constexpr const char* noPointThere = "There is no point to change in the rectangle.";
inline constexpr const char* noFlaggedShown =
    "What is flagged is hidden: V shows it, so that it can be brought back.";
inline constexpr const char* chooseAntenna =
    "Choose the antenna first: one whose baselines are shown, or one of the list.";
inline constexpr const char* flagsAreFixed =
    "These flags are fixed, as those of a round are: other data of the list can be flagged.";

}  // namespace pavane
