#pragma once

#include "pavane/axes/AGraph.h"
#include "pavane/axes/TickSet.h"

namespace pavane
{

/// A graph that draws the lines of another coordinate grid over a plot and gives the plot its ticks
/// in place of its own: see A2DAxis::setSkyGrid. It counts in no range.
class PAVANE_API ABSkyGrid : public AGraph
{
public:
    using AGraph::AGraph;
    /// Makes ready for the range of `axis`, which is fixed by now. 0 when there is nothing to show:
    /// the axis then keeps its own ticks and titles.
    virtual int prepare(const ABAxis& axis) = 0;
    /// Ticks with labels, and the title, of the lower edge (`isY` 0) or the left one (1): at most
    /// about `intervals`, in RP. What is drawn afterwards follows the last call for each edge.
    virtual TickSet edgeTicks(int isY, int intervals) = 0;
    /// Writes the labels of `set` that are not empty anew, each without what the one before says.
    virtual void shortenLabels(int isY, TickSet& set) = 0;
    /// Ticks of the upper (0) or right edge (1), without labels.
    virtual TickSet oppositeTicks(int isY) = 0;
    /// Places (RP) of ticks between the labelled ones, of the lower or left edge, or with
    /// `isOpposite` of the upper or right one.
    virtual std::vector<double> minorTicks(int isY, int isOpposite)
    {
        return (void)isY, (void)isOpposite, std::vector<double>();
    }
};

}  // namespace pavane
