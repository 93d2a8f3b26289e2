#include "pavane/windows/controls/control_texts.h"

#include "pavane/axes/axis_titles.h"
#include "pavane/axes/maps/map_unit.h"
#include "pavane/axes/ranges/decimal_power.h"
#include "tessel/value_text.h"

#include <algorithm>
#include <cmath>

namespace pavane
{

namespace
{

constexpr int greatestPrefix = 30;

char lower(char c) { return c >= 'A' && c <= 'Z' ? static_cast<char>(c - 'A' + 'a') : c; }

bool continues(const CString& text, int at)
{
    return (text[static_cast<std::size_t>(at)] & 0xC0) == 0x80;
}

CString whole(double value) { return valToStr(std::floor(value + 0.5)); }

}  // namespace

CString valueWithUnit(double value, const CString& unit, int digits)
{
    const int shown = std::clamp(digits, 1, 17);
    if (unit.empty())
        return valToStr(value, shown);
    int power = 0;
    if (std::isfinite(value) && value != 0 && takesPrefix(unit)) {
        const int first = decimalPower(value, 1, shown - 1);  // rounding may carry
        power = std::clamp((first + (first < 0 ? -2 : 0)) / 3 * 3, -greatestPrefix, greatestPrefix);
    }
    const double scaled = value / powerOfTen(power);
    // "250 nJy" in two digits too: an exponent beside a prefix reads badly
    const bool isPlain = power != 0 && std::fabs(scaled) >= powerOfTen(shown - 1);
    const CString number = isPlain ? nValToStr(scaled, 0) : valToStr(scaled, shown);
    return number + ' ' + (power == 3 ? CString("k") : prefixText(power)) + unit;
}

CString timeLeftText(double seconds, double fraction)
{
    constexpr double leastSeconds = 2, leastFraction = 0.01;
    if (!(seconds >= leastSeconds) || !(fraction >= leastFraction) || !(fraction < 1))
        return {};
    const double left = seconds * (1 - fraction) / fraction;
    if (!(left < 100.0 * 3600))
        return {};
    if (left < 60)
        return whole(std::max(1.0, left < 10 ? left : std::ceil(left / 5) * 5)) + " s left";
    if (left < 3600)
        return whole(left / 60) + " min left";
    const double minutes = std::floor(left / 600 + 0.5) * 10;
    const double hours = std::floor(minutes / 60);
    const CString rest = minutes > hours * 60 ? ' ' + whole(minutes - hours * 60) + " min" : "";
    return whole(hours) + " h" + rest + " left";
}

int nextCharacter(const CString& text, int at)
{
    const int end = static_cast<int>(text.size());
    int next = std::clamp(at, 0, end);
    if (next < end)
        ++next;
    while (next < end && continues(text, next))
        ++next;
    return next;
}

int previousCharacter(const CString& text, int at)
{
    int before = std::clamp(at, 0, static_cast<int>(text.size()));
    if (before > 0)
        --before;
    while (before > 0 && continues(text, before))
        --before;
    return before;
}

int findText(const CString& text, const CString& piece, int from)
{
    if (piece.empty() || from < 0 || static_cast<std::size_t>(from) > text.size())
        return -1;
    const auto found = std::search(text.begin() + from, text.end(), piece.begin(), piece.end(),
                                   [](char a, char b) { return lower(a) == lower(b); });
    return found == text.end() ? -1 : static_cast<int>(found - text.begin());
}

}  // namespace pavane
