#include "pavane/axes/maps/ALevelsColorGraph.h"

#include "pavane/axes/ABAxis.h"

namespace pavane
{

void ALevelsColorGraph::draw(CDC& dc, CRect& rect, TMinMax& range)
{
    if (axis() && !axis()->getGraphRect().IsRectEmpty() && !cellRange().isEmpty()) {
        drawCells(dc);
        contours().draw(dc, *this, this);
    }
    ABMapGraph::draw(dc, rect, range);
}

}  // namespace pavane
