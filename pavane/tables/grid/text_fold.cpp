#include "pavane/tables/grid/text_fold.h"

namespace pavane
{

namespace
{

/// The small letter of a capital of two bytes.
unsigned smallLetter(unsigned c)
{
    constexpr unsigned times = 0xD7, noLetter = 0x3A2;
    if ((c >= 0xC0 && c <= 0xDE && c != times) || (c >= 0x391 && c <= 0x3A9 && c != noLetter) ||
        (c >= 0x410 && c <= 0x42F))
        return c + 0x20;
    if (c >= 0x400 && c <= 0x40F)
        return c + 0x50;
    const bool evenCapital =
        (c >= 0x100 && c <= 0x12E) || (c >= 0x132 && c <= 0x136) || (c >= 0x14A && c <= 0x176);
    const bool oddCapital = (c >= 0x139 && c <= 0x147) || (c >= 0x179 && c <= 0x17D);
    return (evenCapital && c % 2 == 0) || (oddCapital && c % 2 == 1) ? c + 1 : c;
}

}  // namespace

CString smallLetters(std::string_view text)
{
    CString folded(text);
    for (std::size_t i = 0; i < folded.size(); ++i) {
        const auto byte = static_cast<unsigned char>(folded[i]);
        if (byte >= 'A' && byte <= 'Z') {
            folded[i] = static_cast<char>(byte + 0x20);
            continue;
        }
        if (byte < 0xC2 || byte > 0xDF || i + 1 == folded.size())
            continue;
        const auto next = static_cast<unsigned char>(folded[i + 1]);
        if ((next & 0xC0) != 0x80)
            continue;
        const unsigned c = smallLetter((byte & 0x1Fu) << 6 | (next & 0x3Fu));
        folded[i] = static_cast<char>(0xC0 | c >> 6);
        folded[++i] = static_cast<char>(0x80 | (c & 0x3F));
    }
    return folded;
}

}  // namespace pavane
