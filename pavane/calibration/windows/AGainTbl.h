#pragma once

#include "pavane/calibration/EditedGains.h"
#include "pavane/tables/ATableWnd.h"

#include <cstddef>
#include <vector>

namespace pavane
{

/// Gains as a table: a row for each interval, group of IFs, hand and antenna that has a solution or
/// failed to have one. Amplitude and phase can be edited, and whether a solution is flagged; Del
/// flags those of the selected rows, Ins brings them back. Each edit is a step of undo that graph
/// and table share.
class PAVANE_API AGainTbl : public ATableWnd
{
public:
    AGainTbl();
    ~AGainTbl() override;

    /// Shows and edits gains, which are not owned and go after the table or another call; null for
    /// none.
    void SetGains(EditedGains* gains);
    EditedGains* GetGains() const { return gains_; }
    /// Flags the solutions of the selected rows, or takes flags back, as one step of undo. How many
    /// have changed.
    std::size_t FlagSelected(int on);

    const char* GetWndClassName() override;
    CString profileSection() override;
    CString hdrCellAsStr(int row, int column, void* context) override;
    CString cellAsStr(int row, int column, void* context) override;
    CString strCell(int row, int column) override { return cellAsStr(row, column, nullptr); }
    int setCellStr(int row, int column, const CString& text) override;
    int pasteCell(int row, int column, const CString& text) override;
    int clearCell(int, int) override { return 0; }
    int isEnableAutoEdit(int row, int column) override;
    int isEnableAutoComboBox(int row, int column) override;
    int FillComboBox(CComboBox* list, int row, int column) override;
    int getFromComboBox(CComboBox* list, int row, int column) override;
    int cellNumber(int row, int column, double& value) override;
    void drawHeaderCell(CDC& dc, CRect& rect, int row, int column) override;
    void drawCell(CDC& dc, CRect& rect, int row, int column, int state) override;
    void beginEdits(const CString& label) override;
    void endEdits() override;
    int canUndo() override;
    int canRedo() override;
    int Undo() override;
    int Redo() override;
    CString undoLabel() override;
    CString redoLabel() override;

protected:
    void OnKeyDown(unsigned key, unsigned repeat, unsigned flags) override;
    unsigned OnGetDlgCode() override;

private:
    void follow();
    int take(int row, int column, const CString& text, CString& message);
    /// The cell of a shown row; -1 for none.
    std::ptrdiff_t cellAt(int row) const;
    int walkHistory(int forward);

    EditedGains* gains_ = nullptr;
    int listener_ = 0;
    std::vector<std::size_t> cells_;  ///< of the records
};

}  // namespace pavane
