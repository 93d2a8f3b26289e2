#pragma once

#include "pavane/axes/maps/ABMapGraph.h"
#include "pavane/axes/maps/ContouredGraph.h"

namespace pavane
{

/// The contours of a map. Levels are absolute, per cent of the peak or multiples of the noise, and
/// chosen from both when nothing is said; lines of negative levels are dashed.
class PAVANE_API ALevelsGraph : public ContouredGraph<ABMapGraph>
{
public:
    using ContouredGraph::ContouredGraph;

    void draw(CDC& dc, CRect& rect, TMinMax& range) override;
};

}  // namespace pavane
