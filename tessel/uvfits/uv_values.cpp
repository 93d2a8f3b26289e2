#include "tessel/uvfits/uv_values.h"

#include "tessel/time_text.h"

#include <cmath>

namespace pavane
{

namespace
{

constexpr double secondsPerDay = 86400;
/// Longer times than these stand in damaged files only.
constexpr double mostDays = 1e9;

}  // namespace

std::string mountName(int mount)
{
    static constexpr const char* names[] = {"ALTAZ", "EQUATORIAL", "ORBITING"};
    return mount >= 0 && mount < 3 ? names[mount] : std::to_string(mount);
}

std::string uvTimeText(double days)
{
    if (!(std::abs(days) < mostDays))
        return {};
    // in tenths, so that the rounding carries into the day
    const double tenths = std::floor(days * secondsPerDay * 10 + 0.5);
    const double day = std::floor(tenths / (secondsPerDay * 10));
    return std::to_string(static_cast<long long>(day)) + '/' +
           timeToStr((tenths - day * secondsPerDay * 10) / 10, 1);
}

}  // namespace pavane
