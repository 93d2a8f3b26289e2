#pragma once

#include <string>
#include <string_view>
#include <vector>

namespace pavane_ms
{

/// Without blanks at both ends.
std::string_view trimmed(std::string_view text);
/// The pieces between separators, empty ones too.
std::vector<std::string_view> split(std::string_view text, char separator);
/// Non-zero when the whole text is a number.
int readNumber(std::string_view text, double& value);
int readNumber(std::string_view text, int& value);
/// The shortest text that reads back as the same number.
std::string numberText(double value);
/// On one line of UTF-8, without control characters; a '?' for what is neither.
std::string plain(std::string_view text);
/// Numbers from 1 of a list such as "1-4,6"; empty for one that is wrong.
std::vector<int> readNumbers(std::string_view text);
/// "1,3,4"
std::string numbersText(const std::vector<int>& numbers);

/// Days from the Julian date to 0h of the Modified one.
constexpr double modifiedZero = 2400000.5;
/// Julian date of 0h of a day as FITS writes it ("2006-06-15", "15/06/96"); 0 for none.
double julianDay(std::string_view date);
/// "2006-06-15" of a Julian date.
std::string dateText(double julian);

}  // namespace pavane_ms
