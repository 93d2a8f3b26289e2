#pragma once

namespace pavane
{

// Of windows of gains.
inline constexpr const char* flagsByRectangles =
    "Drag a rectangle about the solutions to flag; Escape ends it.";
inline constexpr const char* restoresByRectangles =
    "Drag a rectangle about the flagged solutions to bring back; Escape ends it.";
inline constexpr const char* noGainThere = "There is no solution to change in the rectangle.";
inline constexpr const char* gainAmplitudeIs = "An amplitude is a number above 0.";
inline constexpr const char* gainPhaseIs = "A phase is a number of degrees.";
inline constexpr const char* scaleAntennaText = "&Scale antenna by its median";
inline constexpr const char* scaleAntennaTip =
    "Divides all gains of the antennas of the selected rows by the median of their amplitudes";
inline constexpr const char* noAntennaToScale =
    "Select a row of an antenna that has solutions to scale it.";

inline constexpr const char* gainTitles[] = {
    "Antenna",        "IF",    "Hand",  "Time",       "Amplitude",
    "Phase [\u00b0]", "Error", "Ratio", "Iterations", "State"};
inline constexpr const char* gainStateTexts[] = {"solved", "flagged", "failed"};
inline constexpr const char* meanGainTitles[] = {
    "Antenna", "IF",     "Hand",    "Solutions",           "Failed",
    "Flagged", "Median", "Scatter", "Mean phase [\u00b0]", "Scatter [\u00b0]"};

}  // namespace pavane
