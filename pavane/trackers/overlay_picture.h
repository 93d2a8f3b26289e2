#pragma once

#include "platform/api.h"
#include "platform/geometry.h"
#include "platform/types.h"
#include "tessel/ABitMatrix.h"

#include <cstddef>
#include <cstdint>
#include <span>
#include <vector>

namespace pavane
{

/// Which cells of one direction of a map each pixel of that direction shows, as the map's own
/// picture does: where cells are wider than pixels the cell in which the pixel's centre lies, else
/// those whose centres lie in the pixel. `first` above `last` means none.
struct PixelSpan {
    int first = 0;
    int last = -1;
};

/// `borders` are the pixels + 1 borders of the pixels in cells (cell k reaches from k - 0.5 to
/// k + 0.5), rising or falling; pixels with a border that is no number show nothing.
PAVANE_API std::vector<PixelSpan> pixelSpans(std::span<const double> borders, int cells);

/// How the cells of a mask are shown over a map: a faint tint inside, and along the cells' edges a
/// line of one pixel in the inside colour next to one in the outside colour, so that it is seen on
/// any palette.
struct OverlayStyle {
    COLORREF tint = RGB(255, 255, 255);
    int tintShare = 40;  ///< of 256
    COLORREF inside = RGB(255, 255, 255);
    COLORREF outside = RGB(0, 0, 0);
    int lineShare = 200;  ///< of 256
};

/// Draws the cells of a mask over pixels.
class PAVANE_API OverlayPicture
{
public:
    /// What a pixel shows.
    enum Part : std::uint8_t { nothing, inner, insideLine, outsideLine };

    /// Columns and rows of pixels, one span each. The pixel (0, 0) is that of the first spans.
    void setPixels(std::vector<PixelSpan> columns, std::vector<PixelSpan> rows);
    int width() const { return static_cast<int>(columns_.size()); }
    int height() const { return static_cast<int>(rows_.size()); }
    /// Pixels, with their lines, that a block of cells (right and bottom excluded) can change.
    CRect pixelsOf(const CRect& cells) const;

    /// Blends the cells of `mask` into the part `pixels` of the picture. `to` is the pixel
    /// (pixels.left, pixels.top), 0x00RRGGBB, `stride` pixels from one row to the next.
    void blend(const ABitMatrix& mask, const CRect& pixels, const OverlayStyle& style,
               std::uint32_t* to, std::ptrdiff_t stride) const;
    /// What each pixel of a part shows, row by row, for drawing without blending.
    std::vector<Part> parts(const ABitMatrix& mask, const CRect& pixels) const;

private:
    std::vector<PixelSpan> columns_;
    std::vector<PixelSpan> rows_;
};

}  // namespace pavane
