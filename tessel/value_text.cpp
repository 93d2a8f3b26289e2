#include "tessel/value_text.h"

#include <algorithm>
#include <charconv>
#include <cmath>
#include <limits>

namespace pavane
{

namespace
{

/// The longest text of a double: 309 digits before the point, 30 after it, sign and point.
constexpr std::size_t longestText = 384;

/// The longest shortest text of a double, "-1.2345678901234567e-308", and some.
constexpr std::size_t longestShortest = 32;

/// Between these decimal exponents a number is written without an exponent.
constexpr int leastPlainExponent = -4;
constexpr int plainExponentEnd = 16;
constexpr double plainEnd = 1e16;

std::string_view withoutBlanksInFront(std::string_view text)
{
    const auto first = text.find_first_not_of(" \t\r\n\f\v");
    return first == std::string_view::npos ? std::string_view{} : text.substr(first);
}

/// The text after the blanks and one plus sign in front, which from_chars does not know.
std::string_view numberStart(std::string_view text)
{
    text = withoutBlanksInFront(text);
    if (text.size() > 1 && text[0] == '+' && text[1] != '-' && text[1] != '+')
        text.remove_prefix(1);
    return text;
}

int onlyBlanks(const char* from, std::string_view in)
{
    const char* const end = in.data() + in.size();
    return withoutBlanksInFront({from, static_cast<std::size_t>(end - from)}).empty();
}

std::string notFinite(double value)
{
    return std::isnan(value) ? "nan" : value > 0 ? "inf" : "-inf";
}

std::string withoutMinusZero(std::string text)
{
    const auto mantissaEnd = text.find('e');
    const auto digit = text.find_first_of("123456789");
    if (text[0] == '-' && (digit == std::string::npos || digit > mantissaEnd))
        text.erase(0, 1);
    return text;
}

template <typename... How>
std::string written(double value, How... how)
{
    char buffer[longestText];
    const auto result = std::to_chars(buffer, buffer + longestText, value, how...);
    return withoutMinusZero({buffer, result.ptr});
}

}  // namespace

std::string valToStr(double value)
{
    if (!std::isfinite(value))
        return notFinite(value);
    if (value == 0)
        return "0";
    char found[longestShortest];
    char* end = std::to_chars(found, found + longestShortest, value).ptr;
    // most numbers come plain at once; where that is longer, their digits are moved
    if (std::abs(value) < plainEnd && std::find(found, end, 'e') == end)
        return std::string(found, end);
    end = std::to_chars(found, found + longestShortest, value, std::chars_format::scientific).ptr;
    char* const mantissaEnd = std::find(found, end, 'e');
    int exponent = 0;
    std::from_chars(mantissaEnd + (mantissaEnd[1] == '+' ? 2 : 1), end, exponent);
    if (exponent < leastPlainExponent || exponent >= plainExponentEnd)
        return std::string(found, end);
    // the first digit, the point, the rest
    const char* const first = found + (value < 0);
    const char* const rest = std::min<const char*>(first + 2, mantissaEnd);
    const int count = static_cast<int>(mantissaEnd - rest);
    char plain[2 * longestShortest];
    char* out = plain;
    *out = '-';
    out += value < 0;
    if (exponent < 0) {
        *out++ = '0';
        *out++ = '.';
        out = std::fill_n(out, -exponent - 1, '0');
    }
    *out++ = *first;
    const int whole = std::clamp(exponent, 0, count);
    out = std::copy_n(rest, whole, out);
    out = std::fill_n(out, std::max(exponent - count, 0), '0');
    if (exponent >= 0 && count > whole)
        *out++ = '.';
    out = std::copy(rest + whole, static_cast<const char*>(mantissaEnd), out);
    return std::string(plain, out);
}

std::string valToStr(double value, int digits)
{
    if (!std::isfinite(value))
        return notFinite(value);
    return written(value, std::chars_format::general,
                   std::clamp(digits, 1, std::numeric_limits<double>::max_digits10));
}

std::string nValToStr(double value, int decimals)
{
    if (!std::isfinite(value))
        return notFinite(value);
    return written(value, std::chars_format::fixed, std::clamp(decimals, 0, 30));
}

int stoval(std::string_view text, double& value)
{
    const std::string_view number = numberStart(text);
    const char* const end = number.data() + number.size();
    double read = 0;
    auto result = std::from_chars(number.data(), end, read);
    if (result.ec == std::errc::result_out_of_range) {
        // too great is no number, but what is too small to be told from 0 is 0
        long double wide = 0;
        result = std::from_chars(number.data(), end, wide);
        if (result.ec == std::errc{} && std::abs(wide) > 1)
            return 0;
        read = 0;
    }
    if (result.ec != std::errc{} || !onlyBlanks(result.ptr, number))
        return 0;
    value = read;
    return 1;
}

int stoval(std::string_view text, int& value)
{
    const std::string_view number = numberStart(text);
    int read = 0;
    const auto result = std::from_chars(number.data(), number.data() + number.size(), read);
    if (result.ec != std::errc{} || !onlyBlanks(result.ptr, number))
        return 0;
    value = read;
    return 1;
}

}  // namespace pavane
