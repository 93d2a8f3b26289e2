#pragma once

#include <array>

namespace pavane
{

/// A station of the array: geocentric equatorial coordinates in metres, X towards Greenwich, Z
/// north.
struct Station {
    const char* code;
    double x, y, z;
};

/// The ten stations of the VLBA, to a metre or so: far finer than what a picture shows. From the
/// station positions that the observatory publishes.
inline constexpr std::array<Station, 10> vlbaStations = {{
    {"SC", 2607848.6, -5488069.5, 1932739.5},
    {"HN", 1446375.1, -4447939.7, 4322306.1},
    {"NL", -130872.3, -4762317.1, 4226851.0},
    {"FD", -1324009.1, -5332181.9, 3231962.4},
    {"LA", -1449752.4, -4975298.6, 3709123.9},
    {"PT", -1640953.8, -5014816.0, 3575411.9},
    {"KP", -1995678.7, -5037317.7, 3357328.1},
    {"OV", -2409150.2, -4478573.1, 3838617.4},
    {"BR", -2112065.0, -3705356.5, 4726813.7},
    {"MK", -5464075.0, -2495248.9, 2148296.9},
}};

}  // namespace pavane
