#include "pavane/axes/maps/MapFrame.h"

#include "pavane/axes/A2DAxis.h"
#include "pavane/axes/maps/ABMapGraph.h"
#include "pavane/axes/maps/map_titles.h"
#include "pavane/axes/maps/map_unit.h"
#include "tessel/map_steps.h"
#include "tessel/sky_axes.h"

#include <algorithm>
#include <cmath>
#include <numbers>
#include <string_view>
#include <utility>

namespace pavane
{

namespace
{

constexpr double arcsecondsPerMinute = 60.0;
constexpr double arcsecondsPerDegree = 3600.0;
/// Offsets from here on, in arcseconds, are given in minutes, and in degrees.
constexpr double leastInMinutes = 1000.0;
constexpr double leastInDegrees = 2 * arcsecondsPerDegree;

const MapAxis& axisOr(const MapHeader& header, std::size_t i)
{
    static const MapAxis none;
    return i < header.axes.size() ? header.axes[i] : none;
}

double referenceOf(const MapAxis& axis) { return std::isfinite(axis.crpix) ? axis.crpix : 1.0; }

/// First and last cell centre of an axis, relative to `origin` at the reference pixel.
void setEnds(const MapAxis& axis, int cells, double step, double origin, double& first,
             double& last)
{
    first = origin + (1 - referenceOf(axis)) * step;
    last = origin + (cells - referenceOf(axis)) * step;
}

std::string plainTitle(const MapAxis& axis, const char* otherwise)
{
    static constexpr std::pair<std::string_view, const char*> names[] = {
        {"OFFSET", "Offset"},
        {"VRAD", "Radio velocity"},
        {"VOPT", "Optical velocity"},
        {"FELO", "Optical velocity"},
        {"VELO", "Velocity"},
        {"FREQ", "Frequency"},
        {"PLANE", "Plane"}};
    std::string name = axis.ctype.empty() ? otherwise : axis.ctype;
    for (const auto& [type, usual] : names)
        if (name == type || (name.starts_with(type) && name[type.size()] == '-'))
            name = usual;
    if (axis.cunit.empty())
        return name;
    return name + (axis.cunit == "arcsec" ? " [%sas]" : titleUnit(axis.cunit));
}

/// What the axes of a map on the sky count, without their unit.
void setSkyTitles(const MapHeader& header, MapFrame& frame)
{
    static constexpr struct {
        SkyAxes::Kind kind;
        const char *x, *y;
    } titles[] = {
        {SkyAxes::Kind::equatorial, "Relative right ascension", "Relative declination"},
        {SkyAxes::Kind::galactic, "Relative galactic longitude", "Relative galactic latitude"},
        {SkyAxes::Kind::ecliptic, "Relative ecliptic longitude", "Relative ecliptic latitude"}};
    frame.xTitle = frame.rotated ? "Offset along rows" : "Relative longitude";
    frame.yTitle = frame.rotated ? "Offset along columns" : "Relative latitude";
    const SkyAxes axes = skyAxesOf(axisOr(header, 0).ctype, axisOr(header, 1).ctype);
    for (const auto& t : titles)
        if (!frame.rotated && t.kind == axes.kind) {
            frame.xTitle = t.x;
            frame.yTitle = t.y;
        }
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
    return degrees ? "~ [deg]" : "~ [arcmin]";
}

MapBeam beamOf(const MapHeader& header, const MapFrame& frame)
{
    const double angle = header.bpa * std::numbers::pi / 180;
    const MapPlace end = frame.onAxes(std::sin(angle), std::cos(angle));
    const double unit = arcsecondsPerDegree / frame.arcseconds;
    return {header.bmaj * unit, header.bmin * unit,
            std::atan2(end.x, end.y) * 180 / std::numbers::pi};
}

}  // namespace

MapPlace MapFrame::onAxes(double east, double north) const
{
    const double x = east / arcseconds;
    const double y = north / arcseconds;
    return {turn[0][0] * x + turn[0][1] * y, turn[1][0] * x + turn[1][1] * y};
}

MapPlace MapFrame::offsetOf(double column, double row) const
{
    const double dx = column - reference[0];
    const double dy = row - reference[1];
    return {sky[0][0] * dx + sky[0][1] * dy, sky[1][0] * dx + sky[1][1] * dy};
}

TMinMax MapFrame::centres() const
{
    TMinMax centres;
    centres.xMin = xFirst;
    centres.xMax = xLast;
    centres.yMin = yFirst;
    centres.yMax = yLast;
    return centres;
}

MapFrame frameOf(const MapHeader& header, int rows, int columns)
{
    const MapAxis& x = axisOr(header, 0);
    const MapAxis& y = axisOr(header, 1);
    const MapSteps steps = stepsOf(header);
    MapFrame frame;
    frame.valueTitle = mapValueTitle(header);
    frame.onSky = header.hasCelestialAxes;
    if (!frame.onSky && steps.isTurned) {  // axes of which no cell lies on one value: pixels
        setEnds({}, columns, 1, 1, frame.xFirst, frame.xLast);
        setEnds({}, rows, 1, 1, frame.yFirst, frame.yLast);
        frame.xTitle = "Column";
        frame.yTitle = "Row";
        return frame;
    }
    const double unit = frame.onSky ? arcsecondsPerDegree : 1.0;
    frame.xStep = steps.column * unit;
    frame.yStep = steps.row * unit;
    for (int i = 0; i < 4; ++i)
        frame.sky[i / 2][i % 2] = steps.sky[i / 2][i % 2] * unit;
    frame.reference[0] = referenceOf(x) - 1;
    frame.reference[1] = referenceOf(y) - 1;
    const auto origin = [&](const MapAxis& axis) {
        return frame.onSky || !std::isfinite(axis.crval) ? 0.0 : axis.crval;
    };
    setEnds(x, columns, frame.xStep, origin(x), frame.xFirst, frame.xLast);
    setEnds(y, rows, frame.yStep, origin(y), frame.yFirst, frame.yLast);
    if (!frame.onSky) {
        frame.xTitle = plainTitle(x, "Column");
        frame.yTitle = plainTitle(y, "Row");
        frame.unlikeAxes = x.cunit != y.cunit;
        return frame;
    }
    frame.xDirection = -1;
    frame.rotated = steps.isTurned;
    std::copy_n(&steps.turn[0][0], 4, &frame.turn[0][0]);
    const char* const unitText = chooseUnit(frame);
    setSkyTitles(header, frame);
    frame.xTitle += unitText;
    frame.yTitle += unitText;
    if (header.hasBeam)
        frame.beam = beamOf(header, frame);
    return frame;
}

double beamCells(const MapHeader& header, const MapFrame& frame)
{
    if (!header.hasBeam || !frame.onSky || !(header.bmaj > 0) || !(header.bmin > 0))
        return 0;
    return std::numbers::pi / (4 * std::numbers::ln2) * header.bmaj * header.bmin /
           stepsOf(header).cellArea;
}

void describeMap(A2DAxis& axis, ABMapGraph& graph, const MapFrame& frame, const CString& headerLine)
{
    axis.setNameOX(frame.xTitle);
    axis.setNameOY(frame.yTitle);
    graph.setNames(frame.xTitle, frame.yTitle, frame.valueTitle);
    if (!headerLine.empty())
        graph.setHeaderText(0, headerLine);
    graph.setBeam(frame.beam);
}

}  // namespace pavane
