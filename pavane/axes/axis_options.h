#pragma once

namespace pavane
{

/// Bits of the options of an axis.
enum AxisOption : int {
    axisBitmapMode = 0x10,    ///< lines and points go into the axis's raster, with its palette
    axisBitmapCache = 0x100,  ///< with axisBitmapMode: the raster is kept in a file between redraws
    axisGridX = 0x1000,       ///< dashed lines across the plot at every x tick
    axisGridY = 0x2000,       ///< the same at every y tick
    axisTicksInside = 0x4000,   ///< ticks point inwards on all four sides, not outwards at two
    axisNoMinorTicks = 0x8000,  ///< only the labelled ticks are drawn
    axisNoXLabels = 0x10000,    ///< x ticks without labels and title, which take no room then
    axisNoYLabels = 0x20000     ///< the same for y
};

}  // namespace pavane
