#pragma once

#include "platform/api.h"

namespace pavane
{

inline constexpr int SM_CXSCREEN = 0, SM_CYSCREEN = 1, SM_CXVSCROLL = 2, SM_CYHSCROLL = 3,
                     SM_CXBORDER = 5, SM_CYBORDER = 6, SM_CYVSCROLL = 20, SM_CXHSCROLL = 21,
                     SM_CXDOUBLECLK = 36, SM_CYDOUBLECLK = 37, SM_CXEDGE = 45, SM_CYEDGE = 46,
                     SM_CXDRAG = 68, SM_CYDRAG = 69;

/// A size of the desktop in logical pixels: the thickness that scroll bars of windows really have
/// (SM_CXVSCROLL, SM_CYHSCROLL; arrows count as long as bars are thick), the borders of WS_BORDER
/// and WS_EX_CLIENTEDGE, how far the pointer may move in a click, the main screen. 0 for others.
PAVANE_API int GetSystemMetrics(int index);

}  // namespace pavane
