#include "pavane/measures/maps/smooth_map.h"

#include "pavane/axes/maps/map_unit.h"
#include "pavane/measures/maps/cell_gaussian.h"
#include "pavane/measures/maps/GaussianFilter.h"
#include "pavane/measures/maps/near_blanks.h"
#include "tessel/map_steps.h"

#include <algorithm>
#include <cmath>
#include <limits>
#include <numbers>

namespace pavane
{

namespace
{

/// A beam as squared full widths: a matrix over (east, north).
struct Squares {
    double ee = 0, en = 0, nn = 0;
};

Squares squaresOf(const SkyBeam& beam)
{
    const double angle = beam.angle * std::numbers::pi / 180;
    const double east = std::sin(angle), north = std::cos(angle);
    const double a = beam.major * beam.major, b = beam.minor * beam.minor;
    return {a * east * east + b * north * north, (a - b) * east * north,
            a * north * north + b * east * east};
}

/// The same over (column, row) of a map.
CellGaussian inCells(const Squares& s, const MapSteps& steps)
{
    const double(&m)[2][2] = steps.sky;
    const double determinant = m[0][0] * m[1][1] - m[0][1] * m[1][0];
    // columns and rows of a step to the east, and to the north
    const double i[2][2] = {{m[1][1] / determinant, -m[0][1] / determinant},
                            {-m[1][0] / determinant, m[0][0] / determinant}};
    const auto product = [&](int p, int q) {
        return i[p][0] * i[q][0] * s.ee + (i[p][0] * i[q][1] + i[p][1] * i[q][0]) * s.en +
               i[p][1] * i[q][1] * s.nn;
    };
    return {product(0, 0), product(0, 1), product(1, 1)};
}

int isPerBeam(const std::string& bunit)
{
    const MapUnit unit = mapUnit(bunit);
    return unit.isFlux && !unit.perPixel && unit.name.find("beam") != std::string::npos;
}

}  // namespace

CellGaussian cellGaussianOf(const SkyBeam& beam, const MapSteps& steps)
{
    return inCells(squaresOf(beam), steps);
}

int beamBetween(const SkyBeam& from, const SkyBeam& to, SkyBeam& between)
{
    constexpr double rounding = 1e-6;
    const Squares a = squaresOf(from), b = squaresOf(to);
    const double ee = b.ee - a.ee, en = b.en - a.en, nn = b.nn - a.nn;
    const double middle = (ee + nn) / 2;
    const double spread = std::hypot((nn - ee) / 2, en);
    if (!(middle - spread >= -rounding * to.major * to.major))
        return 0;
    between.major = std::sqrt(std::max(middle + spread, 0.0));
    between.minor = std::sqrt(std::max(middle - spread, 0.0));
    between.angle = std::atan2(2 * en, nn - ee) / 2 * 180 / std::numbers::pi;
    return 1;
}

int smoothMap(const AMatrix<float>& cells, const MapHeader& header, const SkyBeam& beam,
              SmoothedMap& smoothed, std::string& error, const ProgressFunction& progress)
{
    smoothed = SmoothedMap();
    SkyBeam between;
    if (!header.hasCelestialAxes)
        error = "does not lie on the sky, so that a beam has no size in it";
    else if (!header.hasBeam)
        error = "has no beam that could become larger";
    else if (!(beam.minor > 0) || !(beam.major >= beam.minor) || !std::isfinite(beam.major) ||
             !std::isfinite(beam.angle))
        error = "cannot get a beam without a size";
    else if (!beamBetween({header.bmaj, header.bmin, header.bpa}, beam, between))
        error = "has a beam that is larger than the new one in some direction";
    else {
        smoothed.cells = cells;
        error = smoothed.cells.rows() ? "" : "there is no memory for its cells";
    }
    if (!error.empty())
        return 0;
    const MapSteps steps = stepsOf(header);
    smoothed.header = header;
    smoothed.header.bmaj = beam.major;
    smoothed.header.bmin = beam.minor;
    smoothed.header.bpa = beam.angle;
    if (isPerBeam(header.bunit))
        smoothed.factor = beam.major * beam.minor / (header.bmaj * header.bmin);
    float* const values = smoothed.cells.data();
    const std::int64_t count = std::int64_t{cells.rows()} * cells.columns();
    for (std::int64_t i = 0; i < count; ++i)
        values[i] = std::isfinite(values[i]) ? values[i] : 0;
    if (!convolve(smoothed.cells, cellGaussianOf(between, steps), error, progress))
        return 0;
    const float* const old = cells.data();
    for (std::int64_t i = 0; i < count; ++i)
        values[i] = std::isfinite(old[i])
                        ? static_cast<float>(static_cast<double>(values[i]) * smoothed.factor)
                        : std::numeric_limits<float>::quiet_NaN();
    smoothed.incomplete =
        cellsNearBlanks(cells, std::fabs(steps.column), std::fabs(steps.row), beam.major);
    if (smoothed.incomplete >= 0)
        return 1;
    error = "there is no memory for its cells";
    return 0;
}

}  // namespace pavane
