#pragma once

#include "platform/geometry.h"

#include <functional>

namespace pavane
{

class CDC;

/// What lays an axis out in a rectangle of pixels; 0 when there is no room.
using PixelLayout = std::function<int(CDC& ruler, const CRect& pixels)>;

/// Lays an axis out for the rectangle of a page as for a picture of its size, so that it shows the
/// same labels in the same places: `border` (-1: none) is in pixels about the origin meanwhile, and
/// the font height that comes out of it is made finer. The rest is the caller's to make finer. What
/// `compose` returned.
int layOutOnPage(const CDC& dc, const CRect& rect, CRect& border, int& fHeight,
                 const PixelLayout& compose);

}  // namespace pavane
