#pragma once

#include "platform/api.h"
#include "platform/types.h"

#include <string_view>

namespace pavane
{

/// A text with small letters in place of capitals (Latin, Greek, Cyrillic), as long as it was in
/// bytes; what is no UTF-8 stays.
PAVANE_API CString smallLetters(std::string_view text);

}  // namespace pavane
