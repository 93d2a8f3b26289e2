#include "platform/core/dots.h"

namespace pavane
{

Dots dotsOf(const char* const* rows, int rowCount, int width, int height, int left, int top)
{
    Dots dots{width, height, {}};
    dots.cells.assign(static_cast<std::size_t>(width) * static_cast<std::size_t>(height), ' ');
    for (int y = 0; y < rowCount && y + top < height; ++y)
        for (int x = 0; x + left < width && rows[y][x]; ++x)
            dots.cells[static_cast<std::size_t>(std::ptrdiff_t{y + top} * width + x + left)] =
                rows[y][x];
    return dots;
}

Dots doubled(const Dots& dots)
{
    Dots result{2 * dots.width, 2 * dots.height, {}};
    for (int y = 0; y < result.height; ++y) {
        for (int x = 0; x < result.width; ++x) {
            const int cx = x / 2;
            const int cy = y / 2;
            const char side = dots.at(cx + (x % 2 ? 1 : -1), cy);
            const char over = dots.at(cx, cy + (y % 2 ? 1 : -1));
            const char otherSide = dots.at(cx + (x % 2 ? -1 : 1), cy);
            const char otherOver = dots.at(cx, cy + (y % 2 ? -1 : 1));
            const bool cuts = side == over && side != otherOver && over != otherSide;
            result.cells += cuts ? side : dots.at(cx, cy);
        }
    }
    return result;
}

Dots enlarged(const Dots& dots, int factor)
{
    Dots fine = dots;
    for (; factor % 2 == 0; factor /= 2)
        fine = doubled(fine);
    if (factor == 1)
        return fine;
    Dots blocks{fine.width * factor, fine.height * factor, {}};
    for (int y = 0; y < blocks.height; ++y)
        for (int x = 0; x < blocks.width; ++x)
            blocks.cells += fine.at(x / factor, y / factor);
    return blocks;
}

}  // namespace pavane
