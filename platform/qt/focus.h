#pragma once

#include "platform/messages.h"

#include <QFocusEvent>

namespace pavane
{

/// Sends WM_SETFOCUS or WM_KILLFOCUS for an event; what a popup of the toolkit causes is no change.
void focusChanged(HWND hwnd, QFocusEvent& event);
/// Whether the event tells of a real change of the focus.
bool isFocusChange(const QFocusEvent& event);
/// Moves the focus to the parent when it is in a window that goes away.
void giveFocusAway(HWND hwnd);
/// The toolkit has reported where the focus is.
void settleFocus();

}  // namespace pavane
