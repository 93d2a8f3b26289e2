#pragma once

#include "pavane/axes/maps/MapDisplay.h"

namespace pavane
{

class AAxisWnd;

/// How the window displays its map now; as at first without a map.
PAVANE_API MapDisplay shownDisplay(const AAxisWnd& plot);
/// Shows the map of the window in another way, and draws it anew when that changes something. No
/// step of the views by itself. The window may be gone afterwards: what hears of new colours may
/// close it. Non-zero when something changed.
PAVANE_API int showDisplay(AAxisWnd& plot, const MapDisplay& display);

}  // namespace pavane
