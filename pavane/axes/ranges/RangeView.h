#pragma once

#include "pavane/axes/ranges/TMinMax.h"
#include "pavane/containers/APoint.h"
#include "platform/api.h"
#include "platform/geometry.h"

#include <vector>

namespace pavane
{

/// How the two directions of a plot count, as ABAxis says it: 1 linear, -1 linear reversed, 0
/// logarithmic, 2 time.
struct PlotDirections {
    int x = 1;
    int y = 1;
};

/// What a user sees of the range of a plot: the whole of it, the way from there to what is shown,
/// and the steps back. A plain value; the axis keeps the range that is shown. Ranges are x and y
/// pairs of data values (RP); z goes along untouched.
class PAVANE_API RangeView
{
public:
    /// Another plot: nothing is known of it.
    void forget();
    /// The range of everything, before any zoom; unset until it is known.
    const TMinMax& whole() const { return whole_; }
    void setWhole(const TMinMax& whole) { whole_ = whole; }
    /// There is more of the same: the whole is another one, in the steps back too.
    void replaceWhole(const TMinMax& whole);
    int isKnown() const { return !(whole_ == TMinMax()); }

    /// Whether `shown` is less than the whole, or reaches beyond it.
    int isZoomed(const TMinMax& shown, PlotDirections directions) const;
    /// 1 / `factor` of what is shown with the value `at` in its place, inside the whole. 0 when it
    /// stays as it is, or when it would be less than can be told: two cells of `cell` (data values,
    /// linear directions), or without cells (0) a billionth of the whole.
    int zoomed(const TMinMax& shown, APoint<double> at, double factor, APoint<double> cell,
               PlotDirections directions, TMinMax& range) const;
    /// What lies between two values, in any order; 0 as above.
    int between(const TMinMax& shown, APoint<double> from, APoint<double> to, APoint<double> cell,
                PlotDirections directions, TMinMax& range) const;
    /// What is seen `right` and `down` lengths of the plot from `shown`, as far as the whole
    /// reaches.
    TMinMax shifted(const TMinMax& shown, double right, double down,
                    PlotDirections directions) const;

    // Steps back
    void save(const TMinMax& shown) { steps_.push_back(shown); }
    /// The range that was saved last, which leaves the list; 0 without one.
    int goBack(TMinMax& range);
    int canGoBack() const { return !steps_.empty(); }
    int steps() const { return static_cast<int>(steps_.size()); }

    // Gestures: turns of a wheel, or one pan. The first change is the step, the others belong to
    // it.
    /// Non-zero for the first change of a gesture.
    int beginStep();
    int isInGesture() const { return gesture_; }
    void endGesture();
    /// Whole pixels of a wheel's way so far; what is less waits for the next turn of the gesture.
    CPoint wheelPixels(double right, double down);

private:
    int isWideEnough(const TMinMax& range, APoint<double> cell, PlotDirections directions) const;

    TMinMax whole_;
    std::vector<TMinMax> steps_;
    int gesture_ = 0;
    double restRight_ = 0;
    double restDown_ = 0;
};

/// A range that can be shown: both pairs finite, min below max.
PAVANE_API int isShowable(const TMinMax& range);
/// `range` with the x and y pairs of `pairs`.
PAVANE_API TMinMax withPairs(TMinMax range, const TMinMax& pairs);
PAVANE_API int samePairs(const TMinMax& a, const TMinMax& b);

}  // namespace pavane
