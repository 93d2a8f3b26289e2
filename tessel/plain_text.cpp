#include "tessel/plain_text.h"

#include <algorithm>

namespace pavane
{

namespace
{

constexpr char32_t none = 0xffffffff;

/// The character that begins `text`, taken off it; `none` for a byte that begins none.
char32_t takeCharacter(std::string_view& text)
{
    const auto lead = static_cast<unsigned char>(text[0]);
    const std::size_t length = lead < 0x80   ? 1
                               : lead < 0xc0 ? 0
                               : lead < 0xe0 ? 2
                               : lead < 0xf0 ? 3
                                             : 4;
    constexpr char32_t least[] = {0, 0, 0x80, 0x800, 0x10000};
    char32_t character = length > 1 ? lead & (0x7fu >> length) : lead;
    std::size_t taken = 1;
    for (; taken < std::min(length, text.size()); ++taken) {
        const auto byte = static_cast<unsigned char>(text[taken]);
        if ((byte & 0xc0) != 0x80)
            break;
        character = character << 6 | (byte & 0x3fu);
    }
    if (length == 0 || taken < length || character < least[length] || character > 0x10ffff ||
        (character >= 0xd800 && character <= 0xdfff)) {
        text.remove_prefix(1);
        return none;
    }
    text.remove_prefix(length);
    return character;
}

/// How many bytes of `text` begin a character, at least 1; `whole` when they are one.
std::size_t characterStart(std::string_view text, bool& whole)
{
    const auto byte = [&](std::size_t i) { return static_cast<unsigned char>(text[i]); };
    const unsigned lead = byte(0);
    const std::size_t length = lead < 0x80                   ? 1
                               : lead >= 0xc2 && lead < 0xe0 ? 2
                               : lead >= 0xe0 && lead < 0xf0 ? 3
                               : lead >= 0xf0 && lead < 0xf5 ? 4
                                                             : 0;
    // the second byte decides whether it is too long a form, a surrogate, or beyond the last one
    const unsigned low = lead == 0xe0 ? 0xa0 : lead == 0xf0 ? 0x90 : 0x80;
    const unsigned high = lead == 0xed ? 0x9f : lead == 0xf4 ? 0x8f : 0xbf;
    std::size_t taken = 1;
    for (; taken < std::min(length, text.size()); ++taken)
        if (byte(taken) < (taken == 1 ? low : 0x80) || byte(taken) > (taken == 1 ? high : 0xbf))
            break;
    whole = taken == length;
    return taken;
}

int isPlain(char32_t c)
{
    const auto within = [c](char32_t low, char32_t high) { return c >= low && c <= high; };
    return c >= ' ' && c != none && !within(0x7f, 0x9f) && !within(0x200e, 0x200f) &&
           !within(0x2028, 0x202e) && !within(0x2066, 0x2069) && c != 0x61c && c != 0xfeff;
}

}  // namespace

std::string plainText(std::string_view text)
{
    std::string plain;
    while (!text.empty()) {
        const std::string_view before = text;
        const char32_t character = takeCharacter(text);
        plain += isPlain(character) ? before.substr(0, before.size() - text.size()) : "?";
    }
    return plain;
}

std::string validText(std::string_view text)
{
    std::string valid;
    valid.reserve(text.size());
    while (!text.empty()) {
        bool whole = false;
        const std::size_t length = characterStart(text, whole);
        valid += whole ? text.substr(0, length) : "\xEF\xBF\xBD";
        text.remove_prefix(length);
    }
    return valid;
}

}  // namespace pavane
