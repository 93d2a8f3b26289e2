#pragma once

#include "platform/types.h"

namespace pavane
{

/// Reads a text that is wholly a decimal number without a fraction, with a sign and blanks around
/// it at most; one beyond an int is the nearest int. Non-zero on success, else `value` stays.
int readWholeNumber(const CString& text, int& value);

}  // namespace pavane
