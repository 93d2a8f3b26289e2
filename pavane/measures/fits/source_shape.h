#pragma once

#include "pavane/axes/maps/MapFrame.h"
#include "pavane/measures/fits/GaussianModel.h"
#include "platform/api.h"
#include "tessel/map_header.h"

#include <limits>

namespace pavane
{

/// An ellipse: full widths at half maximum, and the angle of the longer one in degrees, -90 to 90,
/// north through east.
struct SourceShape {
    static constexpr double none = std::numeric_limits<double>::quiet_NaN();
    double major = none, minor = none, angle = none;
};

/// A symmetric 2 x 2 matrix over (east, north) or (column, row).
struct Symmetric2 {
    double xx = 0, xy = 0, yy = 0;
};

/// (east, north) of a step of a column and of a row: arcseconds on the sky; else cells, x growing
/// to the west.
struct CellSteps {
    double east[2] = {-1, 0}, north[2] = {0, 1};
    int onSky = 0;
    static CellSteps of(const MapFrame& frame);
    double cellArea() const;
    Symmetric2 toSky(const Symmetric2& cells) const;
    Symmetric2 toCells(const Symmetric2& sky) const;
};

/// Squared full widths at half maximum of a source, over (column, row), and back.
Symmetric2 widthsOf(const CellSource& source);
void setWidths(const Symmetric2& widths, CellSource& source);

/// Those of the map's beam over (east, north) in arcseconds; 0 when it is not known or the map is
/// not on the sky.
int beamWidths(const MapHeader& header, const MapFrame& frame, Symmetric2& beam);

/// The ellipse of squared widths, which may have axes that are not above 0: those are NaN, and the
/// angle is that of the larger one all the same.
SourceShape shapeOf(const Symmetric2& widths);

/// How axes and angle change with squared widths: derivatives by xx, xy and yy. NaN where an axis
/// is not above 0, and of the angle of a circle.
struct ShapeSlopes {
    double major[3], minor[3], angle[3];
};
ShapeSlopes slopesOf(const Symmetric2& widths);

/// Full width of an ellipse through its middle along an angle (degrees, north through east).
double widthAlong(const Symmetric2& widths, double angle);

}  // namespace pavane
