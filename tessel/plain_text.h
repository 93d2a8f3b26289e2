#pragma once

#include "tessel/api.h"

#include <string>
#include <string_view>

namespace pavane
{

/// Foreign text for a terminal or a line of a file: control characters, line ends among them,
/// marks that turn the direction of writing, and bytes that are no part of UTF-8 become '?'.
PAVANE_API std::string plainText(std::string_view text);

/// The text with U+FFFD in the place of what is no UTF-8: once for each start of a character that
/// is not completed, once for each other byte, as readers that mend texts do.
PAVANE_API std::string validText(std::string_view text);

}  // namespace pavane
