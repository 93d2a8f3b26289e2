#pragma once

#include "apps/view/UvPlotGraph.h"
#include "pavane/axes/AGraph.h"

namespace pavane
{

/// The legend of a plot's colours, in the corner where it hides the least; nothing where there is
/// no room for it.
class UvLegendGraph : public AGraph
{
public:
    /// `plot` is of the same axis.
    UvLegendGraph(ABAxis* axis, const UvPlotGraph& plot) : AGraph(axis, 0), plot_(plot) {}
    void draw(CDC& dc, CRect& rect, TMinMax& range) override;

private:
    CRect placeOf(CSize size, int inset) const;

    const UvPlotGraph& plot_;
};

}  // namespace pavane
