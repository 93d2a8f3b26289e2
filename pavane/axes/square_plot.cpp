#include "pavane/axes/square_plot.h"

#include "tessel/rounding.h"

#include <algorithm>

namespace pavane
{

namespace
{

/// A plot narrower or lower than this part of its room is a sliver.
constexpr int thinnestPart = 12;

/// Few cells of one direction, beside the `others`: it is not the room that has an odd shape.
bool isSliver(int length, int room, double cells, double others)
{
    return length < room / thinnestPart && cells < others / thinnestPart;
}

}  // namespace

CRect squarePlot(const CRect& plot, double columns, double rows)
{
    if (plot.IsRectEmpty() || !(columns > 0) || !(rows > 0))
        return plot;
    const double scale = std::min(plot.Width() / columns, plot.Height() / rows);
    const int width = std::clamp(truncated(columns * scale + 0.5), 1, plot.Width());
    const int height = std::clamp(truncated(rows * scale + 0.5), 1, plot.Height());
    if (isSliver(width, plot.Width(), columns, rows) ||
        isSliver(height, plot.Height(), rows, columns))
        return plot;
    const int left = plot.left + (plot.Width() - width) / 2;
    const int top = plot.top + (plot.Height() - height) / 2;
    return CRect(left, top, left + width, top + height);
}

}  // namespace pavane
