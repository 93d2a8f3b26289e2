#pragma once

#include "tessel/api.h"

#include <string>
#include <string_view>

namespace pavane
{

/// Foreign text for a terminal or a line of a file: control characters, line ends among them,
/// marks that turn the direction of writing, and bytes that are no part of UTF-8 become '?'.
PAVANE_API std::string plainText(std::string_view text);

}  // namespace pavane
