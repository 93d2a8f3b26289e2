#pragma once

#include "platform/types.h"

namespace pavane
{

/// The host's profile: texts by section and entry, kept in one small file of lines "[section]" and
/// "entry=text". Names do not tell upper from lower case (ASCII); a text is kept letter for letter
/// but for line breaks, which are refused. Lines that are not understood, and comments, stay where
/// they are.

/// Names the file; "" goes back to the default: $XDG_CONFIG_HOME/<program>/<program>.ini, below
/// ~/.config when that is not set. `program` is made of letters, digits, '-' and '_'.
PAVANE_API void SetProfileFile(const CString& file);
PAVANE_API void SetProfileProgram(const CString& program);
PAVANE_API CString GetProfileFile();
/// The text, or `fallback` when there is none.
PAVANE_API CString GetProfileString(const CString& section, const CString& entry,
                                    const CString& fallback = CString());
PAVANE_API int GetProfileInt(const CString& section, const CString& entry, int fallback);
/// Written at once, whole or not at all; 0 when that is not possible.
PAVANE_API int WriteProfileString(const CString& section, const CString& entry,
                                  const CString& text);
PAVANE_API int WriteProfileInt(const CString& section, const CString& entry, int value);

}  // namespace pavane
