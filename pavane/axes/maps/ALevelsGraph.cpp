#include "pavane/axes/maps/ALevelsGraph.h"

#include "pavane/axes/ABAxis.h"

namespace pavane
{

void ALevelsGraph::draw(CDC& dc, CRect& rect, TMinMax& range)
{
    if (axis() && !axis()->getGraphRect().IsRectEmpty())
        contours().draw(dc, *this, nullptr);
    ABMapGraph::draw(dc, rect, range);
}

}  // namespace pavane
