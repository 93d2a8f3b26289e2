#pragma once

#include "platform/messages.h"

namespace pavane
{

/// The window that gets the mouse's messages, 0 for none.
HWND captureWindow();
/// How often a window lost the capture; a loop that waits for its messages must not go on waiting.
unsigned captureChanges();

}  // namespace pavane
