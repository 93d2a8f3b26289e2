#include "pavane/axes/ranges/decimal_power.h"

#include <algorithm>
#include <charconv>
#include <cmath>
#include <limits>

namespace pavane
{
namespace
{

/// A double has no more significant digits than these.
constexpr int mostDigits = 17;

int sumOfDigits(int nPlus, int nMinus)
{
    const long long digits = static_cast<long long>(nPlus) + nMinus;
    return static_cast<int>(std::clamp<long long>(digits, 1, mostDigits));
}

/// Digit budgets stay near the powers of a double, so that their sums never overflow.
int limitedDigits(long long digits)
{
    return static_cast<int>(std::clamp<long long>(digits, -greatestPower, greatestPower));
}

void moveDigits(int& nPlus, int& nMinus, int count)
{
    nPlus = limitedDigits(static_cast<long long>(nPlus) + count);
    nMinus = limitedDigits(static_cast<long long>(nMinus) - count);
}

}  // namespace

double powerOfTen(int power)
{
    char text[16] = "1e";
    const int kept = std::clamp(power, leastPower, greatestPower);
    const auto end = std::to_chars(text + 2, text + sizeof text, kept).ptr;
    double value = 0;
    std::from_chars(text, end, value);
    return value;
}

int decimalPower(double value, int nPlus, int nMinus)
{
    if (value == 0 || !std::isfinite(value))
        return 0;
    char text[40];
    const auto end = std::to_chars(text, text + sizeof text, std::fabs(value),
                                   std::chars_format::scientific, sumOfDigits(nPlus, nMinus) - 1)
                         .ptr;
    const char* exponent = std::find(text, end, 'e') + 1;
    int decade = 0;
    std::from_chars(*exponent == '+' ? exponent + 1 : exponent, end, decade);
    const long long power = static_cast<long long>(decade) + 1 - nPlus;
    return static_cast<int>(std::clamp<long long>(power, leastPower, greatestPower));
}

int greaterPower(double a, double b, int nPlus, int nMinus)
{
    const int powerOfA = decimalPower(a, nPlus, nMinus);
    const int powerOfB = decimalPower(b, nPlus, nMinus);
    if (a == 0)
        return powerOfB;
    return b == 0 || powerOfB < powerOfA ? powerOfA : powerOfB;
}

int labelPower(double a, double b, int& nPlus, int& nMinus)
{
    const int power = greaterPower(a, b, nPlus, nMinus);
    if (power == 0 || power > nMinus || -power > nPlus)
        return power;
    moveDigits(nPlus, nMinus, power);
    return 0;
}

int engineeringPower(double a, double b, int& nPlus, int& nMinus)
{
    const int power = labelPower(a, b, nPlus, nMinus);
    const int rest = (power % 3 + 3) % 3;
    if (rest)
        moveDigits(nPlus, nMinus, rest);
    if (nPlus < 0) {
        nMinus = limitedDigits(static_cast<long long>(nMinus) - nPlus);
        nPlus = 0;
    } else if (nMinus < 0) {
        nPlus = limitedDigits(static_cast<long long>(nPlus) - nMinus);
        nMinus = 0;
    }
    return std::max(power - rest, leastPower + 1);  // -306 is the least multiple of three
}

int repairEqualEnds(double& min, double& max)
{
    if (min != max)
        return 0;
    if (min == 0) {
        min = -1;
        max = 1;
        return 1;
    }
    constexpr double greatest = std::numeric_limits<double>::max();
    min = min - 0.1 * min;
    max = std::clamp(max + 0.1 * max, -greatest, greatest);
    return 1;
}

}  // namespace pavane
