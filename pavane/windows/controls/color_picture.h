#pragma once

#include "platform/picture.h"

#include <vector>

namespace pavane
{

/// Colours to choose from in a line of a list or menu: one is a swatch, several are the strip of a
/// palette.
struct AColorItem {
    CString name;
    std::vector<COLORREF> colors;
};

/// Sizes of swatches and strips in lists and menus, in units.
inline constexpr CSize swatchSize{28, 12};
inline constexpr CSize stripSize{96, 12};

/// The picture of the colours, side by side from the left, framed so that it is seen on any ground;
/// `ratio` pixels to a unit, 1 to 8. Empty without a colour.
PAVANE_API CPicture colorPicture(const std::vector<COLORREF>& colors, int ratio);

}  // namespace pavane
