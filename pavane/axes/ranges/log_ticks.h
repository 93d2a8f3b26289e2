#pragma once

#include "pavane/axes/ranges/TMinMax.h"
#include "pavane/containers/AArray.h"
#include "platform/api.h"

#include <cstdint>

namespace pavane
{

/// A tick of a logarithmic scale: (index + 1) times 10^exponent, index 0 to 8. While an item is not
/// set its value is 0 and its exponent -1.
struct ALogItem {
    double value = 0;
    std::int16_t exponent = -1;
    std::int16_t index = 0;
};

/// Collects the ticks 1, 2, ... 9 times each power of ten inside `range`, ascending. `below` gets
/// the last one under the minimum, of its decade (not set when the minimum is a power of ten),
/// `above` the first one over the maximum, where a double holds it; either may be null. Returns the
/// number of items; none for a range that is empty, not finite or not above 0.
PAVANE_API int GetLogArray(AArray<ALogItem>& items, TMnMx& range, ALogItem* below, ALogItem* above);

/// The range with each end moved outwards by tickAllowance of a step there, so that GetLogArray
/// takes the ticks that an end misses by rounding; a range that it takes nothing from stays as it
/// is.
PAVANE_API TMnMx withTickAllowance(const TMnMx& range);

/// The power of ten at or below `value`, which is above 0 and finite.
PAVANE_API int decadeOf(double value);

}  // namespace pavane
