// Feeds any text to the reader of clock times; what it takes is written and read again.
#include "tessel/time_text.h"

#include <cmath>
#include <cstdint>
#include <cstdlib>

extern "C" int LLVMFuzzerTestOneInput(const std::uint8_t* data, std::size_t size)
{
    using namespace pavane;
    double seconds = 0;
    double again = 0;
    if (!strToTime({reinterpret_cast<const char*>(data), size}, seconds))
        return 0;
    if (std::abs(seconds) < 1e9 &&
        (!strToTime(timeToStr(seconds, 3), again) || std::abs(again - seconds) > 1e-3))
        std::abort();
    (void)dateTimeToStr(seconds, 1);
    return 0;
}
