// The style of a map display as a line of text. A style comes from a file that anyone may have
// written to: what is not understood changes nothing.
#include "pavane/axes/maps/MapDisplay.h"
#include "tessel/value_text.h"

#include <algorithm>
#include <array>
#include <charconv>
#include <string_view>

namespace pavane
{

namespace
{

constexpr std::size_t mostColours = 226;
constexpr std::size_t digitsOfColour = 6;

CString colourText(COLORREF color)
{
    constexpr char digits[] = "0123456789abcdef";
    CString text;
    for (const int part : {GetRValue(color), GetGValue(color), GetBValue(color)}) {
        text += digits[part / 16];
        text += digits[part % 16];
    }
    return text;
}

int readColour(std::string_view text, COLORREF& color)
{
    unsigned value = 0;
    const char* const end = text.data() + text.size();
    if (text.size() != digitsOfColour)
        return 0;
    const auto [stop, fault] = std::from_chars(text.data(), end, value, 16);
    if (fault != std::errc() || stop != end)
        return 0;
    color = RGB(value >> 16, value >> 8 & 0xFF, value & 0xFF);
    return 1;
}

/// Colours one behind another.
int readColours(std::string_view text, std::vector<COLORREF>& colours)
{
    if (text.size() % digitsOfColour != 0 || text.size() / digitsOfColour > mostColours)
        return 0;
    std::vector<COLORREF> read;
    for (; !text.empty(); text.remove_prefix(digitsOfColour))
        if (COLORREF color = 0; readColour(text.substr(0, digitsOfColour), color))
            read.push_back(color);
        else
            return 0;
    colours = std::move(read);
    return 1;
}

/// A whole number from 0 to below `count`.
template <typename Value>
int readChoice(std::string_view text, int count, Value& value)
{
    int number = 0;
    if (!stoval(text, number) || number < 0 || number >= count)
        return 0;
    value = static_cast<Value>(number);
    return 1;
}

template <typename Value>
CString choiceText(Value value)
{
    return std::to_string(static_cast<int>(value));
}

int readPlay(std::string_view text, AColorPlay& play)
{
    std::array<double, 4> values{};
    for (std::size_t i = 0; i < values.size(); ++i) {
        const std::size_t comma = text.find(',');
        if (!stoval(text.substr(0, comma), values[i]) ||
            (comma == std::string_view::npos) != (i + 1 == values.size()))
            return 0;
        text.remove_prefix(comma == std::string_view::npos ? text.size() : comma + 1);
    }
    const AColorPlay read{values[0], values[1], values[2], values[3] != 0};
    if (!read.isUsable())
        return 0;
    play = read;
    return 1;
}

int readLevels(const CString& text, ContourLevels& levels)
{
    if (text == "auto")
        return levels = {}, 1;
    if (text == "none")
        return levels = {LevelUnit::absolute, {}}, 1;
    return levels.read(text);
}

int takeField(std::string_view key, const CString& value, MapDisplay& display)
{
    constexpr int kinds = static_cast<int>(MapScaleKind::equalized) + 1;
    if (key == "scale")
        return readChoice(value, kinds, display.colours.scale);
    if (key == "play")
        return readPlay(value, display.colours.play);
    if (key == "colours")
        return readColours(value, display.colours.colours);
    if (key == "levels")
        return readLevels(value, display.contours.levels);
    if (key == "line")
        return value == "auto" ? (display.contours.color = CLR_INVALID, 1)
                               : readColour(value, display.contours.color);
    if (key == "width")
        return readChoice(value, widestContour + 1, display.contours.width);
    if (key == "beam")
        return readChoice(value, beamFills, display.beamLook.fill);
    if (key == "corner")
        return readChoice(value, beamCorners, display.beamLook.corner);
    if (key == "gridx")
        return readChoice(value, 2, display.axes.gridX);
    if (key == "gridy")
        return readChoice(value, 2, display.axes.gridY);
    if (key == "inside")
        return readChoice(value, 2, display.axes.ticksInside);
    if (key == "minor")
        return readChoice(value, 2, display.axes.minorTicks);
    return 0;
}

}  // namespace

CString MapDisplay::styleText() const
{
    const AColorPlay& play = colours.play;
    CString own;
    for (const COLORREF color : colours.colours)
        own += colourText(color);
    const CString line =
        contours.color == CLR_INVALID ? CString("auto") : colourText(contours.color);
    return "scale=" + choiceText(colours.scale) + ";play=" + valToStr(play.contrast) + ',' +
           valToStr(play.bias) + ',' + valToStr(play.gamma) + ',' + choiceText(play.invert != 0) +
           ";colours=" + own + ";levels=" + contours.levels.text() + ";line=" + line +
           ";width=" + choiceText(contours.width) + ";beam=" + choiceText(beamLook.fill) +
           ";corner=" + choiceText(beamLook.corner) + ";gridx=" + choiceText(axes.gridX) +
           ";gridy=" + choiceText(axes.gridY) + ";inside=" + choiceText(axes.ticksInside) +
           ";minor=" + choiceText(axes.minorTicks);
}

int MapDisplay::readStyle(const CString& text)
{
    std::string_view rest = text;
    int taken = 0;
    while (!rest.empty()) {
        const std::size_t end = std::min(rest.find(';'), rest.size());
        const std::string_view field = rest.substr(0, end);
        const std::size_t sign = field.find('=');
        if (sign != std::string_view::npos &&
            takeField(field.substr(0, sign), CString(field.substr(sign + 1)), *this))
            taken = 1;
        rest.remove_prefix(std::min(end + 1, rest.size()));
    }
    return taken;
}

}  // namespace pavane
