#pragma once

#include "pavane/axes/maps/cells/float_keys.h"

#include <algorithm>
#include <array>
#include <cstdint>
#include <vector>

namespace pavane
{

/// How many values there are of each upper half of a float's key: what tells in which half a value
/// of any rank lies. Values that are not finite are counted where no finite one is.
class UpperCounts
{
public:
    static constexpr int halves = 65536;
    /// Upper halves of the keys of finite floats: from the first to before the second.
    static constexpr int firstFinite = 0x0080;
    static constexpr int endFinite = 0xFF80;

    UpperCounts() : even_(halves), odd_(halves), counts_(halves) {}
    void add(const float* values, int count)
    {
        int i = 0;
        // neighbours are often alike: two tables, so that one increment need not wait for another
        for (; i + 1 < count; i += 2) {
            ++even_[orderedKey(values[i]) >> 16];
            ++odd_[orderedKey(values[i + 1]) >> 16];
        }
        if (i < count)
            ++even_[orderedKey(values[i]) >> 16];
        waiting_ += count;
        if (waiting_ > mostWaiting)
            finish();
    }
    /// To be called when all values are in.
    void finish()
    {
        for (std::size_t half = 0; half < halves; ++half)
            counts_[half] += std::int64_t{even_[half]} + odd_[half];
        std::fill(even_.begin(), even_.end(), 0);
        std::fill(odd_.begin(), odd_.end(), 0);
        waiting_ = 0;
    }
    std::int64_t count(int half) const { return counts_[static_cast<std::size_t>(half)]; }
    std::int64_t finite() const
    {
        std::int64_t sum = 0;
        for (int half = firstFinite; half < endFinite; ++half)
            sum += counts_[static_cast<std::size_t>(half)];
        return sum;
    }
    /// The upper half of the finite value of rank `rank`, from 0; `rank` becomes that among the
    /// values with this half.
    int halfOf(std::int64_t& rank) const
    {
        int half = firstFinite;
        for (; half + 1 < endFinite && rank >= counts_[static_cast<std::size_t>(half)]; ++half)
            rank -= counts_[static_cast<std::size_t>(half)];
        return half;
    }

private:
    static constexpr std::int64_t mostWaiting = std::int64_t{1} << 31;
    std::vector<std::uint32_t> even_;
    std::vector<std::uint32_t> odd_;
    std::vector<std::int64_t> counts_;
    std::int64_t waiting_ = 0;
};

/// How many values there are of each lower half of the keys that have one of a few upper halves.
class LowerCounts
{
public:
    /// Upper halves that can be wanted at a time.
    static constexpr int mostHalves = 255;

    LowerCounts() : slotOf_(UpperCounts::halves) {}
    /// 0 when there are too many already.
    int want(int half)
    {
        unsigned char& slot = slotOf_[static_cast<std::size_t>(half)];
        if (!slot && static_cast<int>(counts_.size()) == mostHalves)
            return 0;
        if (!slot) {
            counts_.emplace_back(UpperCounts::halves);
            slot = static_cast<unsigned char>(counts_.size());
        }
        return 1;
    }
    int isWanted(int half) const { return slotOf_[static_cast<std::size_t>(half)]; }
    void add(const float* values, int count)
    {
        for (int i = 0; i < count; ++i) {
            const std::uint32_t key = orderedKey(values[i]);
            if (const unsigned slot = slotOf_[key >> 16]) [[unlikely]]
                ++counts_[slot - 1][key & 0xFFFF];
        }
    }
    /// Of a half that was wanted, by lower half.
    const std::vector<std::int64_t>& countsOf(int half) const
    {
        return counts_[slotOf_[static_cast<std::size_t>(half)] - std::size_t{1}];
    }
    /// The value of rank `rank` among those with a half that was wanted.
    float value(int half, std::int64_t rank) const
    {
        const std::vector<std::int64_t>& counts =
            counts_[slotOf_[static_cast<std::size_t>(half)] - std::size_t{1}];
        std::uint32_t low = 0;
        for (; low < 0xFFFF && rank >= counts[low]; ++low)
            rank -= counts[low];
        return keyValue(static_cast<std::uint32_t>(half) << 16 | low);
    }

private:
    std::vector<unsigned char> slotOf_;  ///< 1 + index into counts_, 0 for a half not wanted
    std::vector<std::vector<std::int64_t>> counts_;
};

}  // namespace pavane
