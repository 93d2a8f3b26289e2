#pragma once

#include "platform/types.h"

namespace pavane
{

/// A pointer picture, opaque; 0 is none. System cursors have small numbers, cursors of resource
/// tables are made by LoadCursor and live until the end.
using HCURSOR = unsigned;

inline constexpr HCURSOR IDC_ARROW = 1, IDC_IBEAM = 2, IDC_WAIT = 3, IDC_CROSS = 4, IDC_SIZEALL = 5,
                         IDC_SIZENWSE = 6, IDC_SIZENESW = 7, IDC_SIZEWE = 8, IDC_SIZENS = 9,
                         IDC_HAND = 10, IDC_NO = 11;

/// A drawn cursor of 32 x 32 dots: rows of text, '#' black, '.' white, blank transparent.
struct CursorTemplate {
    unsigned id;
    int hotX;
    int hotY;
    const char* const* rows;
    int rowCount;
};

/// The cursor `id` of the resource tables (resources.h); 0 when there is none.
PAVANE_API HCURSOR LoadCursor(unsigned id);
/// Shows a cursor over the window that is under the pointer, until the pointer moves on and
/// WM_SETCURSOR asks again; returns the one shown before.
PAVANE_API HCURSOR SetCursor(HCURSOR cursor);
PAVANE_API HCURSOR GetCursor();
/// Wait cursor over the whole program; calls nest.
PAVANE_API void BeginWaitCursor();
PAVANE_API void EndWaitCursor();

}  // namespace pavane
