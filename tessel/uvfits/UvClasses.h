#pragma once

#include "tessel/api.h"
#include "tessel/uvfits/Distinct.h"
#include "tessel/uvfits/UvPlotRows.h"
#include "tessel/uvfits/UvView.h"

#include <cstddef>
#include <cstdint>
#include <vector>

namespace pavane
{

/// What visibilities of one colour have in common, and how many points have it.
struct UvClass {
    /// Of a baseline the subarray and the lower and the higher number, of a telescope subarray and
    /// number; of an IF its index from 0, of a source its number in the file, in `first`.
    UvPair what;
    std::int64_t points = 0;
};

/// Sorts visibilities into the classes of a UvColour, as they come. Of a baseline half the groups,
/// by no rhythm, are of one telescope and half of the other: a bad telescope shows at all its
/// baselines.
class PAVANE_API UvClasses
{
public:
    /// That many; what comes later is in the last one.
    static constexpr std::size_t most = 4096;

    explicit UvClasses(UvColour by) : by_(by), found_(most) {}

    UvColour by() const { return by_; }
    /// The class of a point, from 0, which is counted.
    std::uint16_t add(const UvPointOrigin& point);
    /// In the order in which they were met.
    std::vector<UvClass> classes() const;

private:
    struct Tally {
        std::uint16_t number = 0;
        std::int64_t points = 0;
    };
    UvColour by_;
    Distinct<UvPair, Tally> found_;
    std::int64_t more_ = 0;  ///< points of classes beyond `most`
};

}  // namespace pavane
