#pragma once

#include "platform/types.h"

namespace pavane
{

class CWnd;

inline constexpr unsigned OFN_OVERWRITEPROMPT = 0x0002, OFN_HIDEREADONLY = 0x0004,
                          OFN_FILEMUSTEXIST = 0x1000;

/// Asks for a file name. `name` comes in as the first suggestion and goes out as the choice;
/// `filter` is a list "text|pattern|text|pattern", a pattern "*.a;*.b". A name without an extension
/// gets that of the chosen type, or `defaultExt` ("uvx", ".uvx" or "*.uvx") when the type has none
/// of its own. With `open` zero it asks before a file is replaced. Returns non-zero when the user
/// chose.
PAVANE_API int fnFileDialog1(CString& name, const CString& filter, const CString& title, int open,
                             const CString& defaultExt, unsigned flags, CWnd* owner = nullptr);

/// For tests: answers file dialogs without showing them; same meaning of `name` and result. Null
/// shows them again.
using FileDialogAnswer = int (*)(CString& name, const CString& filter, int open);
PAVANE_API FileDialogAnswer SetFileDialogAnswer(FileDialogAnswer answer);

}  // namespace pavane
