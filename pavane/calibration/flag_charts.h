#pragma once

#include "pavane/calibration/EditedVisibilities.h"
#include "pavane/calibration/PanelChart.h"
#include "tessel/api.h"

#include <cstddef>
#include <vector>

namespace pavane
{

/// What of visibilities is plotted, and how.
struct FlagChartChoice {
    int isDistance = 0;  ///< against distance in the plane of u and v, all in one panel; else
                         ///< against time, a panel a baseline
    int amplitudes = 1;
    int phases = 1;   ///< beside the amplitudes, or below them
    int isSplit = 0;  ///< a colour for each IF and hand, against time a point too; else their mean
    int errors = 0;
    int flagged = 1;  ///< grey crosses
    int model = 1;
    int subarray = 1, telescope = 0;  ///< its baselines; 0: all
    int rowsOfPage = 4;               ///< baselines on a page, 1 or more
};

/// One panel: amplitudes or phases.
struct FlagPanel {
    static constexpr int all = -1, none = -2;
    int baseline = none;  ///< index; none: a place of the last page that is left empty
    int isPhase = 0;
    friend bool operator==(const FlagPanel&, const FlagPanel&) = default;
};

/// The panels in the order of their numbers: on each page the amplitudes of its baselines, then
/// their phases.
PAVANE_API std::vector<FlagPanel> flagPanels(const EditedVisibilities& data,
                                             const FlagChartChoice& choice);
PAVANE_API int flagColumns(const FlagChartChoice& choice);
/// Of a page.
PAVANE_API int flagRows(const FlagChartChoice& choice, std::size_t panels);

/// The model as lines against time, as points against distance.
PAVANE_API PanelChart flagChart(const EditedVisibilities& data, const FlagChartChoice& choice);

/// What a rectangle holds, its edges included: seconds or wavelengths, and Jy or degrees.
struct FlagRect {
    double xLeast = 0, xGreatest = 0;
    double yLeast = 0, yGreatest = 0;
};
/// The points that a panel shows inside a rectangle: those that are flagged, or those that are not.
PAVANE_API std::vector<FlagPoint> flagPointsIn(const EditedVisibilities& data,
                                               const FlagChartChoice& choice,
                                               const FlagPanel& panel, const FlagRect& rect,
                                               int flagged);

}  // namespace pavane
