#include "apps/view/square_cells.h"

#include "tessel/rounding.h"

#include <algorithm>

namespace pavane
{

namespace
{

/// A plot narrower or lower than this part of its room is a sliver.
constexpr int thinnestPart = 12;

/// Whether `cells` of one direction, beside `others` of the other, would take `length` of `room`
/// only: they are few themselves, it is not the picture that has an odd shape.
bool isSliver(int cells, int others, int length, int room)
{
    return length < room / thinnestPart && cells < others / thinnestPart;
}

}  // namespace

CRect squareCells(const CRect& plot, int columns, int rows)
{
    if (plot.IsRectEmpty() || columns < 1 || rows < 1)
        return plot;
    const double scale = std::min(double(plot.Width()) / columns, double(plot.Height()) / rows);
    const int width = std::clamp(truncated(columns * scale + 0.5), 1, plot.Width());
    const int height = std::clamp(truncated(rows * scale + 0.5), 1, plot.Height());
    if (isSliver(columns, rows, width, plot.Width()) ||
        isSliver(rows, columns, height, plot.Height()))
        return plot;
    const int left = plot.left + (plot.Width() - width) / 2;
    const int top = plot.top + (plot.Height() - height) / 2;
    return CRect(left, top, left + width, top + height);
}

}  // namespace pavane
