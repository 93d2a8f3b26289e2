#pragma once

#include "tessel/api.h"

#include <string>
#include <string_view>

namespace pavane
{

// Numbers as text and back. None of these looks at the locale: the decimal point is always a point.
// Not-a-number is written "nan", infinities "inf" and "-inf"; no text is ever "-0".

/// The shortest text that reads back to the same double ("0.1", "1e+30").
PAVANE_API std::string valToStr(double value);
/// `value` with `digits` significant digits as printf's %.*g writes it (digits below 1 count as 1,
/// above 17 as 17).
PAVANE_API std::string valToStr(double value, int digits);
/// `value` with exactly `decimals` digits after the point, as %.*f (0 to 30 decimals).
PAVANE_API std::string nValToStr(double value, int decimals);
/// Reads a number from the start of `text`, blanks before it skipped. Non-zero when there is one
/// and only blanks follow it; else 0 and `value` is left alone.
PAVANE_API int stoval(std::string_view text, double& value);
/// The same for whole numbers in the range of int.
PAVANE_API int stoval(std::string_view text, int& value);

}  // namespace pavane
