#pragma once

#include "tessel/api.h"

#include <string>
#include <string_view>

namespace pavane
{

// Times are seconds (double). Clock text is "[-]HH:MM:SS.S": at least two digits of hours, which
// run on past 24, two of minutes and seconds, and the wanted decimals of a second.

/// Clock text with `decimals` digits after the point (0 to 9); -1: as many as needed to read back
/// the same time to a microsecond, none for whole seconds. Rounding carries ("00:01:00", never
/// "00:00:60"). Not-finite times give "".
PAVANE_API std::string timeToStr(double seconds, int decimals = 1);
/// The same text for a time of day or longer span as the processing pages show it; -1 as above.
PAVANE_API std::string dateTimeToStr(double seconds, int decimals);
/// Reads clock text ("HH:MM:SS.S", "MM:SS.S" or "SS.S", a sign in front, blanks around). Non-zero
/// on success; else 0 and `seconds` is left alone. Minutes and seconds of 60 or more after a colon
/// fail.
PAVANE_API int strToTime(std::string_view text, double& seconds);

}  // namespace pavane
