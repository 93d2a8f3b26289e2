#pragma once

#include "pavane/axes/graph_styles.h"
#include "platform/types.h"
#include "tessel/api.h"

#include <vector>

namespace pavane
{

class A2DAxisMulti;

/// One curve of a panel: points with errors, or a line. Values that are not finite are gaps.
struct ChartCurve {
    std::vector<double> x, y;
    std::vector<double> error;  ///< of y, as long as the points, or empty
    int isLine = 0;
    COLORREF color = 0;
    CString name{};              ///< in the legend; "": not there
    int marker = graphPointDot;  ///< of points
};

/// A y scale of a panel.
struct ChartScale {
    CString name;      ///< with the markers of AB2DAxis
    double least = 1;  ///< least above greatest: as the curves are
    double greatest = 0;
    double period = 0;  ///< 360 for a phase in degrees
    std::vector<ChartCurve> curves;
    int isPlain = 0;  ///< ticks and title in black, not in the colour of the first curve
};

/// A panel with a scale at the left and, where it has two, one at the right.
struct ChartPanel {
    CString caption;
    std::vector<ChartScale> scales;
};

/// Panels over one x direction as a value: what is plotted, without its drawing.
struct PanelChart {
    CString header;         ///< a line over all of it
    CString nameX;          ///< with the markers of AB2DAxis
    int isTime = 0;         ///< x are seconds, written as clock times
    int isWholeX = 0;       ///< x counts something
    int isLegendAbove = 0;  ///< over all panels, not in them
    std::vector<ChartPanel> panels;
};

/// An axis with all of a chart, which it takes over; the caller owns it. With `panelsOfPage` 0 all
/// panels stand on one page, in as many columns as keep them in shape.
PAVANE_API A2DAxisMulti* newChartAxis(PanelChart chart, int panelsOfPage = 0);
/// Puts another chart into an axis of newChartAxis, and all of its ranges. 0, with the axis and the
/// chart as they are, when the chart has other panels or scales.
PAVANE_API int fillChartAxis(A2DAxisMulti& axis, PanelChart&& chart, int panelsOfPage = 0);

}  // namespace pavane
