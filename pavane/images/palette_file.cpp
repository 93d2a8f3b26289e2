#include "pavane/images/palette_file.h"

#include <algorithm>
#include <charconv>
#include <string>

namespace pavane
{

namespace
{

constexpr PALETTEENTRY working[workingColors] = {
    {255, 255, 255, 0}, {0, 0, 0, 0},     {128, 128, 128, 0}, {192, 192, 192, 0}, {255, 255, 0, 0},
    {0, 255, 255, 0},   {255, 0, 255, 0}, {255, 0, 0, 0},     {0, 255, 0, 0},     {0, 0, 255, 0}};

// The next line without its end, CR LF or LF.
std::string_view takeLine(std::string_view& text)
{
    const std::size_t end = std::min(text.find('\n'), text.size());
    std::string_view line = text.substr(0, end);
    text.remove_prefix(std::min(end + 1, text.size()));
    while (!line.empty() && (line.back() == '\r' || line.back() == ' '))
        line.remove_suffix(1);
    return line;
}

// A whole number from 0 to `most` at the start of the line, blanks before it skipped.
int takeNumber(std::string_view& line, int most, int& value)
{
    line.remove_prefix(std::min(line.find_first_not_of(" \t"), line.size()));
    const auto result = std::from_chars(line.data(), line.data() + line.size(), value);
    if (result.ec != std::errc() || value < 0 || value > most)
        return 0;
    line.remove_prefix(static_cast<std::size_t>(result.ptr - line.data()));
    return 1;
}

int takeColor(std::string_view line, PALETTEENTRY& color)
{
    int parts[3];
    for (int& part : parts)
        if (!takeNumber(line, 255, part))
            return 0;
    color = {static_cast<unsigned char>(parts[0]), static_cast<unsigned char>(parts[1]),
             static_cast<unsigned char>(parts[2]), 0};
    return line.empty();
}

}  // namespace

int parsePalette(std::string_view text, PALETTEENTRY* colors)
{
    if (takeLine(text) != "JASC-PAL" || takeLine(text) != "0100")
        return 0;
    int count = 0;
    std::string_view countLine = takeLine(text);
    if (!takeNumber(countLine, paletteColors, count) || !countLine.empty() || count < 1)
        return 0;
    PALETTEENTRY read[paletteColors];
    for (int i = 0; i < count; ++i)
        if (!takeColor(takeLine(text), read[i]))
            return 0;
    const int mapColors = std::min(count, firstWorkingColor);
    for (int i = 0; i < firstWorkingColor; ++i)
        colors[i] = read[i * mapColors / firstWorkingColor];
    std::copy_n(working, workingColors, colors + firstWorkingColor);
    std::fill(colors + firstWorkingColor + workingColors, colors + paletteColors, PALETTEENTRY{});
    return 1;
}

CString paletteText(const COLORREF* colours, int count)
{
    if (count < 1 || count > paletteColors)
        return {};
    CString text = "JASC-PAL\n0100\n" + std::to_string(count) + '\n';
    for (int i = 0; i < count; ++i)
        text += std::to_string(GetRValue(colours[i])) + ' ' +
                std::to_string(GetGValue(colours[i])) + ' ' +
                std::to_string(GetBValue(colours[i])) + '\n';
    return text;
}

}  // namespace pavane
