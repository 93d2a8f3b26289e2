#pragma once

#include "platform/types.h"

namespace pavane
{

/// What a table takes of the desktop's colours.
struct DesktopColors {
    COLORREF window;
    COLORREF text;
    COLORREF face;
    COLORREF highlight;  ///< the light edge of a face
    COLORREF shadow;
    COLORREF frame;
    COLORREF selection;
};

/// The colours that a table is drawn in.
struct TableColors {
    COLORREF window = RGB(255, 255, 255);
    COLORREF text = 0;
    COLORREF face = RGB(212, 212, 212);
    COLORREF highlight = RGB(255, 255, 255);
    COLORREF shadow = RGB(128, 128, 128);
    COLORREF frame = 0;
    COLORREF selected = RGB(230, 240, 255);  ///< ground of selected cells
    COLORREF background = RGB(240, 240, 240);
    COLORREF accent = 0;  ///< of the marks of cells that can be edited

    /// Those of the desktop.
    static TableColors ofDesktop();
    /// Made so that text can be read and selected cells be told from others, whatever the palette.
    static TableColors of(const DesktopColors& desktop);
    /// Those of a printed page, whatever the desktop's are.
    static TableColors ofPaper() { return {}; }
    /// Black or white in place of `text` where it cannot be read on `ground`.
    COLORREF textOn(COLORREF ground) const;
    /// `accent` and `shadow` for marks on `ground`, or what can be seen there in their place.
    COLORREF accentOn(COLORREF ground) const;
    COLORREF faintOn(COLORREF ground) const;
    /// Non-zero when a frame that inverts pixels of `ground` can be seen.
    static int isInverseSeen(COLORREF ground);

private:
    // the last answers: most cells of a table have one ground
    struct OnGround {
        COLORREF ground = CLR_INVALID;
        COLORREF color = 0;
    };
    mutable OnGround text_, accent_, faint_;
};

/// Flat headers are of this grey whatever the desktop's colours are.
inline constexpr COLORREF flatHeaderColor = RGB(0xE8, 0xE8, 0xE8);

}  // namespace pavane
