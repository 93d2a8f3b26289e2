#pragma once

#include "pavane/axes/TickSet.h"

#include <algorithm>
#include <cmath>
#include <cstddef>
#include <vector>

namespace pavane
{

/// Labels of one direction as spans along it, in the order of their ticks.
struct LabelSpans {
    std::vector<double> centres;
    std::vector<int> lengths;

    /// Non-zero gap between all neighbours.
    bool areApart(double gap) const
    {
        for (std::size_t i = 1; i < centres.size(); ++i)
            if (std::fabs(centres[i] - centres[i - 1]) < (lengths[i] + lengths[i - 1]) * 0.5 + gap)
                return false;
        return true;
    }
};

/// Takes away every label that would touch the one before it.
inline void thinLabels(TickSet& set, const LabelSpans& spans, double gap)
{
    std::size_t kept = spans.centres.size();
    std::size_t span = 0;
    for (TickSet::Tick& tick : set.major) {
        if (tick.label.empty())
            continue;
        const std::size_t i = span++;
        const bool touches = kept < i && std::fabs(spans.centres[i] - spans.centres[kept]) <
                                             (spans.lengths[i] + spans.lengths[kept]) * 0.5 + gap;
        if (touches)
            tick.label.clear();
        else
            kept = i;
    }
}

inline std::ptrdiff_t countLabels(const TickSet& set)
{
    return std::count_if(set.major.begin(), set.major.end(),
                         [](const TickSet::Tick& tick) { return !tick.label.empty(); });
}

/// Where a plot too flat for its labels stops looking for a step that hits its range.
inline constexpr int mostFlatIntervals = 10;
/// Labels that tell a scale.
inline constexpr int leastLabels = 2;

/// The next smaller count to try: a quarter less, or one.
inline int fewerIntervals(int n) { return n > 8 ? n * 3 / 4 : n - 1; }

/// A count that gives each label at least `room`.
inline int startIntervals(int wanted, int length, int room)
{
    return std::clamp(wanted, 1, std::max(1, length / std::max(room, 1)));
}

/// The wish of a direction with its options.
inline TickWish wishOf(const CString& name, double min, double max, int intervals, int nPlus,
                       int nMinus, int withoutMinor)
{
    return {name, {min, max}, intervals, nPlus, nMinus, !withoutMinor};
}

}  // namespace pavane
