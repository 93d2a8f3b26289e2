#include "apps/view/samp/file_url.h"

#include <cctype>
#include <string_view>

namespace pavane
{

namespace
{

constexpr std::string_view hexDigits = "0123456789ABCDEF";

int hexValue(char c)
{
    const std::size_t at =
        hexDigits.find(static_cast<char>(std::toupper(static_cast<unsigned char>(c))));
    return at == std::string_view::npos ? -1 : static_cast<int>(at);
}

}  // namespace

std::string fileUrl(const std::string& file)
{
    constexpr std::string_view plain = "/-_.~+,=@:";
    std::string url = "file://";
    for (const char c : file)
        if (const auto byte = static_cast<unsigned char>(c);
            (byte < 0x80 && std::isalnum(byte)) || plain.find(c) != std::string_view::npos)
            url += c;
        else
            url.append("%").append(1, hexDigits[byte >> 4U]).append(1, hexDigits[byte & 15U]);
    return url;
}

int fileOfUrl(const std::string& url, std::string& file)
{
    std::string_view rest = url;
    for (const std::string_view start : {"file://localhost/", "file:///", "file:/"})
        if (rest.starts_with(start)) {
            rest.remove_prefix(start.size() - 1);
            break;
        }
    if (rest.size() == url.size() || rest.starts_with("//"))
        return 0;
    std::string made;
    for (std::size_t i = 0; i < rest.size(); ++i) {
        if (rest[i] != '%') {
            made += rest[i];
            continue;
        }
        const int high = i + 2 < rest.size() ? hexValue(rest[i + 1]) : -1;
        const int low = i + 2 < rest.size() ? hexValue(rest[i + 2]) : -1;
        if (high < 0 || low < 0 || (high == 0 && low == 0))
            return 0;
        made += static_cast<char>(high * 16 + low);
        i += 2;
    }
    file = made;
    return 1;
}

}  // namespace pavane
