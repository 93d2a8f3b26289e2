#include "apps/ms/text.h"

#include <algorithm>
#include <charconv>
#include <cmath>
#include <cstdio>

namespace pavane_ms
{

namespace
{

/// No data have more IFs.
constexpr int mostNumber = 65536;

/// Bytes of the UTF-8 character that a text begins with; 0 when it begins with none.
std::size_t characterLength(std::string_view text)
{
    const auto first = static_cast<unsigned char>(text[0]);
    std::size_t length = 1;
    if (first >= 0x80)
        length = first >= 0xf0 ? 4 : first >= 0xe0 ? 3 : 2;
    if ((first >= 0x80 && first < 0xc2) || first > 0xf4 || length > text.size())
        return 0;
    for (std::size_t i = 1; i < length; ++i)
        if ((static_cast<unsigned char>(text[i]) & 0xc0) != 0x80)
            return 0;
    return length;
}

template <typename T>
int readWhole(std::string_view text, T& value)
{
    text = trimmed(text);
    if (text.size() > 1 && text[0] == '+' && text[1] != '-')
        text.remove_prefix(1);
    const auto [end, error] = std::from_chars(text.data(), text.data() + text.size(), value);
    return error == std::errc{} && end == text.data() + text.size();
}

}  // namespace

std::string_view trimmed(std::string_view text)
{
    const std::size_t first = text.find_first_not_of(" \t\r");
    if (first == std::string_view::npos)
        return {};
    return text.substr(first, text.find_last_not_of(" \t\r") - first + 1);
}

std::vector<std::string_view> split(std::string_view text, char separator)
{
    std::vector<std::string_view> pieces;
    for (;;) {
        const std::size_t at = text.find(separator);
        pieces.push_back(text.substr(0, at));
        if (at == std::string_view::npos)
            return pieces;
        text.remove_prefix(at + 1);
    }
}

int readNumber(std::string_view text, double& value) { return readWhole(text, value); }
int readNumber(std::string_view text, int& value) { return readWhole(text, value); }

std::string numberText(double value)
{
    char buffer[40];
    // whole numbers, frequencies above all, are read more easily without an exponent
    constexpr double plainest = 1e15;
    const int isWhole = std::abs(value) < plainest && std::floor(value) == value;
    const auto end =
        isWhole ? std::to_chars(buffer, buffer + sizeof buffer, static_cast<long long>(value))
                : std::to_chars(buffer, buffer + sizeof buffer, value);
    return {buffer, end.ptr};
}

std::string plain(std::string_view text)
{
    std::string line;
    while (!text.empty()) {
        const std::size_t length = characterLength(text);
        if (length == 0)
            line += '?';
        else if (static_cast<unsigned char>(text[0]) < ' ' || text[0] == 127)
            line += ' ';
        else
            line += text.substr(0, length);
        text.remove_prefix(std::max<std::size_t>(length, 1));
    }
    return std::string(trimmed(line));
}

std::vector<int> readNumbers(std::string_view text)
{
    std::vector<int> numbers;
    for (const std::string_view piece : split(text, ',')) {
        const std::size_t dash = piece.find('-');
        int first = 0, last = 0;
        if (!readNumber(piece.substr(0, dash), first))
            return {};
        last = first;
        if (dash != std::string_view::npos && !readNumber(piece.substr(dash + 1), last))
            return {};
        if (first < 1 || last < first || last > mostNumber)
            return {};
        for (int i = first; i <= last; ++i)
            numbers.push_back(i);
    }
    std::sort(numbers.begin(), numbers.end());
    numbers.erase(std::unique(numbers.begin(), numbers.end()), numbers.end());
    return numbers;
}

std::string numbersText(const std::vector<int>& numbers)
{
    std::string text;
    for (const int number : numbers)
        text.append(text.empty() ? "" : ",").append(std::to_string(number));
    return text;
}

double julianDay(std::string_view date)
{
    int y = 0, m = 0, d = 0, end = 0;
    const std::string copy(trimmed(date));
    const char* const text = copy.c_str();
    if (std::sscanf(text, "%4d-%2d-%2d%n", &y, &m, &d, &end) == 3 && end >= 8) {
        if (text[end] != '\0' && text[end] != 'T' && text[end] != ' ')
            return 0;
    } else if (end = 0;
               std::sscanf(text, "%2d/%2d/%2d%n", &d, &m, &y, &end) == 3 && text[end] == '\0')
        y += 1900;
    else
        return 0;
    if (y < 1 || m < 1 || m > 12 || d < 1 || d > 31)
        return 0;
    // days of the Gregorian calendar, years counted from March
    const int early = (14 - m) / 12, years = y + 4800 - early, months = m + 12 * early - 3;
    const int whole =
        d + (153 * months + 2) / 5 + 365 * years + years / 4 - years / 100 + years / 400;
    return whole - 32045.5;
}

std::string dateText(double julian)
{
    if (!(std::abs(julian) < 1e7))
        return "?";
    // the days of a 400 year cycle that begins in March
    const int days = static_cast<int>(std::floor(julian + 0.5)) + 32044;
    const int cycle = days / 146097, inCycle = days % 146097;
    const int century = std::min(inCycle / 36524, 3), inCentury = inCycle - century * 36524;
    const int fours = inCentury / 1461, inFours = inCentury % 1461;
    const int year = std::min(inFours / 365, 3), inYear = inFours - year * 365;
    const int month = (5 * inYear + 2) / 153;
    const int d = inYear - (153 * month + 2) / 5 + 1, m = month < 10 ? month + 3 : month - 9;
    const int y = 400 * cycle + 100 * century + 4 * fours + year - 4800 + (m <= 2 ? 1 : 0);
    char buffer[40];
    std::snprintf(buffer, sizeof buffer, "%04d-%02d-%02d", y, m, d);
    return buffer;
}

}  // namespace pavane_ms
