#include "apps/view/map_frame.h"

#include <algorithm>
#include <cmath>
#include <numbers>

namespace pavane
{

namespace
{

constexpr double arcsecondsPerMinute = 60.0;
constexpr double arcsecondsPerDegree = 3600.0;
/// Offsets from here on, in arcseconds, are given in minutes, and in degrees.
constexpr double leastInMinutes = 1000.0;
constexpr double leastInDegrees = 2 * arcsecondsPerDegree;
/// A turn below this many degrees moves the corner of a big map by less than a pixel or two.
constexpr double visibleTurn = 0.01;

const MapAxis& axisOr(const MapHeader& header, std::size_t i)
{
    static const MapAxis none;
    return i < header.axes.size() ? header.axes[i] : none;
}

double usableStep(double step) { return std::isfinite(step) && step != 0 ? step : 1.0; }

/// First and last cell centre of an axis, relative to `origin` at the reference pixel.
void setEnds(const MapAxis& axis, int cells, double step, double origin, double& first,
             double& last)
{
    const double reference = std::isfinite(axis.crpix) ? axis.crpix : 1.0;
    first = origin + (1 - reference) * step;
    last = origin + (cells - reference) * step;
}

std::string plainTitle(const MapAxis& axis, const char* otherwise)
{
    const std::string name = axis.ctype.empty() ? otherwise : axis.ctype;
    return axis.cunit.empty() ? name : name + " [%s" + axis.cunit + "]";
}

int isTurned(const MapHeader& header)
{
    const double across = std::hypot(header.cd[0][1], header.cd[1][0]);
    const double along = std::hypot(header.cd[0][0], header.cd[1][1]);
    return across > along * std::sin(visibleTurn * std::numbers::pi / 180);
}

/// Turns the axes from arcseconds into the unit in which their numbers are handy.
const char* chooseUnit(MapFrame& frame)
{
    const double farthest = std::max({std::fabs(frame.xFirst), std::fabs(frame.xLast),
                                      std::fabs(frame.yFirst), std::fabs(frame.yLast)});
    if (!(farthest >= leastInMinutes))
        return " [%sas]";
    const bool degrees = farthest >= leastInDegrees;
    frame.arcseconds = degrees ? arcsecondsPerDegree : arcsecondsPerMinute;
    for (double* value :
         {&frame.xFirst, &frame.xLast, &frame.xStep, &frame.yFirst, &frame.yLast, &frame.yStep})
        *value /= frame.arcseconds;
    return degrees ? " [deg]" : " [arcmin]";
}

/// The turn that undoes the header's matrix and goes on in steps along the pixels.
void setTurn(const MapHeader& header, MapFrame& frame)
{
    const double(&cd)[2][2] = header.cd;
    const double determinant = cd[0][0] * cd[1][1] - cd[0][1] * cd[1][0];
    const double x = frame.xStep * frame.arcseconds / arcsecondsPerDegree / determinant;
    const double y = frame.yStep * frame.arcseconds / arcsecondsPerDegree / determinant;
    const double turn[2][2] = {{x * cd[1][1], -x * cd[0][1]}, {-y * cd[1][0], y * cd[0][0]}};
    for (const auto& row : turn)
        if (!std::isfinite(row[0]) || !std::isfinite(row[1]))
            return;  // a matrix without an inverse turns nothing
    std::copy_n(&turn[0][0], 4, &frame.turn[0][0]);
}

}  // namespace

MapPlace MapFrame::onAxes(double east, double north) const
{
    const double x = east / arcseconds;
    const double y = north / arcseconds;
    return {turn[0][0] * x + turn[0][1] * y, turn[1][0] * x + turn[1][1] * y};
}

MapFrame frameOf(const MapHeader& header, int rows, int columns)
{
    const MapAxis& x = axisOr(header, 0);
    const MapAxis& y = axisOr(header, 1);
    MapFrame frame;
    frame.onSky = header.hasCelestialAxes;
    const double unit = frame.onSky ? arcsecondsPerDegree : 1.0;
    frame.xStep = usableStep(x.cdelt) * unit;
    frame.yStep = usableStep(y.cdelt) * unit;
    const auto origin = [&](const MapAxis& axis) {
        return frame.onSky || !std::isfinite(axis.crval) ? 0.0 : axis.crval;
    };
    setEnds(x, columns, frame.xStep, origin(x), frame.xFirst, frame.xLast);
    setEnds(y, rows, frame.yStep, origin(y), frame.yFirst, frame.yLast);
    if (!frame.onSky) {
        frame.xTitle = plainTitle(x, "Column");
        frame.yTitle = plainTitle(y, "Row");
        return frame;
    }
    frame.xDirection = -1;
    frame.rotated = isTurned(header);
    const bool equatorial = x.ctype.rfind("RA", 0) == 0;
    const char* const unitText = chooseUnit(frame);
    if (frame.rotated)
        setTurn(header, frame);
    frame.xTitle = frame.rotated ? "Offset along rows"
                   : equatorial  ? "Right ascension"
                                 : "Longitude";
    frame.yTitle = frame.rotated ? "Offset along columns" : equatorial ? "Declination" : "Latitude";
    frame.xTitle += unitText;
    frame.yTitle += unitText;
    return frame;
}

double beamCells(const MapHeader& header, const MapFrame& frame)
{
    if (!header.hasBeam || !frame.onSky || !(header.bmaj > 0) || !(header.bmin > 0))
        return 0;
    const double area = std::numbers::pi / (4 * std::numbers::ln2) * header.bmaj * header.bmin *
                        arcsecondsPerDegree * arcsecondsPerDegree;
    const double side = frame.arcseconds;
    return area / std::fabs(frame.xStep * side * frame.yStep * side);
}

}  // namespace pavane
