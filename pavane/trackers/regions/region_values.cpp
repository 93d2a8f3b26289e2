#include "pavane/trackers/regions/region_values.h"

#include "tessel/trimmed.h"
#include "tessel/value_text.h"

#include <algorithm>
#include <cmath>

namespace pavane
{

namespace
{

constexpr std::string_view blanks = " \t\r\n\f\v";

char smallLetter(char c) { return c >= 'A' && c <= 'Z' ? static_cast<char>(c - 'A' + 'a') : c; }

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
