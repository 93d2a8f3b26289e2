#pragma once

#include "pavane/axes/box/SurfaceRaster.h"

#include <array>
#include <cstddef>
#include <cstdint>

namespace pavane
{

/// Softens the outlines in an image of a raster, of surfaces before what is behind them and of one
/// part of a surface before another: pixels are of one colour each, so that an outline that runs
/// aslant is stairs. It is taken to go straight through the middles of the steps, and the pixels
/// that it cuts get of both colours what is on either side of it.
///
/// Pixel (x, y) is image[y * stride + x]. `columns` are those of the maps of both surfaces; cells
/// of neighbouring pixels that are farther apart than `apart` columns or rows are parts of a
/// surface of which one hides what is between. Nothing changes without memory.
PAVANE_API void softenEdges(const SurfaceRaster& raster, const std::array<int, 2>& columns,
                            int apart, std::uint32_t* image, std::ptrdiff_t stride);

}  // namespace pavane
