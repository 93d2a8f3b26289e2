#pragma once

#include "apps/clean/peak_point.h"
#include "pavane/axes/windows/AMultiPlotWnd.h"

#include <vector>

namespace pavane
{

class AGraph;

/// Peak of the residual (logarithmic) and flux of the model against iterations, of all rounds that
/// lead to the shown one and of the one that runs.
class PeakCurve : public AMultiPlotWnd
{
public:
    PeakCurve();

    /// The points of finished rounds, in order; those of a round that ran are forgotten.
    void SetRounds(std::vector<PeakPoint> points);
    /// One more, of the round that runs.
    void Add(const PeakPoint& point);
    const std::vector<PeakPoint>& points() const { return points_; }

    const char* GetWndClassName() override { return "PavanePeakCurve"; }

private:
    void show();

    std::vector<PeakPoint> points_;
    std::vector<double> peakAt_, peaks_, fluxAt_, fluxes_;
    std::vector<AGraph*> graphs_;  ///< the axis's
    int fluxScale_ = -1;
};

}  // namespace pavane
