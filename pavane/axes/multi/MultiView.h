#pragma once

#include "pavane/axes/ranges/TMinMax.h"
#include "platform/api.h"

#include <vector>

namespace pavane
{

class A2DAxisMulti;

/// The ranges of a plot with several scales, as data values (RP); those of scales that have no
/// values are unset.
struct MultiRanges {
    TMnMx x;
    std::vector<TMnMx> y;  ///< by scale

    friend bool operator==(const MultiRanges&, const MultiRanges&) = default;
};

/// Stands for x where others are numbers of scales.
inline constexpr int directionX = -1;

/// The ranges that an axis shows; after its layout.
PAVANE_API MultiRanges rangesOf(const A2DAxisMulti& axis);
/// Whether a direction counts by powers of ten.
PAVANE_API int isLogarithmic(const A2DAxisMulti& axis, int direction);

/// What a user sees of the ranges of a plot with several scales: the whole of each, and the ways
/// from what is shown to something else, each direction by itself. A plain value; the axis keeps
/// what is shown. A direction is a scale or directionX; one that is none changes nothing.
class PAVANE_API MultiView
{
public:
    /// Nothing is known of any range.
    void forget() { whole_ = {}; }
    /// What is shown is the whole of each direction of which nothing was known.
    void learn(const MultiRanges& shown);
    const MultiRanges& whole() const { return whole_; }
    void setWhole(const MultiRanges& whole) { whole_ = whole; }

    /// Whether less than the whole is shown.
    int isZoomed(const MultiRanges& shown, int direction, int logarithmic) const;
    // Each changes one direction of `shown`, inside the whole; 0 when it stays as it is.
    /// 1 / `factor` of it with the value `at` in its place; down to a billionth of the whole.
    int zoom(MultiRanges& shown, int direction, double at, double factor, int logarithmic) const;
    /// Moved by `fraction` of its length.
    int shift(MultiRanges& shown, int direction, double fraction, int logarithmic) const;
    /// What lies between two values, in any order.
    int choose(MultiRanges& shown, int direction, double a, double b, int logarithmic) const;
    int showWhole(MultiRanges& shown, int direction) const;

private:
    MultiRanges whole_;
};

}  // namespace pavane
