#pragma once

#include "tessel/map_header.h"

#include <cmath>
#include <numbers>

namespace pavane
{

inline constexpr double degree = std::numbers::pi / 180;

/// The header of a map in the SIN projection around (ra, dec), its reference in the FITS pixel
/// (501, 502), `step` degrees a cell, turned by `turn` degrees.
inline MapHeader sinMap(double ra, double dec, double step, double turn = 0)
{
    const double c = step * std::cos(turn * degree);
    const double s = step * std::sin(turn * degree);
    MapHeader header;
    header.axes = {{1000, "RA---SIN", "deg", ra, 501, -step, 0},
                   {1000, "DEC--SIN", "deg", dec, 502, step, turn}};
    header.hasCelestialAxes = 1;
    header.cd[0][0] = -c;
    header.cd[0][1] = header.cd[1][0] = -s;
    header.cd[1][1] = c;
    header.equinox = 2000;
    return header;
}

}  // namespace pavane
