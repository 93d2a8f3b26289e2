#pragma once

#include "platform/messages.h"

namespace pavane
{

class CBitmap;

/// Put something on the clipboard; 0 when it refuses.
PAVANE_API int SetClipboardText(const CString& text);
PAVANE_API int SetClipboardBitmap(const CBitmap& bitmap);
/// 0 when there is no text.
PAVANE_API int GetClipboardText(CString& text);
/// Size of the picture on the clipboard, 0 x 0 when there is none.
PAVANE_API CSize GetClipboardBitmapSize();
/// For tests: non-zero makes every call above fail.
PAVANE_API void SetClipboardRefusal(int on);

}  // namespace pavane
