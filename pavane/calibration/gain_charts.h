#pragma once

#include "pavane/calibration/PanelChart.h"
#include "platform/api.h"
#include "tessel/gains/AGains.h"

#include <cstddef>
#include <string>
#include <vector>

namespace pavane
{

/// What of gains is plotted against time.
struct GainChartChoice {
    std::vector<std::size_t> antennas;  ///< indices, in the order of the panels; empty: all
    int amplitudes = 1;
    int phases = 1;  ///< beside the amplitudes, in a column of their own
    int lines = 1;   ///< from a solution to the next, broken where one is missing
    int errors = 1;
    int rowsOfPage = 8;  ///< antennas on a page, 1 or more
};

/// One panel: an antenna's amplitudes or its phases.
struct GainPanel {
    int antenna = -1;  ///< index; -1: a place of the last page that is left empty
    int isPhase = 0;
};

/// The panels in the order of their numbers: on each page the amplitudes of its antennas, then
/// their phases.
PAVANE_API std::vector<GainPanel> gainPanels(const AGains& gains, const GainChartChoice& choice);
PAVANE_API int gainColumns(const GainChartChoice& choice);

/// A panel an antenna, a colour a group of IFs and hand; flagged solutions as grey crosses, failed
/// ones as oblique red crosses at the value before them.
PAVANE_API PanelChart gainChart(const AGains& gains, const GainChartChoice& choice);

/// What a rectangle holds: seconds of the day (both included) and amplitudes, or degrees.
struct GainRect {
    double xLeast = 0, xGreatest = 0;
    double yLeast = 0, yGreatest = 0;
};
/// The cells of solutions that a panel shows inside a rectangle: those that are flagged, or those
/// that are not.
PAVANE_API std::vector<std::size_t> gainsIn(const AGains& gains, const GainPanel& panel,
                                            const GainRect& rect, int flagged);

/// "Effelsberg", "7", in subarray 2 "2:7".
PAVANE_API std::string gainAntennaName(const AGains& gains, std::size_t antenna);
/// "IF 1-4 R", or without the hand of a single one.
PAVANE_API std::string gainGroupName(const AGains& gains, std::size_t group);
/// Degrees, -180 to 180.
PAVANE_API double gainPhase(const Gain& gain);

}  // namespace pavane
