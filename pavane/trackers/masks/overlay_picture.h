#pragma once

#include "pavane/axes/maps/cells/pixel_cells.h"
#include "platform/api.h"
#include "platform/geometry.h"
#include "platform/types.h"
#include "tessel/ABitMatrix.h"

#include <cstddef>
#include <cstdint>
#include <vector>

namespace pavane
{

/// A pixel 0x00RRGGBB as it looks inside: tinted lighter when it is dark and darker when it is
/// light, just so far that both differ by a contrast of 2, whatever the colour.
PAVANE_API std::uint32_t overlayTint(std::uint32_t pixel);

/// How the cells of a mask are shown over a map: tinted inside, and along the cells' edges a line
/// of one pixel in the inside colour next to one in the outside colour, so that it is seen on any
/// palette.
struct OverlayStyle {
    COLORREF inside = RGB(255, 255, 255);
    COLORREF outside = RGB(0, 0, 0);
    int lineShare = 208;  ///< of 256
};

/// What a pixel shows of a mask.
enum class OverlayPart : std::uint8_t { nothing, inner, insideLine, outsideLine };

/// Draws the cells of a mask over the picture of a map.
class PAVANE_API OverlayPicture
{
public:
    /// Which cells each column and row of pixels shows, as in the map's own picture. Pixel (0, 0)
    /// is the first of both. A pixel that shows several cells is inside when one of them is set.
    void setPixels(const PixelCells& columns, const PixelCells& rows);
    int width() const { return static_cast<int>(columns_.size()); }
    int height() const { return static_cast<int>(rows_.size()); }
    /// The pixels, lines included, that a block of cells can change; right and bottom excluded in
    /// both.
    CRect pixelsOf(const CRect& cells) const;

    /// Blends the cells of `mask` into the part `pixels` of the picture, cut to it. `to` is the
    /// pixel (pixels.left, pixels.top) as 0x00RRGGBB, `stride` pixels lead from one row to the
    /// next.
    void blend(const ABitMatrix& mask, const CRect& pixels, const OverlayStyle& style,
               std::uint32_t* to, std::ptrdiff_t stride) const;
    /// What each pixel of a part of the picture shows, row by row; empty unless it lies inside.
    std::vector<OverlayPart> parts(const ABitMatrix& mask, const CRect& pixels) const;

private:
    template <typename Use>
    void forRows(const ABitMatrix& mask, const CRect& pixels, Use&& use) const;

    /// The tints of the colours seen so far: the picture of a map has few.
    class Tints
    {
    public:
        std::uint32_t operator()(std::uint32_t pixel);
        void apply(std::uint32_t* pixels, int count);

    private:
        static constexpr std::uint32_t noPixel = 0xFFFFFFFF;
        struct Known {
            std::uint32_t pixel = noPixel;
            std::uint32_t tinted = 0;
        };
        std::vector<Known> known_;
    };

    std::vector<CellSpan> columns_;
    std::vector<CellSpan> rows_;
    mutable Tints tints_;
};

}  // namespace pavane
