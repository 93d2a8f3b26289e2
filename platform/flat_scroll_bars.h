#pragma once

#include "platform/messages.h"

namespace pavane
{

// The calls of flat scroll bars. The desktop's style draws all bars, so they do what the plain
// calls of CWnd do; results are 0 for a window without that bar.

/// What of a scroll bar is set (`fMask`) or asked for.
struct SCROLLINFO {
    unsigned cbSize = 28;
    unsigned fMask = 0;
    int nMin = 0;
    int nMax = 0;
    unsigned nPage = 0;
    int nPos = 0;
    int nTrackPos = 0;
};
inline constexpr unsigned SIF_RANGE = 1, SIF_PAGE = 2, SIF_POS = 4, SIF_TRACKPOS = 16, SIF_ALL = 23;
inline constexpr unsigned WSB_PROP_HSTYLE = 0x0200, WSB_PROP_VSTYLE = 0x0100;
inline constexpr int FSB_REGULAR_MODE = 0, FSB_ENCARTA_MODE = 1, FSB_FLAT_MODE = 2;

/// Non-zero when the window exists.
PAVANE_API int InitializeFlatSB(HWND window);
PAVANE_API int UninitializeFlatSB(HWND window);
/// Non-zero for a bar that exists; the look stays that of the desktop.
PAVANE_API int FlatSB_SetScrollProp(HWND window, unsigned property, int value, int redraw);
PAVANE_API int FlatSB_GetScrollRange(HWND window, int bar, int& min, int& max);
PAVANE_API int FlatSB_SetScrollRange(HWND window, int bar, int min, int max, int redraw);
/// The position in force afterwards. A page below 1 counts as 1.
PAVANE_API int FlatSB_SetScrollInfo(HWND window, int bar, const SCROLLINFO& info, int redraw);
/// Fills what `info.fMask` asks for; non-zero when the bar exists.
PAVANE_API int FlatSB_GetScrollInfo(HWND window, int bar, SCROLLINFO& info);
/// The position before.
PAVANE_API int FlatSB_SetScrollPos(HWND window, int bar, int position, int redraw);
PAVANE_API int FlatSB_GetScrollPos(HWND window, int bar);
PAVANE_API int FlatSB_ShowScrollBar(HWND window, int bar, int show);

}  // namespace pavane
