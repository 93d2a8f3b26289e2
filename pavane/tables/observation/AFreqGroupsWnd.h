#pragma once

#include "pavane/tables/observation/AFreqGroupInfoTbl.h"
#include "pavane/tables/observation/AFreqGroupTbl.h"
#include "pavane/tables/observation/AFreqIDTbl.h"
#include "platform/controls.h"
#include "platform/splitter.h"

#include <memory>
#include <vector>

namespace pavane
{

/// Code of the WM_COMMAND that the parent gets after groups or marks have changed.
inline constexpr unsigned MTN_GROUPS = 0x0A02;

/// The window in which IFs are made frequency groups: the table of IFs, the list of the groups,
/// and the list of frequency selections where the file has several; buttons, a line with what is
/// marked, and one history for all.
class PAVANE_API AFreqGroupsWnd : public ABWindow, private FreqGroupView
{
public:
    AFreqGroupsWnd();
    ~AFreqGroupsWnd() override;

    /// Shows and edits these groups, which outlive the window; null for none. They count as saved.
    void SetParameters(AFreqGroupArray* groups) { steps_->SetParameters(groups); }
    /// Where the list of groups stands: 0 at the right of the IFs, else below them.
    void SetDirect(int direct);
    int GetDirect() const { return direct_; }
    /// Style of the scroll bars of all tables, FSB_...
    void SetScrollMode(int mode);
    /// Shows everything again; groups that the host has changed, too, which cannot be undone.
    void ReConstruct() { steps_->Refresh(); }
    /// Whether the window may close. Without a group it may not, and the user is told; nor when IFs
    /// are in no group or in several, unless `ask` is non-zero and the user says that it may.
    int IsValidClose(int ask);

    /// Whether the groups are others than those that were set, or saved since.
    int IsModified() const { return steps_->isModified(); }
    void SetSaved() { steps_->markSaved(); }
    int canUndo() const { return steps_->canUndo(); }
    int canRedo() const { return steps_->canRedo(); }
    int Undo() { return steps_->undo(); }
    int Redo() { return steps_->redo(); }
    /// What can be undone, for the texts of menus; empty when nothing can.
    CString UndoLabel() const { return CString(steps_->undoLabel()); }
    CString RedoLabel() const { return CString(steps_->redoLabel()); }

    AFreqGroupTbl& GroupTbl() { return groupTbl_; }
    AFreqGroupInfoTbl& InfoTbl() { return infoTbl_; }
    AFreqIDTbl& IDTbl() { return idTbl_; }
    /// The table that the user works in: the one that has, or had, the focus.
    FreqTable& ActiveTable();
    /// Gives the focus to the next table, or the one before; 0 at the last, or the first, so that
    /// a program goes on with other parts of its window.
    int FocusNextTable(int back);

    // Its pages are those of the table that the user works in.
    int GetPages(CDC& dc) override;
    int GetPrintPercent(CDC& dc) override;
    CString GetSubscript() override;
    void PrintWindow(CDC& dc, CRect& rect, int page) override;
    const char* GetWndClassName() override;
    void DrawWindow(CDC& dc, CRect& client, CRect& update) override;

protected:
    int OnCreate(CREATESTRUCT& cs) override;
    void OnSize(unsigned type, int cx, int cy) override;
    void OnSetFocus(CWnd* old) override;
    int OnCommand(unsigned id, unsigned code, CWnd* control) override;

private:
    void GroupsChanged(const FreqGroupNews& news) override;
    void GroupChosen(int) override { showNow(); }
    void ActiveChanged() override { showNow(); }
    void makeTables();
    void makeButtons();
    void layOut();
    void showNow();
    int lineHeight();

    std::shared_ptr<FreqGroupSteps> steps_;
    AFreqGroupTbl groupTbl_;
    AFreqGroupInfoTbl infoTbl_;
    AFreqIDTbl idTbl_;
    CSplitterWnd splitter_;
    std::vector<std::unique_ptr<CButton>> buttons_;
    CStatic status_;
    int direct_ = 0;
};

}  // namespace pavane
