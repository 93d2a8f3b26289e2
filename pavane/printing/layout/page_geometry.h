#pragma once

#include "platform/geometry.h"
#include "platform/types.h"

namespace pavane
{

// Margins are left, top, right and bottom in hundredths of a millimetre.

/// Margins of a print-out that nobody has changed: 20 mm on the left, 10 mm elsewhere.
inline constexpr CRect standardMargins{2000, 1000, 1000, 1000};
/// A printable area is never narrower or lower: 10 mm.
inline constexpr int leastPrintable = 1000;

/// The whole page of a device as it tells it.
struct PageCaps {
    int width = 0, height = 0;     ///< HORZSIZE, VERTSIZE: millimetres
    int xPixels = 0, yPixels = 0;  ///< HORZRES, VERTRES
};

/// What the margins, below 0 as 0, leave of the page, in pixels from its corner. Empty, all zero,
/// when they leave nothing or the page has no size.
PAVANE_API CRect printableRect(const PageCaps& page, const CRect& margins);

/// Whether something can be printed within these margins on a paper of `paper` hundredths of a
/// millimetre. `least` are margins that the printer cannot go below, all zero when it tells none.
struct MarginCheck {
    int valid = 1;
    int side = -1;    ///< the margin at fault, 0 left to 3 bottom; -1: all of them, or the paper
    CString message;  ///< for the user; "" when all is well
};
PAVANE_API MarginCheck checkMargins(const CRect& margins, const CSize& paper,
                                    const CRect& least = {});

/// A length of hundredths of a millimetre as millimetres of two decimals: "20.00".
PAVANE_API CString millimetreText(int hundredths);
/// Reads millimetres, rounded to hundredths. Non-zero for a number from 0 to 10 000; else
/// `hundredths` is left alone.
PAVANE_API int readMillimetres(const CString& text, int& hundredths);

}  // namespace pavane
