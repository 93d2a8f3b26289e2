#pragma once

#include "pavane/calibration/BaselineReader.h"
#include "pavane/calibration/flags/flag_points.h"
#include "tessel/api.h"

#include <vector>

namespace pavane
{

/// A rectangle in a plot of a baseline against time, its edges in it: days, and Jy or degrees.
struct SeriesRectangle {
    int isPhase = 0;  ///< non-zero: of phases, else of amplitudes
    double left = 0, right = 0, low = 0, high = 0;
};

/// The points of a series (BaselinePlot::time) within the rectangle, as means of all IFs and
/// polarisations.
PAVANE_API std::vector<FlagPoint> seriesPoints(const BaselineSeries& series,
                                               const UvBaseline& baseline,
                                               const SeriesRectangle& rectangle);

}  // namespace pavane
