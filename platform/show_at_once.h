#pragma once

#include "platform/CWnd.h"

namespace pavane
{

/// Shows a window and brings its picture onto the screen now, for a program that is about to be
/// busy and to hear no messages: waits until the window system has placed it, at most
/// `milliseconds`. Paints, timers and posted messages run meanwhile, input waits. Non-zero when the
/// window is there.
PAVANE_API int ShowAtOnce(CWnd& window, int milliseconds = 500);

}  // namespace pavane
