#pragma once

#include "platform/types.h"

namespace pavane
{

/// Bits of where a caption stands.
enum CaptionFlag : int {
    captionTop = 1,     ///< above the picture, else below
    captionBottom = 2,  ///< set at first; top wins
    captionLeft = 4,    ///< wins over right
    captionCentre = 8,  ///< set at first; left and right win
    captionRight = 16
};

/// The caption of a page, and in `flags` where it stands. The first "%d", "%i" or "%u", with a "0"
/// or "-" and a width of up to two digits if wanted, becomes the page and "%%" becomes "%"; any
/// other text stays, whatever signs it holds. Then, in this order and once each: "~C" becomes
/// "(Continued)" behind page 1 and nothing on it, "~D", "~U" (twice), "~R" and "~L" are taken out
/// and set bottom, top, right and left.
PAVANE_API CString FormatStr(const CString& format, int page, int& flags);

/// What DrawText needs for a caption of these flags: broken at blanks, every "&" kept.
PAVANE_API unsigned captionDrawFormat(int flags);

}  // namespace pavane
