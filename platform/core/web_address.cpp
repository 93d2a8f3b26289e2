#include "platform/core/utf8.h"
#include "platform/web_handler.h"

#include <string_view>

namespace pavane
{

namespace
{

constexpr std::size_t mostBytes = 8192;

/// Whether `text` begins with `start`, which is in small letters.
bool beginsWith(std::string_view text, std::string_view start)
{
    for (std::size_t i = 0; i < start.size(); ++i) {
        const char c = i < text.size() ? text[i] : '\0';
        if ((c >= 'A' && c <= 'Z' ? static_cast<char>(c - 'A' + 'a') : c) != start[i])
            return false;
    }
    return true;
}

/// Of a known scheme, with something behind it.
bool isKnown(std::string_view address)
{
    for (const std::string_view start : {"http://", "https://", "ftp://", "mailto:"}) {
        if (beginsWith(address, start))
            return address.size() > start.size();
    }
    return false;
}

/// Blanks of all kinds and quotes end an address in many programs.
bool endsAddress(char32_t c)
{
    return c == ' ' || c == '"' || c == '\'' || c == '`' || c == 0xA0 || c == 0x1680 ||
           (c >= 0x2000 && c <= 0x200B) || c == 0x2028 || c == 0x2029 || c == 0x202F ||
           c == 0x205F || c == 0x3000;
}

bool isControl(char32_t c) { return c < 0x20 || (c >= 0x7F && c < 0xA0); }

}  // namespace

CString CheckedWebAddress(const CString& address)
{
    if (address.size() > mostBytes || !isKnown(address))
        return {};
    CString checked;
    for (std::string_view rest = address; !rest.empty();) {
        const std::string_view before = rest;
        const char32_t c = nextCharacter(rest);
        const std::string_view bytes = before.substr(0, before.size() - rest.size());
        if (isControl(c))
            return {};
        constexpr char32_t unreadable = 0xFFFD;
        if (!endsAddress(c) && (c != unreadable || bytes == "\xEF\xBF\xBD")) {
            checked += bytes;
            continue;
        }
        for (const char byte : bytes) {
            constexpr const char* digits = "0123456789ABCDEF";
            checked += {'%', digits[static_cast<unsigned char>(byte) >> 4], digits[byte & 15]};
        }
    }
    return checked;
}

int IsMailAddress(const CString& address) { return beginsWith(address, "mailto:"); }

}  // namespace pavane
