#pragma once

#include "platform/CDC.h"
#include "tessel/rounding.h"

#include <algorithm>
#include <cmath>

namespace pavane
{

/// Pixels of 96 per inch and the units of a context, which are finer on a page. Lengths that are
/// drawn are chosen in whole pixels and then made finer, so that they are as long on every device:
/// a part of a font height, rounded down, would be another part of it on each.
class FigureUnits
{
public:
    explicit FigureUnits(const CDC* dc)
    {
        const int perInch = dc ? dc->GetDeviceCaps(LOGPIXELSX) : 0;
        perPixel_ = perInch > 0 ? perInch / dpi : 1;
    }
    explicit FigureUnits(const CDC& dc) : FigureUnits(&dc) {}
    int arePixels() const { return perPixel_ == 1; }
    double perPixel() const { return perPixel_; }
    int units(int pixels) const { return scaled(pixels, perPixel_); }
    int pixels(int units) const { return scaled(units, 1 / perPixel_); }
    /// A length that `length` makes of the font height in pixels.
    template <typename Length>
    int ofFont(int fHeight, const Length& length) const
    {
        return units(length(pixels(fHeight)));
    }
    /// A line as wide as a part of the font height, but at least a pixel.
    int line(int fHeight, int part) const
    {
        return std::max(1,
                        ofFont(fHeight, [part](int height) { return std::max(1, height / part); }));
    }
    /// A rectangle of pixels about the origin, in units about `origin`.
    CRect units(const CRect& pixels, CPoint origin) const
    {
        return {origin.x + units(pixels.left), origin.y + units(pixels.top),
                origin.x + units(pixels.right), origin.y + units(pixels.bottom)};
    }

private:
    /// Halves go down: 3.125, 6.25 and 12.5 units to a pixel make the same of one.
    static int scaled(int length, double factor)
    {
        return factor == 1 ? length : truncated(std::ceil(length * factor - 0.5));
    }

    static constexpr double dpi = 96;
    double perPixel_ = 1;
};

/// A width of so many pixels in units of the context, at least 1 for those above 0.
inline int unitsOf(const CDC& dc, int pixels)
{
    return pixels > 0 ? std::max(1, FigureUnits(dc).units(pixels)) : 0;
}

/// Non-zero for a context that is a page, or shows one: finer than the pixels of a screen.
inline int isPage(const CDC& dc) { return dc.IsVector() || !FigureUnits(dc).arePixels(); }

}  // namespace pavane
