#include "pavane/axes/maps/cells/pixel_cells.h"

#include <algorithm>
#include <cmath>

namespace pavane
{

namespace
{

/// Borders that fall on a cell's centre or edge but for rounding count as on it, so that blocks of
/// cells come out equally wide.
constexpr double snap = 1e-7;

int clippedCell(double position, int cells)
{
    return position <= 0 ? 0 : position >= cells ? cells : static_cast<int>(position);
}

/// The cells that the pixel from `low` to `high` shows.
CellSpan spanBetween(double low, double high, int cells)
{
    if (cells < 1 || !std::isfinite(low) || !std::isfinite(high))
        return {};
    if (high - low >= 1 - snap) {
        const CellSpan centres{clippedCell(std::ceil(low - snap), cells),
                               clippedCell(std::ceil(high - snap), cells)};
        if (centres.first < centres.end)
            return centres;
    }
    // the pixel on the far edge of the last cell shows it, as the one on the near edge of the first
    const double place = low + (high - low) / 2 + 0.5;
    if (place < -snap || place > cells + snap)
        return {};
    const int cell = std::min(static_cast<int>(place + snap), cells - 1);
    return {cell, cell + 1};
}

}  // namespace

void PixelCells::set(const std::vector<double>& edges, int cells)
{
    spans_.clear();
    groupOf_.clear();
    for (std::size_t i = 0; i + 1 < edges.size(); ++i)
        append(
            spanBetween(std::min(edges[i], edges[i + 1]), std::max(edges[i], edges[i + 1]), cells));
    finish();
}

void PixelCells::setLinear(double start, double step, int pixels, int cells)
{
    std::vector<double> edges;
    for (int i = 0; i <= pixels; ++i)
        edges.push_back(start + i * step);
    set(edges, cells);
}

void PixelCells::append(CellSpan span)
{
    if (span.first >= span.end) {
        groupOf_.push_back(-1);
        return;
    }
    if (spans_.empty() || !(spans_.back() == span))
        spans_.push_back(span);
    groupOf_.push_back(groups() - 1);
}

void PixelCells::finish()
{
    if (groups() > 1 && spans_.front().first > spans_.back().first) {
        std::reverse(spans_.begin(), spans_.end());
        for (int& group : groupOf_)
            group = group < 0 ? -1 : groups() - 1 - group;
    }
    oneToOne_ = 1;
    for (int g = 0; g < groups(); ++g)
        if (span(g).first != firstCell() + g || span(g).end != firstCell() + g + 1)
            oneToOne_ = 0;
}

}  // namespace pavane
