#pragma once

#include "platform/types.h"

namespace pavane
{

// Indices of the desktop's colours; the numeric values are those of the Win32 interface.
inline constexpr int COLOR_WINDOW = 5, COLOR_WINDOWFRAME = 6, COLOR_WINDOWTEXT = 8,
                     COLOR_HIGHLIGHT = 13, COLOR_HIGHLIGHTTEXT = 14, COLOR_BTNFACE = 15,
                     COLOR_BTNSHADOW = 16, COLOR_GRAYTEXT = 17, COLOR_BTNTEXT = 18,
                     COLOR_BTNHIGHLIGHT = 20, COLOR_INFOTEXT = 23, COLOR_INFOBK = 24;

/// A colour of the palette that the desktop, or the host, gave the toolkit; black for an unknown
/// index. When the palette changes every window gets WM_SYSCOLORCHANGE.
PAVANE_API COLORREF GetSysColor(int index);

/// The colour with its luminance moved by `luminance` percent of the way to white (below 0: to
/// black) and its saturation by `saturation` percent of the way to the full one (below 0: to grey).
/// The hue stays; 0 leaves a value as it is.
PAVANE_API COLORREF HLS_TRANSFORM(COLORREF color, int luminance, int saturation);

/// How well one colour is read on the other: 1 for equal ones to 21 for black on white, by the
/// relative luminances of WCAG; text needs 4.5.
PAVANE_API double ContrastRatio(COLORREF a, COLORREF b);

}  // namespace pavane
