#include "pavane/axes/maps/cells/StoppableCells.h"

#include <algorithm>
#include <limits>

namespace pavane
{

namespace
{

constexpr float blankCell = std::numeric_limits<float>::quiet_NaN();

}  // namespace

void StoppableCells::look(int cells) const
{
    // a row of few cells may be drawn as many rows of pixels
    unseen_ = std::min(unseen_, cellsOfLook) + std::clamp(cells, cellsOfLook / 4, cellsOfLook);
    if (!stop_ || isStopped_ || unseen_ < cellsOfLook)
        return;
    unseen_ = 0;
    isStopped_ = stop_->isStopped();
}

void StoppableCells::copyRow(int row, int first, int count, float* to) const
{
    look(count);
    if (isStopped_)
        std::fill_n(to, count, blankCell);
    else
        cells_->copyRow(row, first, count, to);
}

const float* StoppableCells::floatRow(int row) const
{
    if (!isStopped_) {
        const float* const cells = cells_->floatRow(row);
        if (cells)  // else the cells are copied, and counted then
            look(columns());
        if (!isStopped_)
            return cells;
    }
    if (blank_.cells() < 1) {
        if (!blank_.allocate(1, columns()))
            return nullptr;
        blank_.fill(blankCell);
    }
    return blank_.data();
}

}  // namespace pavane
