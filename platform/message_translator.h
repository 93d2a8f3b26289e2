#pragma once

#include "platform/messages.h"

namespace pavane
{

// Presses beside the client area and keys with Alt; our windows send the plain messages for them,
// messages of a host may have these.
inline constexpr unsigned WM_NCLBUTTONDOWN = 0x00A1, WM_NCRBUTTONDOWN = 0x00A4,
                          WM_NCMBUTTONDOWN = 0x00A7, WM_SYSKEYDOWN = 0x0104;

/// Sees a message before its window; non-zero swallows it.
using MessageTranslator = int (*)(const MSG& message);

/// Lets `translator` see every message of the program before its window: each input event once, for
/// dialogs, menus and widgets of the toolkit too (`hwnd` is 0 where no window of ours is around),
/// and each posted message that the program's own loop hands out. Key short cuts are not run when
/// it swallows their key. It comes before CWnd::PreTranslateMessage. Null for none; returns the one
/// before, which a new one may call.
PAVANE_API MessageTranslator SetMessageTranslator(MessageTranslator translator);

/// Offers a message to the translator; for loops of a host's own that dispatch posted messages.
/// Non-zero when it was swallowed.
PAVANE_API int OfferToTranslator(const MSG& message);

}  // namespace pavane
