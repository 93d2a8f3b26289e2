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
