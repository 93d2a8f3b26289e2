#pragma once

#include "platform/CDC.h"
#include "tessel/rounding.h"

#include <algorithm>
#include <cmath>

namespace pavane
{

/// Pixels of 96 per inch and the units of a context, which are finer on a page.
class FigureUnits
{
public:
    explicit FigureUnits(const CDC& dc) : perPixel_(dc.GetDeviceCaps(LOGPIXELSX) / dpi) {}
    int areFine() const { return perPixel_ > 1; }
    int units(int pixels) const { return scaled(pixels, areFine() ? perPixel_ : 1); }
    int pixels(int units) const { return scaled(units, areFine() ? 1 / perPixel_ : 1); }
    /// A rectangle of pixels about the origin, in units about `origin`.
    CRect units(const CRect& pixels, CPoint origin) const
    {
        return {origin.x + units(pixels.left), origin.y + units(pixels.top),
                origin.x + units(pixels.right), origin.y + units(pixels.bottom)};
    }

private:
    static int scaled(int length, double factor)
    {
        return factor == 1 ? length : truncated(std::floor(length * factor + 0.5));
    }

    static constexpr double dpi = 96;
    double perPixel_;
};

/// A width of so many pixels in units of the context, at least 1 for those above 0.
inline int unitsOf(const CDC& dc, int pixels)
{
    return pixels > 0 ? std::max(1, FigureUnits(dc).units(pixels)) : 0;
}

}  // namespace pavane
