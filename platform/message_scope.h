#pragma once

#include "platform/api.h"

namespace pavane
{

class CWnd;

/// Hands out what waits (input, posted messages, paints, timers) for so many milliseconds at most,
/// and returns at once when nothing is left. With `only`, a top-level window, nobody else hears or
/// paints: input for others is lost, a closing is refused, and the rest waits until later; for work
/// whose data the other windows share. 0 when the program is to end; its main loop still sees that.
PAVANE_API int HandOutMessages(int milliseconds, CWnd* only = nullptr);

}  // namespace pavane
