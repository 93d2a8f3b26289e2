#pragma once

#include <string>
#include <string_view>

namespace pavane
{

/// Bytes as a line of letters (RFC 4648), with '=' at the end.
std::string base64Text(std::string_view bytes);
/// Non-zero when the text is wholly such a line; else `bytes` is left alone.
int readBase64(std::string_view text, std::string& bytes);

}  // namespace pavane
