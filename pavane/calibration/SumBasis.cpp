#include "pavane/calibration/SumBasis.h"

#include <algorithm>
#include <utility>

namespace pavane
{

namespace
{

constexpr std::uint64_t prime = 0x7fffffff;

/// Of a number below 2^63. The prime is 2^31 - 1, so what is above its bits counts like what is in
/// them.
std::uint32_t remainder(std::uint64_t value)
{
    value = (value & prime) + (value >> 31);
    value = (value & prime) + (value >> 31);
    return static_cast<std::uint32_t>(value >= prime ? value - prime : value);
}

std::uint32_t product(std::uint64_t a, std::uint64_t b) { return remainder(a * b); }

/// One over a number, its power prime - 2.
std::uint32_t inverse(std::uint32_t value)
{
    std::uint64_t power = value;
    std::uint64_t result = 1;
    for (std::uint64_t exponent = prime - 2; exponent; exponent >>= 1) {
        if (exponent & 1)
            result = product(result, power);
        power = product(power, power);
    }
    return static_cast<std::uint32_t>(result);
}

}  // namespace

SumBasis::SumBasis(std::size_t quantities) : rows_(quantities), isRow_(quantities), sum_(quantities)
{
}

int SumBasis::add(std::span<const SumTerm> sum)
{
    std::size_t end = 0;
    for (const SumTerm& term : sum)
        if (term.of < sum_.size()) {
            sum_[term.of] = remainder(sum_[term.of] + (term.sign > 0 ? 1 : prime - 1));
            end = std::max(end, term.of + 1);
        }
    while (end > 0) {
        const std::size_t last = --end;
        if (!sum_[last])
            continue;
        if (!isRow_[last]) {
            keep(last);
            return 1;
        }
        const std::uint64_t times = prime - sum_[last];
        sum_[last] = 0;
        for (const Part& part : rows_[last])
            sum_[part.of] = remainder(sum_[part.of] + times * part.times);
    }
    return 0;
}

/// Makes a row of the sum, scaled to end in 1.
void SumBasis::keep(std::size_t last)
{
    const std::uint32_t scale = inverse(sum_[last]);
    sum_[last] = 0;
    for (std::size_t i = 0; i < last; ++i)
        if (const std::uint32_t value = std::exchange(sum_[i], 0))
            rows_[last].push_back({static_cast<std::uint32_t>(i), product(value, scale)});
    isRow_[last] = 1;
    ++rank_;
}

}  // namespace pavane
