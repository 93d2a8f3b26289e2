#pragma once

#include "pavane/axes/AGraphXYPoint.h"

#include <cstdint>

namespace pavane
{

/// What of its points a graph with errors draws. Axes that have several such graphs draw the bars
/// of all before the points of any, so that no bar hides a point.
enum class ErrorParts : std::uint8_t { both, bars, points };

/// Points with error bars in y, in x or in both. A point without a finite error above 0 has no bar;
/// where a bar reaches values that a logarithmic scale does not have, it ends with the plot, and
/// does not count in the range. Bars are lighter than points; so dense ones that their caps would
/// touch have none.
class PAVANE_API AGraphXYErrors : public AGraphXYPoint
{
public:
    using AGraphXYPoint::AGraphXYPoint;

    /// How far the bars reach below and above each point, as long as the points; the host's, as
    /// these are. Without `above` they are symmetric, null for both takes them away.
    void setYErrors(const double* below, const double* above = nullptr);
    /// The same to the left and to the right.
    void setXErrors(const double* before, const double* behind = nullptr);

    /// What draw draws from now on; both at first.
    void setParts(ErrorParts parts) { parts_ = parts; }
    /// The ends of the bar of point i; false where it has none.
    bool yBar(int i, double& low, double& high) const { return yErrors_.bar(y_, i, low, high); }
    bool xBar(int i, double& low, double& high) const { return xErrors_.bar(x_, i, low, high); }

    /// With the bars.
    void getMinMax(TMinMax& range) const override;
    void draw(CDC& dc, CRect& rect, TMinMax& range) override;
    void drawSample(CDC& dc, const CRect& box) override;

private:
    /// The ends of the bars of one direction.
    struct Errors {
        const double* less = nullptr;
        const double* more = nullptr;
        bool bar(const double* values, int i, double& low, double& high) const;
    };
    class Bars;
    void drawBars(CDC& dc);
    bool areCrowded(int cap) const;

    Errors yErrors_;
    Errors xErrors_;
    ErrorParts parts_ = ErrorParts::both;
};

}  // namespace pavane
