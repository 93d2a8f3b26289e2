#pragma once

#include "platform/geometry.h"
#include "platform/print_settings.h"

namespace pavane
{

// What a command line says of printing. Non-zero on success; else 0, nothing is changed and `error`
// is one line.

/// Pages "2", "2-5" or "2-", which is to the end and gives a `to` of 0. No signs, no blanks, none
/// below 1, no range that runs backwards.
PAVANE_API int readPages(const CString& text, CPrintSettings& settings, CString& error);
/// "A4", "Letter" ... or "WxH" in millimetres.
PAVANE_API int readPaperName(const CString& text, CPrintSettings& settings, CString& error);
/// Left, top, right and bottom in millimetres, "20,10,10,10", kept in hundredths. Whether they fit
/// the paper is told by checkMargins.
PAVANE_API int readMargins(const CString& text, CRect& margins, CString& error);

}  // namespace pavane
