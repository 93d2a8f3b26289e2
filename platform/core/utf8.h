#pragma once

#include <string>
#include <string_view>

namespace pavane
{

/// `text` with every byte that is no part of UTF-8 replaced by U+FFFD, as RFC 3629 defines it.
std::string validUtf8(std::string_view text);

/// The character that begins `text`, which is not empty, and takes it off; U+FFFD for a byte that
/// is no part of UTF-8.
char32_t nextCharacter(std::string_view& text);

}  // namespace pavane
