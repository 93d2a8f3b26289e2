#pragma once

#include "tessel/api.h"

#include <vector>

namespace pavane
{

/// Cells first to end - 1 of one direction.
struct CellSpan {
    int first = 0;
    int end = 0;
    friend bool operator==(const CellSpan&, const CellSpan&) = default;
};

/// Which cells each pixel of one direction of a map shows.
///
/// Where a pixel is at least as wide as a cell it shows the cells whose centres lie in it, so that
/// each cell belongs to exactly one pixel; where cells are wider it shows the cell in which its own
/// centre lies, so that cells become crisp blocks; the outer edges of the map belong to it.
/// Neighbouring pixels that show the same cells form a group; groups are numbered by rising cells,
/// whichever way the pixels run.
class PAVANE_API PixelCells
{
public:
    /// `edges` are the pixels + 1 borders of the pixels in cells (cell k reaches from k - 0.5 to
    /// k + 0.5), rising or falling; a border that is not finite makes its pixels show nothing.
    void set(const std::vector<double>& edges, int cells);
    /// The same for equal pixels: pixel i reaches from start + i * step to start + (i + 1) * step.
    void setLinear(double start, double step, int pixels, int cells);

    int pixels() const { return static_cast<int>(groupOf_.size()); }
    /// The group of a pixel, -1 where the map does not reach.
    int groupOf(int pixel) const { return groupOf_[static_cast<std::size_t>(pixel)]; }
    int groups() const { return static_cast<int>(spans_.size()); }
    CellSpan span(int group) const { return spans_[static_cast<std::size_t>(group)]; }
    /// Non-zero when group g is the one cell firstCell() + g.
    int oneToOne() const { return oneToOne_; }
    /// All cells of all groups.
    int firstCell() const { return spans_.empty() ? 0 : spans_.front().first; }
    int endCell() const { return spans_.empty() ? 0 : spans_.back().end; }
    /// The same pixels show the same cells.
    friend bool operator==(const PixelCells&, const PixelCells&) = default;

private:
    void append(CellSpan span);
    void finish();

    std::vector<CellSpan> spans_;
    std::vector<int> groupOf_;
    int oneToOne_ = 0;
};

}  // namespace pavane
