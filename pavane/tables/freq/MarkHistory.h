#pragma once

#include "pavane/history/EditHistory.h"
#include "tessel/ABitArray.h"
#include "tessel/api.h"

#include <string_view>

namespace pavane
{

/// Undo and redo of marks. What is kept of a step is what differs.
class PAVANE_API MarkHistory
{
public:
    /// One step; marks that are equal make none.
    void record(const ABitArray& before, const ABitArray& after, std::string_view label);
    int canUndo() const { return history_.canUndo(); }
    int canRedo() const { return history_.canRedo(); }
    std::string_view undoLabel() const { return history_.undoLabel(); }
    std::string_view redoLabel() const { return history_.redoLabel(); }
    /// Puts the marks of before the last step, or after the next one, into `marks`; 0 without one.
    int undo(ABitArray& marks);
    int redo(ABitArray& marks);
    /// What the user has to be told, once; see EditHistory.
    EditRecorded takeLoss() { return history_.takeLoss(); }
    void clear() { history_.clear(); }

private:
    EditHistory history_;
};

}  // namespace pavane
