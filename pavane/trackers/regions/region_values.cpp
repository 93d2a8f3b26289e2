#include "pavane/trackers/regions/region_values.h"

#include "tessel/trimmed.h"
#include "tessel/value_text.h"

#include <algorithm>
#include <array>
#include <cctype>
#include <cmath>

namespace pavane
{

namespace
{

constexpr std::string_view blanks = " \t\r\n\f\v";

char smallLetter(char c) { return c >= 'A' && c <= 'Z' ? static_cast<char>(c - 'A' + 'a') : c; }

/// Up to three fields between separators, each of which ends one field.
struct Fields {
    std::array<std::string_view, 3> text;
    int count = 0;
};

int isField(std::string_view text)
{
    return !text.empty() && std::isdigit(static_cast<unsigned char>(text[0])) &&
           text.find_first_not_of("0123456789.") == std::string_view::npos;
}

/// Fields between two ':' or two '.'; the third of dots keeps its own decimal point.
int splitBy(std::string_view text, char separator, Fields& fields)
{
    for (int i = 0; i < 2; ++i) {
        const std::size_t end = text.find(separator);
        if (end == std::string_view::npos)
            break;
        fields.text[static_cast<std::size_t>(fields.count++)] = text.substr(0, end);
        text.remove_prefix(end + 1);
    }
    fields.text[static_cast<std::size_t>(fields.count++)] = text;
    return fields.count >= 2;
}

/// Fields that end with `unit`, 'm' and 's': "12h34m5.6s", the later ones may be missing.
int splitByUnits(std::string_view text, char unit, Fields& fields)
{
    const char units[] = {unit, 'm', 's'};
    std::size_t next = 0;
    while (!text.empty()) {
        const std::size_t end = text.find_first_not_of("0123456789.");
        if (end == std::string_view::npos)
            return 0;
        while (next < 3 && smallLetter(text[end]) != units[next])
            ++next;
        if (next == 3 || (fields.count == 0 && next != 0))
            return 0;
        while (fields.count < static_cast<int>(next))
            fields.text[static_cast<std::size_t>(fields.count++)] = "0";
        fields.text[static_cast<std::size_t>(fields.count++)] = text.substr(0, end);
        text.remove_prefix(end + 1);
        ++next;
    }
    return fields.count > 0;
}

int joinFields(const Fields& fields, double& whole)
{
    double parts[3] = {0, 0, 0};
    for (int i = 0; i < fields.count; ++i) {
        const std::string_view text = fields.text[static_cast<std::size_t>(i)];
        if (!isField(text) || !readFinite(text, parts[i]) || (i == 1 && !(parts[i] < 60)) ||
            !(parts[2] <= 60))  // some writers round 59.9996 seconds to 60.000
            return 0;
    }
    whole = parts[0] + parts[1] / 60 + parts[2] / 3600;
    return 1;
}

}  // namespace

std::string_view trimmedText(std::string_view text) { return trimmed(text, blanks); }

std::string lowerWord(std::string_view text)
{
    std::string small(text);
    std::transform(small.begin(), small.end(), small.begin(), smallLetter);
    return small;
}

int sameWord(std::string_view a, std::string_view b)
{
    return std::equal(a.begin(), a.end(), b.begin(), b.end(),
                      [](char x, char y) { return smallLetter(x) == smallLetter(y); });
}

int readFinite(std::string_view text, double& value)
{
    double read = 0;
    if (!stoval(text, read) || !std::isfinite(read))
        return 0;
    value = read;
    return 1;
}

double halfDigit(std::string_view number)
{
    const std::size_t point = number.find('.');
    if (point == std::string_view::npos || number.find_first_of("eE") != std::string_view::npos)
        return 0;
    const std::size_t end = number.find_first_not_of("0123456789", point + 1);
    const std::size_t last = end == std::string_view::npos ? number.size() : end;
    return 0.5 * std::pow(10.0, -static_cast<double>(last - point - 1));
}

int readSexagesimal(std::string_view text, int isLongitude, double& degrees)
{
    text = trimmedText(text);
    const int isNegative = !text.empty() && text[0] == '-';
    if (isNegative || (!text.empty() && text[0] == '+'))
        text.remove_prefix(1);
    constexpr std::size_t longest = 64;
    if (text.empty() || text.size() > longest)
        return 0;
    Fields fields;
    double factor = 1;
    int isSplit = 0;
    if (text.find(':') != std::string_view::npos) {
        isSplit = splitBy(text, ':', fields);
        factor = isLongitude ? 15 : 1;
    } else if (text.find_first_of("hH") != std::string_view::npos) {
        isSplit = splitByUnits(text, 'h', fields);
        factor = 15;
    } else if (text.find_first_of("dD") != std::string_view::npos) {
        isSplit = splitByUnits(text, 'd', fields);
    } else if (std::count(text.begin(), text.end(), '.') >= 2) {
        isSplit = splitBy(text, '.', fields);
    }
    double whole = 0;
    if (!isSplit || !joinFields(fields, whole))
        return 0;
    degrees = (isNegative ? -whole : whole) * factor;
    return 1;
}

std::string plainNumber(double value)
{
    const std::string text = valToStr(value);
    const std::size_t e = text.find('e');
    int exponent = 0;
    if (e == std::string::npos || !stoval(std::string_view(text).substr(e + 1), exponent))
        return text;
    const int isNegative = text[0] == '-';
    std::string digits =
        text.substr(static_cast<std::size_t>(isNegative), e - static_cast<std::size_t>(isNegative));
    digits.erase(std::remove(digits.begin(), digits.end(), '.'), digits.end());
    std::string number(static_cast<std::size_t>(isNegative), '-');
    if (exponent < 0) {
        number += "0.";
        number.append(static_cast<std::size_t>(-exponent - 1), '0');
        return number += digits;
    }
    const auto whole = static_cast<std::size_t>(exponent) + 1;
    if (digits.size() < whole)
        digits.append(whole - digits.size(), '0');
    else if (digits.size() > whole)
        digits.insert(whole, 1, '.');
    return number += digits;
}

}  // namespace pavane
