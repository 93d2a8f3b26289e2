#pragma once

#include "pavane/axes/maps/AColorsGraph.h"
#include "pavane/axes/maps/ContouredGraph.h"

namespace pavane
{

/// A colour map with contours over it.
class PAVANE_API ALevelsColorGraph : public ContouredGraph<AColorsGraph>
{
public:
    using ContouredGraph::ContouredGraph;

    void draw(CDC& dc, CRect& rect, TMinMax& range) override;
};

}  // namespace pavane
