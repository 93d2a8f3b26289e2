#pragma once

#include "pavane/axes/maps/MapContent.h"
#include "test_maps.h"

namespace pavane
{

/// A map of the sky, 60 x 40 cells.
inline MapContent skyMap()
{
    MapContent content;
    content.map.cells = randomMap(40, 60, 3);
    MapHeader& header = content.map.header;
    constexpr double cell = 1e-3 / 3600;
    header.axes = {{60, "RA---SIN", "deg", 0, 30, -cell, 0},
                   {40, "DEC--SIN", "deg", 0, 20, cell, 0}};
    header.hasCelestialAxes = 1;
    header.cd[0][0] = -cell;
    header.cd[1][1] = cell;
    header.object = "jet";
    header.bunit = "JY/BEAM";
    header.hasBeam = 1;
    header.bmaj = header.bmin = 4 * cell;
    return content;
}

/// What follows from cells and header.
inline void complete(MapContent& content)
{
    const AMatrix<float>& cells = content.map.cells;
    content.frame = frameOf(content.map.header, cells.rows(), cells.columns());
    content.range = mapRange(AFloatMatrixAccess(cells));
    content.noise = mapNoise(AFloatMatrixAccess(cells));
}

}  // namespace pavane
