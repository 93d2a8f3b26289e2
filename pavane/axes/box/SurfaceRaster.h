#pragma once

#include "pavane/axes/box/SurfaceGrid.h"
#include "pavane/axes/maps/cells/map_picture.h"
#include "platform/types.h"

#include <cstddef>
#include <cstdint>
#include <span>
#include <vector>

namespace pavane
{

/// What a pixel of a box shows.
enum class SurfacePart : std::uint8_t { nothing, upper, under, skirt, floor };

/// A pixel of a box.
struct SurfacePixel {
    std::uint32_t cell = 0;  ///< of the map, see SurfaceGrid::cell
    SurfacePart part = SurfacePart::nothing;
    std::uint8_t second = 0;   ///< 1: of the second surface
    std::uint8_t light = 255;  ///< how steeply the light falls on it, 0 to 255; 255 without light
};

/// The surfaces of a box in pixels: what is nearest to the eye at the centre of each pixel. It does
/// not depend on colours, so that other colours cost the pixels only.
///
/// A point of a surface belongs to the cell whose centre is nearest in p and q, as in the map.
/// Each column of pixels is an upright plane of the box; the cells under its middle are gone
/// through from the nearest to the farthest, and each stretch of the surface is seen where nothing
/// nearer is.
class PAVANE_API SurfaceRaster
{
public:
    /// Draws the scene as `view` sees it: pixel (x, y) is pixel (area.left + x, area.top + y) of
    /// the picture. Light comes from the upper left of the eye when `light` is non-zero. Non-zero
    /// on success; 0, and empty, for an empty area or without memory.
    int draw(const BoxView& view, const SurfaceScene& scene, const CRect& area, int light = 0);
    void clear() { *this = SurfaceRaster(); }

    int isEmpty() const { return pixels_.cells() < 1; }
    /// Whether a second surface was drawn.
    int hasSecond() const { return hasSecond_; }
    int width() const { return pixels_.rows(); }
    int height() const { return pixels_.columns(); }
    const SurfacePixel& pixel(int x, int y) const { return pixels_(x, y); }
    /// The pixels of a column from top to bottom.
    const SurfacePixel* column(int x) const { return pixels_.row(x); }
    /// Above the first and from the end on a column shows nothing.
    struct Extent {
        int first = 0, end = 0;
    };
    Extent extent(int x) const { return extents_[static_cast<std::size_t>(x)]; }

private:
    AMatrix<SurfacePixel> pixels_;  ///< a row of the matrix is a column of the picture
    std::vector<Extent> extents_;
    int hasSecond_ = 0;
};

/// The colours of a surface: the cells that give them (of the map itself, or of another one of the
/// same size) on their scale.
struct SurfaceColors {
    const AMatrixAccess* cells = nullptr;  ///< null: one colour, index colors.first
    const MapScale* scale = nullptr;
    MapColors colors;
};

/// Writes the palette indices of the pixels that show something: pixel (x, y) is bits[y * stride +
/// x], the others keep what they hold. Non-zero on success, 0 without memory.
PAVANE_API int paintSurface(const SurfaceRaster& raster, const SurfaceColors& first,
                            const SurfaceColors& second, unsigned char* bits,
                            std::ptrdiff_t stride);

/// How bright parts of a box are, 0 to 1.
struct SurfaceShades {
    double under = 0.6;    ///< the side seen from below
    double skirt = 0.8;    ///< the curtain
    double ambient = 0.4;  ///< where no light falls; only with light
};

/// Turns the indices of `paintSurface` into colours 0xFFRRGGBB: `table` are the 256 colours of the
/// palette. Pixels that show nothing keep what they hold; both strides are in items.
PAVANE_API void shadeSurface(const SurfaceRaster& raster, const unsigned char* bits,
                             std::ptrdiff_t bitsStride, std::span<const COLORREF, 256> table,
                             const SurfaceShades& shades, std::uint32_t* to,
                             std::ptrdiff_t toStride);

}  // namespace pavane
