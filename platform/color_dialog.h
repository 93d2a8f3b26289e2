#pragma once

#include "platform/types.h"

namespace pavane
{

class CWnd;

/// Asks for a colour; `color` comes in as the first suggestion and goes out as the choice. Non-zero
/// when the user chose.
PAVANE_API int AskColor(COLORREF& color, const CString& title, CWnd* owner = nullptr);

/// For tests: answers colour dialogs without showing them; same meaning of `color` and result. Null
/// shows them again.
using ColorDialogAnswer = int (*)(COLORREF& color);
PAVANE_API ColorDialogAnswer SetColorDialogAnswer(ColorDialogAnswer answer);

}  // namespace pavane
