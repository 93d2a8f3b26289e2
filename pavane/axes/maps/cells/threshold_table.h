#pragma once

#include "pavane/axes/maps/cells/float_keys.h"
#include "pavane/axes/maps/cells/map_scale.h"

#include <algorithm>
#include <cstddef>
#include <cstdint>
#include <vector>

namespace pavane
{

/// Indices of values on any scale, by comparison with the values at which colours change. A table
/// over the keys of the values between the first and the last of these tells where to start
/// comparing, so that nearly all values need one comparison, whatever the scale and however narrow
/// its range.
class ThresholdTable
{
public:
    /// `count` colours, 1 to 256.
    ThresholdTable(const MapScale& scale, int count);
    /// Index 0 to count - 1 of a value that is not NaN.
    int of(float value) const
    {
        const std::uint32_t key = std::max(orderedKey(value), lowKey_) - lowKey_;
        const float* const next = thresholds_.data() + 1;
        std::size_t index = start_[std::min(key, keys_) >> shift_];
        index += value >= next[index];
        if (value >= next[index]) [[unlikely]]  // many colours between two keys of the table
            index = passed(value, index);
        return static_cast<int>(index);
    }
    /// 1 + the index of each finite cell, 0 of the others; for at most 255 colours.
    void rank(const float* cells, int count, unsigned char* ranks) const;

private:
    std::size_t passed(float value, std::size_t from) const;

    std::vector<float> thresholds_;     ///< of index i from 1 on; one more that no value reaches
    std::size_t last_;                  ///< greatest index
    std::uint32_t lowKey_ = 0;          ///< all keys up to here have place 0
    std::uint32_t keys_ = 0;            ///< keys from there to the last threshold
    int shift_ = 0;                     ///< a place of the table is 2 to this many keys
    std::vector<unsigned char> start_;  ///< by place: the index of its least key
};

}  // namespace pavane
