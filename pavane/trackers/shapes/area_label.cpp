#include "pavane/trackers/shapes/area_label.h"

#include "tessel/plain_text.h"
#include "tessel/trimmed.h"

#include <algorithm>
#include <cctype>

namespace pavane
{

namespace
{

constexpr int colourDigits = 6;

/// The names that region files and their readers share.
constexpr struct {
    std::string_view name;
    std::int32_t colour;
} colourNames[] = {
    {"black", 0x000000},  {"white", 0xFFFFFF}, {"red", 0xFF0000},     {"green", 0x00FF00},
    {"blue", 0x0000FF},   {"cyan", 0x00FFFF},  {"magenta", 0xFF00FF}, {"yellow", 0xFFFF00},
    {"orange", 0xFFA500}, {"pink", 0xFFC0CB},  {"purple", 0x800080},  {"brown", 0xA52A2A},
    {"grey", 0x808080},   {"gray", 0x808080},  {"salmon", 0xFA8072},  {"violet", 0xEE82EE}};

int digitOf(char c)
{
    constexpr std::string_view digits = "0123456789abcdef";
    const std::size_t at =
        digits.find(static_cast<char>(std::tolower(static_cast<unsigned char>(c))));
    return at == digits.npos ? -1 : static_cast<int>(at);
}

int isSame(std::string_view a, std::string_view b)
{
    return std::ranges::equal(a, b, [](char x, char y) {
        return std::tolower(static_cast<unsigned char>(x)) ==
               std::tolower(static_cast<unsigned char>(y));
    });
}

}  // namespace

std::string fittingName(std::string_view text)
{
    // what a longer one loses is cut before the rest is looked at: files may hold any length
    text = trimmed(text, whiteSpace);
    std::string name = validText(text.substr(0, 4 * longestAreaName));
    for (char& c : name)
        if (static_cast<unsigned char>(c) < 0x20 || c == 0x7F)
            c = ' ';
    name = std::string(trimmed(name, whiteSpace));
    if (name.size() > longestAreaName) {
        std::size_t end = longestAreaName;
        while (end > 0 && (static_cast<unsigned char>(name[end]) & 0xC0) == 0x80)
            --end;
        name = std::string(trimmed(std::string_view(name).substr(0, end), whiteSpace));
    }
    return name;
}

CString shownName(const AreaLabel& label, int i)
{
    return label.name.empty() ? CString("Area ").append(std::to_string(i + 1)) : label.name;
}

std::string areaColourText(std::int32_t colour)
{
    if (colour < 0)
        return {};
    std::string text(1 + colourDigits, '#');
    for (std::size_t i = colourDigits; i > 0; --i, colour >>= 4)
        text[i] = "0123456789abcdef"[colour & 15];
    return text;
}

int areaColourOf(std::string_view text, std::int32_t& colour)
{
    for (const auto& known : colourNames)
        if (isSame(text, known.name))
            return colour = known.colour, 1;
    const int isShort = text.size() == 4;
    if (text.empty() || text[0] != '#' || (!isShort && text.size() != 1 + colourDigits))
        return 0;
    std::int32_t read = 0;
    for (const char c : text.substr(1)) {
        const int digit = digitOf(c);
        if (digit < 0)
            return 0;
        read = isShort ? read << 8 | digit * 0x11 : read << 4 | digit;
    }
    colour = read;
    return 1;
}

}  // namespace pavane
