#pragma once

#include "pavane/axes/maps/AAxisScaleBar.h"
#include "pavane/axes/maps/AColorsGraph.h"

namespace pavane
{

/// The bar of a colour map: its colours from the low to the high end of its scale, ticks at the
/// places where the scale has their values, and the unit.
class PAVANE_API AAxisColorOP : public AAxisScaleBar
{
public:
    explicit AAxisColorOP(const AColorsGraph& graph, int horizontal = 0)
        : AAxisScaleBar(horizontal), graph_(&graph)
    {
    }

protected:
    ScaleTicks ticks(int intervals) const override;
    void drawBar(CDC& dc, const CRect& bar, const ScaleTicks& ticks) override;

private:
    const AColorsGraph* graph_;
};

}  // namespace pavane
