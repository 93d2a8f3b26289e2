#pragma once

#include "platform/cursors.h"
#include "platform/messages.h"

namespace pavane
{

/// The pointer is over this window, or it has the capture: SetCursor means it.
void pointerIsOver(HWND hwnd);
/// Frees the pictures, before the application object goes.
void forgetCursors();

}  // namespace pavane
