#pragma once

#include "platform/messages.h"

#include <vector>

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

/// One form of what is on the clipboard: its MIME type ("text/plain", "text/csv", "text/html",
/// "application/x-..." for one of our own) and its bytes; texts are UTF-8.
struct ClipboardData {
    CString type;
    CString bytes;
};
/// Puts all forms of one thing on the clipboard in one go, in the place of what was there; others
/// take the form that they know. 0 when it refuses, or when `forms` is empty.
PAVANE_API int SetClipboardData(const std::vector<ClipboardData>& forms);
/// Reads one form; 0, and `bytes` empty, when the clipboard has it not or refuses.
PAVANE_API int GetClipboardData(const CString& type, CString& bytes);
/// Non-zero when there is such a form; nothing is read.
PAVANE_API int IsClipboardFormatAvailable(const CString& type);

/// For tests: non-zero makes every call above fail.
PAVANE_API void SetClipboardRefusal(int on);

}  // namespace pavane
