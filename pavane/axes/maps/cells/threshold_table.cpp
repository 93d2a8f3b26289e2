#include "pavane/axes/maps/cells/threshold_table.h"

#include "pavane/axes/maps/cells/float_keys.h"

#include <algorithm>
#include <limits>

namespace pavane
{

namespace
{

constexpr std::uint32_t mostPlaces = 65536;

}  // namespace

ThresholdTable::ThresholdTable(const MapScale& scale, int count)
    : thresholds_(static_cast<std::size_t>(count) + 1), last_(static_cast<std::size_t>(count) - 1)
{
    constexpr float infinity = std::numeric_limits<float>::infinity();
    thresholds_.front() = -infinity;
    thresholds_.back() = std::numeric_limits<float>::quiet_NaN();
    for (std::size_t i = 1; i <= last_; ++i)
        thresholds_[i] = std::max(thresholds_[i - 1],
                                  static_cast<float>(scale.value(static_cast<double>(i) / count)));
    if (last_ > 0) {
        lowKey_ = orderedKey(thresholds_[1]) - 1;
        keys_ = orderedKey(thresholds_[last_]) - lowKey_;
    }
    while (keys_ >> shift_ >= mostPlaces)
        ++shift_;
    const std::uint32_t places = (keys_ >> shift_) + 1;
    start_.resize(places);
    std::size_t index = 0;
    for (std::uint32_t place = 0; place < places; ++place) {
        while (index < last_ && orderedKey(thresholds_[index + 1]) - lowKey_ <= place << shift_)
            ++index;
        start_[place] = static_cast<unsigned char>(index);
    }
}

/// The greatest index from `from` on whose threshold `value` is not below.
std::size_t ThresholdTable::passed(float value, std::size_t from) const
{
    const float* const thresholds = thresholds_.data();
    return static_cast<std::size_t>(
        std::upper_bound(thresholds + from, thresholds + last_ + 1, value) - thresholds - 1);
}

void ThresholdTable::rank(const float* cells, int count, unsigned char* ranks) const
{
    for (int i = 0; i < count; ++i) {
        const int isFinite = cells[i] - cells[i] == 0;
        ranks[i] = static_cast<unsigned char>(isFinite ? 1 + of(cells[i]) : 0);
    }
}

}  // namespace pavane
