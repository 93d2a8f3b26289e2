#pragma once

#include "pavane/resources/freq_commands.h"
#include "pavane/tables/freq/FreqGroupSteps.h"
#include "pavane/tables/observation/AMarkTable.h"

#include <memory>

namespace pavane
{

/// What the tables of frequency groups have in common: the groups and their history, which several
/// tables can share, the commands, and the colours. Groups and IFs count from 0.
class PAVANE_API FreqTable : public AMarkTable, protected FreqGroupView
{
public:
    explicit FreqTable(MarkItems items);
    ~FreqTable() override;

    /// Shows and edits these groups, which outlive the table; null for none. Tables that share
    /// their steps all get them.
    void SetParameters(AFreqGroupArray* groups) { steps_->SetParameters(groups); }
    FreqGroupSteps& steps() const { return *steps_; }
    /// Itself as one of those that the steps tell.
    const FreqGroupView* asView() const { return this; }
    /// Shares the groups and the history of other tables.
    void UseSteps(const std::shared_ptr<FreqGroupSteps>& steps);

    /// The ground of cells of a group, that of the window for -1, and what is read on it.
    COLORREF GetGroupBkColor(int group);
    COLORREF GetGroupTextColor(int group);

    /// Whether a command would do something now.
    int isTimeOf(FreqWhen when);
    int canUndo() override { return steps_->canUndo(); }
    int canRedo() override { return steps_->canRedo(); }
    int Undo() override;
    int Redo() override;
    CString undoLabel() override { return CString(steps_->undoLabel()); }
    CString redoLabel() override { return CString(steps_->redoLabel()); }
    void amMenuParse(CMenu* popup) override;
    int RunTableCommand(unsigned id) override;
    COLORREF GetCellBkColor(int row, int column, int state) override;
    int isTextRight(int column) override { return column > 0; }

    // What the menu does.
    void OnAddGroup();
    void OnDeleteGroup();  ///< the groups of the selected cells
    void OnDeleteAllGroup();
    void OnAllInOne();
    /// Asks for the step.
    void OnFixedStepGroup();

protected:
    /// The group that a cell shows, -1 for none.
    virtual int groupOfCell(int row, int column) = 0;
    /// Adds the marked IFs as a group, and says why when they are none. The number of groups less
    /// 1, -1 when nothing was added.
    int addMarked();
    /// The groups that the selected cells show.
    ABitArray selectedGroups();

    void OnKeyDown(unsigned key, unsigned repeat, unsigned flags) override;
    void OnKeyUp(unsigned key, unsigned repeat, unsigned flags) override;
    void OnSetFocus(CWnd* old) override;

private:
    std::shared_ptr<FreqGroupSteps> steps_;
    COLORREF window_ = CLR_INVALID;  ///< the ground of the window
    int dark_ = 0;                   ///< whether that is dark
};

}  // namespace pavane
