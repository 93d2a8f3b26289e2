#include "apps/view/map_frame.h"

#include <cmath>
#include <numbers>

namespace pavane
{

namespace
{

constexpr double arcsecondsPerDegree = 3600.0;
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

}  // namespace

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
    frame.xTitle = frame.rotated ? "Offset along rows [%sas]"
                   : equatorial  ? "Right ascension [%sas]"
                                 : "Longitude [%sas]";
    frame.yTitle = frame.rotated ? "Offset along columns [%sas]"
                   : equatorial  ? "Declination [%sas]"
                                 : "Latitude [%sas]";
    return frame;
}

double beamCells(const MapHeader& header, const MapFrame& frame)
{
    if (!header.hasBeam || !frame.onSky || !(header.bmaj > 0) || !(header.bmin > 0))
        return 0;
    const double area = std::numbers::pi / (4 * std::numbers::ln2) * header.bmaj * header.bmin *
                        arcsecondsPerDegree * arcsecondsPerDegree;
    return area / std::fabs(frame.xStep * frame.yStep);
}

}  // namespace pavane
