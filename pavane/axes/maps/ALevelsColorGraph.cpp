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
    // NOLINTNEXTLINE(bugprone-parent-virtual-call): cells and contours are drawn above
    ABMapGraph::draw(dc, rect, range);
}

}  // namespace pavane
