#pragma once

#include "platform/types.h"

namespace pavane
{

/// The colours that a table is drawn in.
struct TableColors {
    COLORREF window = RGB(255, 255, 255);
    COLORREF text = 0;
    COLORREF face = RGB(212, 212, 212);
    COLORREF highlight = RGB(255, 255, 255);
    COLORREF shadow = RGB(128, 128, 128);
    COLORREF frame = 0;
    COLORREF selected = RGB(230, 240, 255);
    COLORREF background = RGB(240, 240, 240);
    COLORREF accent = 0;  ///< of the marks of cells that can be edited

    /// Those of the desktop.
    static TableColors ofDesktop();
    /// Those of a printed page, whatever the desktop's are.
    static TableColors ofPaper() { return {}; }
    /// Black or white in place of `text` where it cannot be read on `ground`.
    COLORREF textOn(COLORREF ground) const;

private:
    // the last answer: most cells of a table have one ground
    mutable COLORREF lastGround_ = CLR_INVALID;
    mutable COLORREF lastText_ = 0;
};

/// Flat headers are of this grey whatever the desktop's colours are.
inline constexpr COLORREF flatHeaderColor = RGB(0xE8, 0xE8, 0xE8);

}  // namespace pavane
