#pragma once

#include "platform/CDC.h"

#include <algorithm>

namespace pavane
{

/// So many pixels of 96 per inch in units of the context, whether it is a picture or a page whose
/// units are finer; at least 1 for lengths above 0.
inline int unitsOf(const CDC& dc, int pixels)
{
    constexpr int dpi = 96;
    return pixels > 0 ? std::max(1, MulDiv(pixels, dc.GetDeviceCaps(LOGPIXELSX), dpi)) : 0;
}

}  // namespace pavane
