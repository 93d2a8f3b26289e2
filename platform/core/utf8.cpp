#include "platform/core/utf8.h"

namespace pavane
{

namespace
{

/// Bytes of the character that begins `text`; 0 when it is malformed, too long or a surrogate.
std::size_t characterLength(std::string_view text)
{
    const auto byte = [&](std::size_t i) {
        return i < text.size() ? static_cast<unsigned char>(text[i]) : 0u;
    };
    const unsigned lead = byte(0);
    const std::size_t length = lead < 0x80                   ? 1
                               : lead >= 0xC2 && lead < 0xE0 ? 2
                               : lead >= 0xE0 && lead < 0xF0 ? 3
                               : lead >= 0xF0 && lead < 0xF5 ? 4
                                                             : 0;
    for (std::size_t i = 1; i < length; ++i) {
        if ((byte(i) & 0xC0) != 0x80)
            return 0;
    }
    const unsigned second = byte(1);
    if ((lead == 0xE0 && second < 0xA0) || (lead == 0xED && second > 0x9F) ||
        (lead == 0xF0 && second < 0x90) || (lead == 0xF4 && second > 0x8F))
        return 0;
    return length;
}

}  // namespace

std::string validUtf8(std::string_view text)
{
    std::string out;
    while (!text.empty()) {
        const std::size_t length = characterLength(text);
        out += length > 0 ? text.substr(0, length) : std::string_view("\xEF\xBF\xBD");
        text.remove_prefix(length > 0 ? length : 1);
    }
    return out;
}

char32_t nextCharacter(std::string_view& text)
{
    const auto lead = static_cast<unsigned char>(text[0]);
    const std::size_t length = lead < 0x80 ? 1 : characterLength(text);
    char32_t c = length == 1 ? lead : U'\uFFFD';
    if (length > 1)
        c = lead & (0x7Fu >> length);
    for (std::size_t i = 1; i < length; ++i)
        c = c << 6 | (static_cast<unsigned char>(text[i]) & 0x3F);
    text.remove_prefix(length > 0 ? length : 1);
    return c;
}

}  // namespace pavane
