#pragma once

#include "apps/clean/ChainEdits.h"
#include "pavane/tables/ATableWnd.h"

#include <functional>
#include <vector>

namespace pavane
{

/// The links of a chain of gains, a row each. Space or a press on its box switches one, Del removes
/// it; Ctrl+Z takes back.
class ChainTable : public ATableWnd
{
public:
    /// The edits outlive the table.
    explicit ChainTable(ChainEdits& edits);

    /// The chain has changed, or is to be shown first; `lines` are of its links.
    void SetLines(std::vector<LinkLine> lines);
    /// From 0; -1 for none.
    int selected() const;

    std::function<void()> edited;  ///< by a key or a press: new lines are wanted
    std::function<void()> chosen;  ///< another row

    const char* GetWndClassName() override { return "PavaneChainTable"; }
    CString hdrCellAsStr(int row, int column, void* context) override;
    CString cellAsStr(int row, int column, void* context) override;
    void drawHeaderCell(CDC& dc, CRect& rect, int row, int column) override;
    void drawCell(CDC& dc, CRect& rect, int row, int column, int state) override;
    void sendSelectionChange(ASelectRect& next, ASelectRect& previous) override;
    int canUndo() override { return !edits_.undoLabel().empty(); }
    int canRedo() override { return !edits_.redoLabel().empty(); }
    int Undo() override;
    int Redo() override;
    CString undoLabel() override { return edits_.undoLabel(); }
    CString redoLabel() override { return edits_.redoLabel(); }

protected:
    unsigned OnGetDlgCode() override { return DLGC_WANTARROWS | DLGC_WANTCHARS; }
    void OnKeyDown(unsigned key, unsigned repeat, unsigned flags) override;
    void OnChar(unsigned character, unsigned repeat, unsigned flags) override;
    void OnLButtonDown(unsigned flags, CPoint point) override;

private:
    void toggle(int row);
    int tell(int isChanged);

    ChainEdits& edits_;
    std::vector<LinkLine> lines_;
};

}  // namespace pavane
