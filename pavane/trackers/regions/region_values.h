#pragma once

#include "tessel/sky_text.h"

#include <string>
#include <string_view>

namespace pavane
{

/// A number of a region file: cells, or an angle in degrees.
struct RegionValue {
    enum class Unit { none, cells, degrees };
    double value = 0;
    Unit unit = Unit::none;
    double slack = 0;  ///< half of the last digit that was written, in the unit; 0 when not known
};

/// The text without blanks at its ends.
std::string_view trimmedText(std::string_view text);
/// The text in small letters (ASCII).
std::string lowerWord(std::string_view text);
/// Non-zero when the texts are the same but for capitals (ASCII).
int sameWord(std::string_view a, std::string_view b);

/// A finite number and nothing else. Non-zero on success.
int readFinite(std::string_view text, double& value);

/// Half of the last digit of a number without an exponent; 0 for others and for whole numbers.
double halfDigit(std::string_view number);

/// The shortest text without an exponent that reads back to the same double.
std::string plainNumber(double value);

}  // namespace pavane
