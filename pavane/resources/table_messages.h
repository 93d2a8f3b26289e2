#pragma once

#include "platform/types.h"

namespace pavane
{

// Texts of tables that the user sees; names of files are put behind them.
inline constexpr const char* saveTableTitle = "Save as";
inline constexpr const char* clipboardRefusesText = "The clipboard does not take the text.";
inline constexpr const char* partIsLeft =
    "The table could not be written whole. What was written is in: ";
inline constexpr const char* oldFileStays =
    "The table could not be written whole. The file stays as it was; what was written is in: ";

}  // namespace pavane
