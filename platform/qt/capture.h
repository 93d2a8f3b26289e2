#pragma once

#include "platform/messages.h"

namespace pavane
{

/// The window that gets the mouse's messages, 0 for none.
HWND captureWindow();
/// How often the capture was taken away from outside; a waiting loop compares.
unsigned captureCancels();

}  // namespace pavane
