#pragma once

#include "pavane/history/EditHistory.h"
#include "pavane/tables/grid/cell_range.h"
#include "platform/types.h"

namespace pavane
{

class ATableWnd;

/// Undo and redo of the edits of one table. It remembers records, not the rows that show them, and
/// values as the table's cellValue gives them.
class TableHistory : private EditTarget
{
public:
    explicit TableHistory(ATableWnd& table) : table_(table) {}

    /// Steps nest: the outermost label counts. A step in which no value changed is none.
    void begin(const CString& label);
    void end();
    /// Non-zero while a step is open, so that edits are remembered.
    int isOpen() const { return depth_ > 0 && !walking_; }
    /// The value of a cell of a record became another one.
    void note(int record, int column, const CString& before, const CString& after);

    int canUndo() const { return !isBusy() && steps_.canUndo(); }
    int canRedo() const { return !isBusy() && steps_.canRedo(); }
    CString undoLabel() const { return CString(steps_.undoLabel()); }
    CString redoLabel() const { return CString(steps_.redoLabel()); }
    /// Takes the last step back, or makes the next one again; 0 when there is none, or when the
    /// table went meanwhile. The values are stored by setCellValue, rows beyond the table left out.
    int walk(int forward);
    /// Where the last walk changed values: the cells when they make up a rectangle, else the first.
    CellRange changed() const;
    /// The box around them.
    CellRange box() const { return box_; }
    /// What the user has to be told, once; as of EditHistory.
    EditRecorded takeLoss() { return steps_.takeLoss(); }
    void forget();
    /// Ends the step that is open. Non-zero when a walk runs, which needs this no more.
    int windowGoes();

private:
    int isBusy() const { return depth_ > 0 || walking_; }
    int applyEdit(const EditChange& change) override;
    int applySelection(const EditSelection&) override { return !gone_; }

    ATableWnd& table_;
    EditHistory steps_;
    int depth_ = 0;
    int walking_ = 0;
    int gone_ = 0;    ///< the table is no more; nothing of it is touched
    int forget_ = 0;  ///< as soon as the walk ends
    CellRange box_;
    std::int64_t count_ = 0;
    TableCell first_;
};

}  // namespace pavane
