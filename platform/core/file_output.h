#pragma once

#include "platform/types.h"

#include <string_view>

namespace pavane
{

/// Writes a file whole or not at all: to a temporary name beside it first. Non-zero on success,
/// else 0 and `error` is one line on what went wrong.
int writeWhole(const CString& file, std::string_view bytes, CString& error);

}  // namespace pavane
