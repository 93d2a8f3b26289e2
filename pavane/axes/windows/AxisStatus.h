#pragma once

#include <limits>

namespace pavane
{

/// What lies under the pointer in an axis window, and what the areas of its map hold.
struct AxisStatus {
    int inPlot = 0;  ///< the pointer is over the plot; otherwise only the areas are told
    double x = 0;    ///< data values (RP)
    double y = 0;
    double stepX = 0;  ///< what a pixel is there, above 0: how finely x and y are known
    double stepY = 0;
    int inMap = 0;  ///< and over a cell of the map
    int row = 0;    ///< of that cell (MP), from 0
    int column = 0;
    float value = std::numeric_limits<float>::quiet_NaN();  ///< not-a-number in a blank cell
    int hasAreas = 0;                                       ///< the cells of the areas are known
    long long cells = 0;                                    ///< that the mask of all areas sets
    double sum = 0;  ///< of their values, blank cells left out, in the unit of the map
};

}  // namespace pavane
