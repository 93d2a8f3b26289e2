#include "apps/view/square_cells.h"

#include "tessel/rounding.h"

#include <algorithm>
#include <cmath>

namespace pavane
{

CRect squareCells(const CRect& plot, double xSpan, double ySpan)
{
    if (plot.IsRectEmpty() || !std::isfinite(xSpan) || !std::isfinite(ySpan) || !(xSpan > 0) ||
        !(ySpan > 0))
        return plot;
    const double scale = std::min(plot.Width() / xSpan, plot.Height() / ySpan);
    const int width = std::clamp(truncated(xSpan * scale + 0.5), 1, plot.Width());
    const int height = std::clamp(truncated(ySpan * scale + 0.5), 1, plot.Height());
    const int left = plot.left + (plot.Width() - width) / 2;
    const int top = plot.top + (plot.Height() - height) / 2;
    return CRect(left, top, left + width, top + height);
}

}  // namespace pavane
