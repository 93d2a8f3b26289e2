#pragma once

#include "pavane/axes/maps/AAxisScaleBar.h"
#include "pavane/axes/maps/ALevelsColorGraph.h"
#include "pavane/axes/maps/ALevelsGraph.h"

namespace pavane
{

/// The bar of a contour map: its levels from the lowest to the highest at equal distances, each as
/// it is drawn in the map, with its value, and the unit. Over the colours of a colour map with
/// contours each level lies in the colour of its value.
class PAVANE_API AAxisLevelOP : public AAxisScaleBar
{
public:
    explicit AAxisLevelOP(const ALevelsGraph& graph, int horizontal = 0)
        : AAxisScaleBar(horizontal), graph_(&graph), contours_(&graph.contours())
    {
    }
    explicit AAxisLevelOP(const ALevelsColorGraph& graph, int horizontal = 0)
        : AAxisScaleBar(horizontal), graph_(&graph), colors_(&graph), contours_(&graph.contours())
    {
    }

protected:
    ScaleTicks ticks(int intervals) const override;
    void drawBar(CDC& dc, const CRect& bar, const ScaleTicks& ticks) override;

private:
    const ABMapGraph* graph_;
    const AColorsGraph* colors_ = nullptr;
    const MapContours* contours_;
};

}  // namespace pavane
