#pragma once

namespace pavane
{

/// The farthest that a rounded offset reaches; beyond it conversions saturate.
inline constexpr int offsetLimit = 1 << 30;

/// `v` cut towards zero. The one place where doubles become ints: beyond plus or minus 2^30 the
/// result saturates, and NaN gives 0, so that no input is undefined.
constexpr int truncated(double v)
{
    if (!(v > -static_cast<double>(offsetLimit)))
        return v != v ? 0 : -offsetLimit;
    return v < static_cast<double>(offsetLimit) ? static_cast<int>(v) : offsetLimit;
}

/// `base + offset` or `base - offset` without overflow: cut to what an int holds.
constexpr int saturatedSum(long long base, long long offset)
{
    const long long sum = base + offset;
    constexpr long long least = -2147483647LL - 1;
    constexpr long long greatest = 2147483647LL;
    return static_cast<int>(sum < least ? least : sum > greatest ? greatest : sum);
}

}  // namespace pavane
