#pragma once

#include "platform/types.h"

namespace pavane
{

inline constexpr unsigned MB_OK = 0x0000, MB_OKCANCEL = 0x0001, MB_YESNOCANCEL = 0x0003,
                          MB_YESNO = 0x0004, MB_ICONERROR = 0x0010, MB_ICONQUESTION = 0x0020,
                          MB_ICONWARNING = 0x0030, MB_ICONINFORMATION = 0x0040,
                          MB_DEFBUTTON2 = 0x0100;  ///< Enter means the second answer
inline constexpr int IDOK = 1, IDCANCEL = 2, IDYES = 6, IDNO = 7;

/// Shows a message to the user and returns the answer (IDOK ...).
using MessageFunction = int (*)(const CString& text, unsigned type);

/// Replaces the function that shows messages; null brings the first one back: a box in front of the
/// active window when the platform was started for windows, else a line to standard error, answered
/// with IDOK. Returns the function in force before.
PAVANE_API MessageFunction SetMessageFunction(MessageFunction function);

/// Everything that a user must know goes through here.
PAVANE_API int AfxMessageBox(const CString& text, unsigned type = MB_OK);

}  // namespace pavane
