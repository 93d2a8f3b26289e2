#pragma once

#include "pavane/tables/ATableWnd.h"
#include "pavane/trackers/areas/VertexTable.h"

#include <string>

namespace pavane
{

class AAxisWnd;

/// The numbers of the current area of an axis window, in data values: the vertices of a polygon, or
/// centre, size and angle of the other shapes. An edit changes the area and is a step of the
/// collection's undo, a paste is one step; a number that the area cannot take is told and stays
/// out. Tab behind the last number, and Escape, go to the axis window.
class PAVANE_API AAreaTableWnd : public ATableWnd
{
public:
    AAreaTableWnd();
    /// Not owned; null for none.
    void SetAxisWnd(AAxisWnd* window);
    /// Units of the two directions; values of 1 until then.
    void SetUnits(const ValueUnit& x, const ValueUnit& y);
    /// Shows the current area as it is now.
    void Refresh();
    const VertexTable& table() const { return table_; }
    /// Puts a text in place of a shown one, rows and columns from 0. 0 when the area cannot become
    /// that: the user has been told then.
    int SetText(int row, int column, const CString& text);

    const char* GetWndClassName() override;
    void DrawWindow(CDC& dc, CRect& client, CRect& update) override;
    CString hdrCellAsStr(int row, int column, void* context) override;
    CString cellAsStr(int row, int column, void* context) override;
    CString strCell(int row, int column) override { return cellAsStr(row, column, nullptr); }
    int isEnableAutoEdit(int, int) override { return item_ >= 0; }
    int setCellStr(int row, int column, const CString& text) override;
    int pasteCell(int row, int column, const CString& text) override;
    /// The vertices have one order only.
    int isSortable(int) override { return 0; }
    void drawHeaderCell(CDC& dc, CRect& rect, int row, int column) override;
    void drawCell(CDC& dc, CRect& rect, int row, int column, int state) override;
    void kbTab(int count, int shift) override;
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
    void OnDestroy() override;

private:
    int take(int row, int column, const CString& text, std::string& message);
    int changeArea(const VertexTable& changed, const CString& label);
    int walkHistory(int forward);
    void layOutRows();

    AAxisWnd* axis_ = nullptr;
    VertexTable table_;
    ValueUnit unitX_, unitY_;
    int item_ = -1;       ///< area that is shown, -1 for none
    int leaving_ = 0;     ///< the window goes: nothing is stored any more
    int edits_ = 0;       ///< begun and not ended
    int hasEdits_ = 0;    ///< something was stored since the first of them
    VertexTable edited_;  ///< what the area becomes when they end
    CString label_;
};

}  // namespace pavane
