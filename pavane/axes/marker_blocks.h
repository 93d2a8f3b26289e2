#pragma once

#include "platform/geometry.h"
#include "tessel/rounding.h"

#include <algorithm>

namespace pavane
{

// The markers that are blocks of pixels, about the run of pixels in a row that they mark. All edges
// are part of them.

/// A part of the font height, at least 1.
inline int sizeOfPart(int fHeight, int part)
{
    return std::max(1, truncated(static_cast<double>(fHeight) / std::max(part, 1) + 0.5));
}

/// Small dots of pixels are squares; larger ones are discs where the device draws them, and so are
/// all dots on a page.
inline int isSquareDot(int size, int onPage)
{
    constexpr int mostSquare = 4;
    return size <= mostSquare && !onPage;
}

inline CRect dotBlocks(int first, int last, int y, int size)
{
    const int before = (size - 1) / 2;
    return {first - before, y - before, last - before + size - 1, y - before + size - 1};
}

/// Upright bars as high as a cross whose arms are `half` long.
inline CRect barBlocks(int first, int last, int y, int half)
{
    return {first - half / 2, y - half, last + half / 2, y + half};
}

}  // namespace pavane
