#pragma once

#include "platform/geometry.h"

namespace pavane
{

struct LOGFONT;

/// The font of dialogs and controls: nine points at 96 per inch, whatever the screen says.
LOGFONT dialogFont();

/// How many pixels a dialog unit is: a quarter of `baseX` across and an eighth of `baseY` down.
struct DialogUnits {
    int baseX = 7;
    int baseY = 13;
    /// Pixels of a rectangle in dialog units. Places and sizes are rounded by themselves, so that
    /// controls of one size look alike wherever they stand.
    CRect pixels(int x, int y, int cx, int cy) const;
};

/// The units of dialogFont() as the backend draws it: the mean width of the letters A to Z and a to
/// z, and the height of a line.
DialogUnits dialogUnits();

}  // namespace pavane
