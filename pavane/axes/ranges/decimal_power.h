#pragma once

#include "platform/api.h"

namespace pavane
{

// Decimal powers of tick labels. `nPlus` and `nMinus` are the digits that a label has before and
// after its decimal point. Powers stay within -307..308.

inline constexpr int leastPower = -307;
inline constexpr int greatestPower = 308;

/// 10^power, correctly rounded; the power is first cut to what a normal double holds.
PAVANE_API double powerOfTen(int power);

/// The power of ten that leaves `value` with nPlus digits before the point: the exponent e of its
/// nPlus + nMinus rounded digits 0.d1d2... x 10^e, less nPlus. Rounding may carry: 9.99 in two
/// digits is "10", e = 2. 0 for 0 and for what is not finite.
PAVANE_API int decimalPower(double value, int nPlus, int nMinus);
/// The greater of the powers of two values; 0 counts as having none.
PAVANE_API int greaterPower(double a, double b, int nPlus, int nMinus);
/// The power that labels between a and b are divided by: 0 when the digits suffice for plain
/// decimals, after moving as many as needed from one side of the point to the other.
PAVANE_API int labelPower(double a, double b, int& nPlus, int& nMinus);
/// The same as a multiple of three, for decimal prefixes.
PAVANE_API int engineeringPower(double a, double b, int& nPlus, int& nMinus);

/// Makes a range of equal ends a range: 0 becomes -1..1, any other value v becomes
/// v - 0.1v, v + 0.1v. 1 when it did, 0 when the ends differ.
/// Deliberate: a negative value ends with min above max; hosts draw such a pair as a reversed axis.
PAVANE_API int repairEqualEnds(double& min, double& max);

}  // namespace pavane
