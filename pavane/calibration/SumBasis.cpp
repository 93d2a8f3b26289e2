#include "pavane/calibration/SumBasis.h"

#include "pavane/calibration/processor.h"

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

/// The same as far as that is below 2^33, which leaves room to add a product.
PAVANE_BODY std::uint64_t folded(std::uint64_t value) { return (value & prime) + (value >> 31); }

PAVANE_BODY void addRow(std::uint64_t* __restrict sum, const std::uint32_t* __restrict row,
                        std::size_t count, std::uint64_t times)
{
    for (std::size_t i = 0; i < count; ++i)
        sum[i] = folded(sum[i] + times * row[i]);
}

#if defined(__x86_64__)
PAVANE_FOR_AVX2 void addRowWide(std::uint64_t* sum, const std::uint32_t* row, std::size_t count,
                                std::uint64_t times)
{
    addRow(sum, row, count, times);
}
#endif

void addTimes(std::uint64_t* sum, const std::vector<std::uint32_t>& row, std::uint64_t times)
{
#if defined(__x86_64__)
    if (hasAvx2())
        return addRowWide(sum, row.data(), row.size(), times);
#endif
    addRow(sum, row.data(), row.size(), times);
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
        const std::uint32_t value = remainder(std::exchange(sum_[last], 0));
        if (!value)
            continue;
        if (!isRow_[last]) {
            keep(last, value);
            return 1;
        }
        const std::uint64_t times = prime - value;
        const Row& row = rows_[last];
        addTimes(sum_.data(), row.all, times);
        for (const Part& part : row.parts)
            sum_[part.of] = folded(sum_[part.of] + times * part.times);
    }
    return 0;
}

/// Makes a row of the sum, which ends in `value`, scaled to end in 1.
void SumBasis::keep(std::size_t last, std::uint32_t value)
{
    const std::uint32_t scale = inverse(value);
    Row& row = rows_[last];
    for (std::size_t i = 0; i < last; ++i)
        if (const std::uint32_t times = remainder(std::exchange(sum_[i], 0)))
            row.parts.push_back({static_cast<std::uint32_t>(i), product(times, scale)});
    constexpr std::size_t partOfAll = 4;  // one after another they take a quarter of the time
    if (partOfAll * row.parts.size() > last) {
        row.all.resize(last);
        for (const Part& part : std::exchange(row.parts, {}))
            row.all[part.of] = part.times;
    }
    isRow_[last] = 1;
    ++rank_;
}

}  // namespace pavane
