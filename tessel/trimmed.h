#pragma once

#include <string_view>

namespace pavane
{

/// The text without the characters of `dropped` at both ends: blanks of a header card are spaces
/// alone, those of a line that a user typed are tabs and ends of lines as well. A view of `text`.
inline std::string_view trimmed(std::string_view text, std::string_view dropped)
{
    const std::size_t first = text.find_first_not_of(dropped);
    if (first == std::string_view::npos)
        return {};
    return text.substr(first, text.find_last_not_of(dropped) - first + 1);
}

/// What parts the words of a line: space, tab, ends of lines.
inline constexpr std::string_view whiteSpace = " \t\r\n";

}  // namespace pavane
