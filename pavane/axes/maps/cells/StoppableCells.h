#pragma once

#include "pavane/axes/maps/cells/AMatrixAccess.h"
#include "tessel/StopFlag.h"

namespace pavane
{

/// The cells of another access while a flag is down; once it is up all are blank, which is gone
/// through fast. What was found from them is of no use then (`isStopped`). Each reader of cells can
/// so be stopped, without a look at the flag of its own.
class PAVANE_API StoppableCells final : public AMatrixAccess
{
public:
    /// Both have to outlive this; `stop` may be null.
    StoppableCells(const AMatrixAccess& cells, const StopFlag* stop) : cells_(&cells), stop_(stop)
    {
    }
    int rows() const override { return cells_->rows(); }
    int columns() const override { return cells_->columns(); }
    void copyRow(int row, int first, int count, float* to) const override;
    const float* floatRow(int row) const override;
    /// Non-zero when cells were kept back.
    int isStopped() const { return isStopped_; }

private:
    void look(int cells) const;

    const AMatrixAccess* cells_;
    const StopFlag* stop_;
    mutable AMatrix<float> blank_;
    /// Cells from one look at the flag to the next: a millisecond at the most.
    static constexpr int cellsOfLook = 1 << 17;
    mutable int unseen_ = cellsOfLook;  ///< cells that were read since the last look
    mutable int isStopped_ = 0;
};

}  // namespace pavane
