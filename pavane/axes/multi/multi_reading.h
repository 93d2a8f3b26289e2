#pragma once

#include "pavane/axes/multi/MultiFocus.h"
#include "platform/api.h"
#include "platform/geometry.h"
#include "platform/types.h"

#include <vector>

namespace pavane
{

class A2DAxisMulti;

/// A point of a curve.
struct NearestPoint {
    int scale = -1;
    int graph = -1;  ///< index in childs() of the axis
    int point = -1;
    double x = 0;  ///< data values (RP)
    double y = 0;
};

/// What a client point of a plot with several scales shows.
struct MultiStatus {
    int inPlot = 0;
    int panel = -1;    ///< its number
    int scale = -1;    ///< the panel's first, or that of the y axis under the point
    double x = 0;      ///< data values (RP)
    double stepX = 0;  ///< what a pixel is there, above 0
    std::vector<NearestPoint> nearest;  ///< one of each scale on the page that has points
};

/// The x conversions of the axis in the plot of a panel, whatever column that stands in.
PAVANE_API double xAtPixel(const A2DAxisMulti& axis, const CRect& plot, int gx);
PAVANE_API int xPixelOf(const A2DAxisMulti& axis, const CRect& plot, double x);

/// Of each scale the point nearest in x to the point; of curves with equally near points, in the
/// panel of `at` the one nearest in y.
PAVANE_API MultiStatus statusAt(const A2DAxisMulti& axis, CPoint at);
/// The same where `point` of a curve is, as if the pointer stood on it.
PAVANE_API MultiStatus statusOf(const A2DAxisMulti& axis, const MultiFocus& focus);
/// One line of it: x, and the nearest points of the panel's scales with their units.
PAVANE_API CString statusText(const A2DAxisMulti& axis, const MultiStatus& status);

/// An x value, told to `step`: clock text on time axes.
PAVANE_API CString xText(const A2DAxisMulti& axis, double x, double step);

// What a screen reader says. Titles without the markers of AB2DAxis.
/// "Panel 3 of 8, EF-WB": of all pages, with its caption.
PAVANE_API CString panelName(const A2DAxisMulti& axis, int panel);
/// "Amplitude", and "0.1 to 3.5 Jy, logarithmic".
PAVANE_API CString scaleName(const A2DAxisMulti& axis, int scale);
PAVANE_API CString scaleRangeText(const A2DAxisMulti& axis, int scale);
/// Its name, and "300 points, least 0.1 Jy, greatest 3.5 Jy".
PAVANE_API CString curveName(const A2DAxisMulti& axis, int graph);
PAVANE_API CString curveText(const A2DAxisMulti& axis, int graph);
/// "Point 17 of 300: x 12:30:00, y 0.5 Jy"; empty without one.
PAVANE_API CString pointText(const A2DAxisMulti& axis, const MultiFocus& focus);

}  // namespace pavane
