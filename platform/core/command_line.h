#pragma once

#include "platform/types.h"

#include <string_view>
#include <vector>

namespace pavane
{

/// The words of a line, with quotes and what they protect undone; field codes stay. Non-zero when
/// every quote has its end, else 0 and no words.
int splitCommand(std::string_view line, std::vector<CString>& words);

}  // namespace pavane
