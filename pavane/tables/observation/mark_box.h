#pragma once

#include "platform/api.h"
#include "platform/geometry.h"
#include "platform/types.h"

namespace pavane
{

class CDC;

/// Where the box of a mark stands in a cell: at the left, or in the middle. It goes with the height
/// of the cell, on the screen and on paper.
PAVANE_API CRect markBox(const CRect& cell, int inMiddle);
/// A box, with a tick in it when it is marked, in one colour, so that no colour tells them apart.
PAVANE_API void drawMarkBox(CDC& dc, const CRect& box, int marked, COLORREF color);
/// Bars along the left and right edge of a cell of a marked column.
void drawMarkBars(CDC& dc, const CRect& cell, COLORREF color);

}  // namespace pavane
