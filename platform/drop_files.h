#pragma once

#include "platform/messages.h"

#include <vector>

namespace pavane
{

class CWnd;

/// Files were dropped on the client area; `wParam` is MK_SHIFT when that key was held, else 0,
/// `lParam` is for DroppedFiles. It comes when the drag has
/// ended: dialogs may be shown.
inline constexpr unsigned WM_DROPFILES = 0x0233;

/// Lets files of this machine be dropped on the client area of a window, that of its children
/// included, which then gets WM_DROPFILES; with 0 no more.
PAVANE_API void DragAcceptFiles(CWnd& window, int accept = 1);
/// The full names that came with a WM_DROPFILES, at least one; they are gone after the message.
PAVANE_API const std::vector<CString>& DroppedFiles(LPARAM lParam);

}  // namespace pavane
