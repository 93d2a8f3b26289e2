#pragma once

#include "pavane/axes/AGraphXYPoint.h"

namespace pavane
{

/// Points with error bars in y, in x or in both. A point without a finite error above 0 has no bar;
/// where a bar reaches values that a logarithmic scale does not have, it ends with the plot.
class PAVANE_API AGraphXYErrors : public AGraphXYPoint
{
public:
    using AGraphXYPoint::AGraphXYPoint;

    /// How far the bars reach below and above each point, as long as the points; the host's, as
    /// these are. Without `above` they are symmetric, null for both takes them away.
    void setYErrors(const double* below, const double* above = nullptr);
    /// The same to the left and to the right.
    void setXErrors(const double* before, const double* behind = nullptr);

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

    Errors yErrors_;
    Errors xErrors_;
};

}  // namespace pavane
