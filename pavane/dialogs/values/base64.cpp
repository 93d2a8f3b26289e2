#include "pavane/dialogs/values/base64.h"

#include <cstdint>

namespace pavane
{

namespace
{

constexpr std::string_view letters =
    "ABCDEFGHIJKLMNOPQRSTUVWXYZabcdefghijklmnopqrstuvwxyz0123456789+/";

}  // namespace

std::string base64Text(std::string_view bytes)
{
    std::string text;
    for (std::size_t at = 0; at < bytes.size(); at += 3) {
        const std::size_t count = bytes.size() - at < 3 ? bytes.size() - at : 3;
        std::uint32_t bits = 0;
        for (std::size_t i = 0; i < 3; ++i)
            bits = bits << 8 | (i < count ? static_cast<std::uint8_t>(bytes[at + i]) : 0U);
        for (std::size_t i = 0; i < 4; ++i)
            text += i <= count ? letters[bits >> (18 - 6 * i) & 63U] : '=';
    }
    return text;
}

int readBase64(std::string_view text, std::string& bytes)
{
    if (text.size() % 4 != 0)
        return 0;
    std::string read;
    for (std::size_t at = 0; at < text.size(); at += 4) {
        std::uint32_t bits = 0;
        std::size_t filled = 0;
        for (std::size_t i = 0; i < 4; ++i) {
            const std::size_t place = letters.find(text[at + i]);
            const bool isEnd = text[at + i] == '=' && i >= 2 && at + 4 == text.size();
            // behind the first '=' there are no letters
            if (place == std::string_view::npos ? !isEnd : filled < i)
                return 0;
            filled += place != std::string_view::npos;
            bits = bits << 6 |
                   (place == std::string_view::npos ? 0U : static_cast<std::uint32_t>(place));
        }
        for (std::size_t i = 0; i + 1 < filled; ++i)
            read += static_cast<char>(bits >> (16 - 8 * i) & 255U);
    }
    bytes = std::move(read);
    return 1;
}

}  // namespace pavane
