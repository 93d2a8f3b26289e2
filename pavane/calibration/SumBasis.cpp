#include "pavane/calibration/SumBasis.h"

#include <algorithm>

namespace pavane
{

namespace
{

constexpr std::uint64_t prime = 0x7fffffff;

std::uint32_t product(std::uint64_t a, std::uint64_t b)
{
    return static_cast<std::uint32_t>(a * b % prime);
}

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

SumBasis::SumBasis(std::size_t quantities) : rows_(quantities), sum_(quantities) {}

int SumBasis::add(std::span<const SumTerm> sum)
{
    std::fill(sum_.begin(), sum_.end(), 0);
    for (const SumTerm& term : sum) {
        if (term.of >= sum_.size())
            return 0;
        sum_[term.of] =
            static_cast<std::uint32_t>((sum_[term.of] + (term.sign > 0 ? 1 : prime - 1)) % prime);
    }
    for (std::size_t last = sum_.size(); last-- > 0;) {
        if (!sum_[last])
            continue;
        Row& row = rows_[last];
        if (row.empty()) {
            // scaled to end in 1; what is behind the last quantity is 0 and not kept
            const std::uint32_t scale = inverse(sum_[last]);
            row.resize(last + 1);
            for (std::size_t i = 0; i <= last; ++i)
                row[i] = product(sum_[i], scale);
            ++rank_;
            return 1;
        }
        const std::uint64_t times = prime - sum_[last];
        for (std::size_t i = 0; i <= last; ++i)
            if (row[i])
                sum_[i] = static_cast<std::uint32_t>((sum_[i] + times * row[i]) % prime);
    }
    return 0;
}

}  // namespace pavane
