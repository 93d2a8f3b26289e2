#pragma once

#include "platform/api.h"

#include <string>
#include <string_view>

namespace pavane
{

/// `text` with the step that it is about ("Move of Area 3"), in small letters, before `end`, where
/// its key begins.
PAVANE_API std::string withStep(std::string_view text, std::string_view end, std::string_view step);

/// The same for a line of a menu, whose key begins at a tab: "Undo\tCtrl+Z" becomes "Undo move of
/// Area 3\tCtrl+Z". Control characters in the name of the step become blanks, and '&' stays one.
PAVANE_API std::string menuTextOfStep(std::string_view text, std::string_view step);

}  // namespace pavane
