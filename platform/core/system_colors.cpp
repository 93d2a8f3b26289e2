#include "platform/system_colors.h"

#include <algorithm>
#include <cmath>

namespace pavane
{

namespace
{

constexpr double full = 255;

/// `value` (0 to 1) moved by `percent` of the way to 1, or to 0.
double moved(double value, int percent)
{
    const double part = std::clamp(percent, -100, 100) / 100.0;
    return part > 0 ? value + (1 - value) * part : value * (1 + part);
}

double linear(int channel)
{
    // the curve of sRGB
    const double v = channel / full;
    return v <= 0.04045 ? v / 12.92 : std::pow((v + 0.055) / 1.055, 2.4);
}

double relativeLuminance(COLORREF c)
{
    return 0.2126 * linear(GetRValue(c)) + 0.7152 * linear(GetGValue(c)) +
           0.0722 * linear(GetBValue(c));
}

}  // namespace

COLORREF HLS_TRANSFORM(COLORREF color, int luminance, int saturation)
{
    const double rgb[3] = {GetRValue(color) / full, GetGValue(color) / full,
                           GetBValue(color) / full};
    const auto [low, high] = std::minmax({rgb[0], rgb[1], rgb[2]});
    const double middle = (low + high) / 2;
    const double room = 1 - std::fabs(2 * middle - 1);
    const double saturated = room > 0 ? (high - low) / room : 0;
    const double newMiddle = moved(middle, luminance);
    // a grey has no hue that a saturation could bring out
    const double newSaturated = saturated > 0 ? moved(saturated, saturation) : 0;
    const double newRange = newSaturated * (1 - std::fabs(2 * newMiddle - 1));
    int result[3];
    for (int i = 0; i < 3; ++i) {
        // where the channel lies between the least and the greatest is what the hue is
        const double place = high > low ? (rgb[i] - low) / (high - low) : 0.5;
        const double value = newMiddle + newRange * (place - 0.5);
        result[i] = static_cast<int>(std::lround(std::clamp(value, 0.0, 1.0) * full));
    }
    return RGB(result[0], result[1], result[2]);
}

double ContrastRatio(COLORREF a, COLORREF b)
{
    constexpr double glare = 0.05;
    const double first = relativeLuminance(a) + glare;
    const double second = relativeLuminance(b) + glare;
    return std::max(first, second) / std::min(first, second);
}

}  // namespace pavane
