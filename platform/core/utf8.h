#pragma once

#include <string>
#include <string_view>

namespace pavane
{

/// `text` with every byte that is no part of UTF-8 replaced by U+FFFD, as RFC 3629 defines it.
std::string validUtf8(std::string_view text);

}  // namespace pavane
