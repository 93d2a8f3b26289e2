#pragma once

#include "pavane/axes/maps/cells/map_scale.h"
#include "pavane/axes/ranges/TMinMax.h"
#include "pavane/images/AColorPlay.h"
#include "platform/api.h"
#include "platform/geometry.h"

#include <cstdint>
#include <vector>

namespace pavane
{

/// The histogram of a map with its range and transfer curve, in pixels: where everything stands,
/// what the pointer is at, and what a drag or a key makes of it. Counts are shown as logarithms;
/// the curve tells the place among the colours, first below and last above, that a value gets.
class PAVANE_API HistogramPlot
{
public:
    enum class Part { none, low, high, curve };

    /// The plot fills `rect`, right and bottom excluded.
    void setRect(const CRect& rect) { rect_ = rect; }
    const CRect& rect() const { return rect_; }
    /// Counts of equal parts of the values shown; none for a map without cells.
    void setCounts(const std::vector<std::int64_t>& counts, TMnMx shown);
    /// The range in force, on its scale, and the play.
    void setLook(const MapScale& scale, const AColorPlay& play);
    const MapScale& scale() const { return scale_; }
    const AColorPlay& play() const { return play_; }
    TMnMx shown() const { return shown_; }
    int isEmpty() const { return counts_.empty() || rect_.IsRectEmpty(); }

    /// Which values are best shown for a map with these ends and this range: the range and a part
    /// more, or all when that is not much more.
    static TMnMx shownFor(TMnMx cells, TMnMx range);

    double xOf(double value) const;
    double valueAt(double x) const;
    /// Height of the counts at column `x` in pixels, 0 where there are none.
    int heightAt(int x) const;
    /// The place 0..1 among the colours that the value at column `x` gets.
    double placeAt(int x) const;
    /// The row of the curve at column `x`.
    int curveAt(int x) const;

    /// What a press at a point takes hold of: a handle within 5 pixels, else the curve within 8 of
    /// it in any direction, else the nearer handle below the plot.
    Part hit(CPoint point) const;
    /// Takes hold of a part: drags and keys count from here.
    void hold(Part part, CPoint point);
    /// The pointer is at `point`; `fine` moves a tenth as fast. The range and play that come of it
    /// are `low`, `high` and `played`; a handle does not pass the other.
    void dragTo(CPoint point, int fine);
    /// One press of an arrow on a part: `right` and `up` are -1, 0 or 1; `coarse` takes ten steps.
    /// Handles move by a two hundredth of what is shown, the curve by a hundredth across, by a
    /// twentieth of its slope up.
    void step(Part part, int right, int up, int coarse);
    double low() const { return low_; }
    double high() const { return high_; }
    const AColorPlay& played() const { return played_; }

private:
    void moveEnd(Part part, double to);

    CRect rect_;
    std::vector<std::int64_t> counts_;
    std::int64_t most_ = 0;
    TMnMx shown_{0, 1};
    MapScale scale_;
    AColorPlay play_;
    Part held_ = Part::none;
    CPoint last_;
    double across_ = 0;
    double up_ = 0;
    double from_ = 0;
    AColorPlay heldPlay_;
    double low_ = 0;
    double high_ = 1;
    AColorPlay played_;
};

}  // namespace pavane
