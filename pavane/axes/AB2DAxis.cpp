#include "pavane/axes/AB2DAxis.h"

#include "pavane/axes/axis_titles.h"
#include "pavane/axes/ranges/decimal_power.h"
#include "pavane/axes/ranges/ticks.h"
#include "tessel/rounding.h"

#include <algorithm>
#include <cmath>

namespace pavane
{
namespace
{

int decadeTowardsZero(double value) { return truncated(std::trunc(std::log10(value))); }

}  // namespace

int AB2DAxis::GetAxisType() const { return 10; }

double AB2DAxis::getAxisParam(const CString& name, CString& title, int& n, int& nPlus, int& nMinus,
                              double& min, double& max, double& first, double& step, int& power)
{
    const int engineering = hasPrefixMarker(name);
    const double divisor = chooseTicks(min, max, n, nPlus, nMinus, first, step, power, engineering);
    title = engineering ? withPrefix(name, prefixText(power))
                        : withMultiplier(name, multiplierText(power));
    return divisor;
}

double AB2DAxis::getAxisPower(const CString& name, CString& title, double& a, double& b)
{
    const double mean = (static_cast<double>(decadeTowardsZero(b)) + decadeTowardsZero(a)) * 0.5;
    int power = std::clamp(truncated(mean), leastPower, greatestPower);
    if (hasPrefixMarker(name)) {
        const int thousands = (power + 1) / 3 * 3;
        title = withPrefix(name, prefixText(thousands));
        return powerOfTen(thousands);
    }
    if (!hasMultiplierMarker(name))
        return 1.0;
    if (power < -1)
        power = std::max(power - 1, leastPower);  // small values read better above 1
    title = withMultiplier(name, multiplierText(power));
    return powerOfTen(power);
}

}  // namespace pavane
