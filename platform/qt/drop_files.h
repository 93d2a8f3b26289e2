#pragma once

#include "platform/messages.h"

class QDropEvent;
class QWidget;

namespace pavane
{

/// Takes or refuses files that are dragged over a window's widget; when they are dropped, the
/// window gets WM_DROPFILES after the event.
void filesDragged(QWidget& widget, HWND hwnd, QDropEvent& e);

}  // namespace pavane
