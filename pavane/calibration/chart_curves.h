#pragma once

#include "pavane/calibration/PanelChart.h"
#include "platform/types.h"
#include "tessel/uvfits/AUVXFile.h"

#include <vector>

namespace pavane
{

// What charts of visibilities have in common; private to this room.

inline constexpr double secondsPerDay = 86400;
/// Of data, and where there are several series in turn; dark on white, told apart by the colour
/// blind. The model is the last.
inline constexpr COLORREF chartColors[] = {RGB(0, 70, 140),    RGB(170, 70, 0),  RGB(0, 120, 90),
                                           RGB(130, 40, 120),  RGB(140, 120, 0), RGB(0, 140, 190),
                                           RGB(110, 110, 110), RGB(90, 50, 20)};
inline constexpr COLORREF modelColor = RGB(200, 0, 60);

/// Object, frequency and date of a file.
CString chartHeader(const AUVXFile& file);
/// A line through the points, with gaps; x times `scaleX`.
ChartCurve chartLine(const std::vector<double>& x, double scaleX, const std::vector<float>& y,
                     COLORREF color = modelColor);
/// The least round number above a value, so that ticks end at the frame.
double roundedUp(double value);
/// The half range, in degrees, of a scale that takes in phases up to a size.
double phaseRange(double most);

}  // namespace pavane
