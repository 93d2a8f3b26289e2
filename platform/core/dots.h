#pragma once

#include <cstddef>
#include <string>

namespace pavane
{

/// A picture of dots, row by row; a blank is nothing.
struct Dots {
    int width = 0;
    int height = 0;
    std::string cells;
    char at(int x, int y) const
    {
        const bool inside = x >= 0 && y >= 0 && x < width && y < height;
        return inside ? cells[static_cast<std::size_t>(std::ptrdiff_t{y} * width + x)] : ' ';
    }
};

/// Rows of text as dots, (x, y) being where the first of them lies; what does not fit is cut.
Dots dotsOf(const char* const* rows, int rowCount, int width, int height, int x = 0, int y = 0);

/// Twice as many dots, the corners of slanted lines filled: the Scale2x rule of A. Mazzoleni.
Dots doubled(const Dots& dots);

/// The dots at `factor` times their size: doubled as often as the factor allows, then as blocks.
Dots enlarged(const Dots& dots, int factor);

}  // namespace pavane
