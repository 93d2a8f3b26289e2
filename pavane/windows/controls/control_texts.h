#pragma once

#include "platform/types.h"

namespace pavane
{

/// A value with its unit in `digits` significant digits, the unit with the decimal prefix that
/// leaves one to three digits before the point where it takes one: "3.21 mJy/beam", "12 km/s".
PAVANE_API CString valueWithUnit(double value, const CString& unit, int digits = 4);

/// The byte behind and before the character at byte `at` of UTF-8 text; ends at the text's.
PAVANE_API int nextCharacter(const CString& text, int at);
PAVANE_API int previousCharacter(const CString& text, int at);
/// Whether `piece` stands in `text` from byte `from` on, capitals or not (ASCII); its byte, -1 for
/// none.
PAVANE_API int findText(const CString& text, const CString& piece, int from);

}  // namespace pavane
