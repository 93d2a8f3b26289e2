#pragma once

namespace pavane
{

// What a screen reader hears of a box.
inline constexpr const char* surfaceWindowText = "Surface";
inline constexpr const char* surfaceRangeText = " to ";
inline constexpr const char* surfaceDegreesText = " degrees";
inline constexpr const char* surfaceAzimuthText = "Azimuth ";
inline constexpr const char* surfaceElevationText = ", elevation ";
inline constexpr const char* surfaceHeightText = ", height ";
inline constexpr const char* surfaceObliqueText = "Oblique at ";
inline constexpr const char* surfaceSecondZText = "second z";
inline constexpr const char* surfaceColumnText = "Marked: column ";
inline constexpr const char* surfaceRowText = ", row ";
inline constexpr const char* surfaceBlankText = "blank";

}  // namespace pavane
