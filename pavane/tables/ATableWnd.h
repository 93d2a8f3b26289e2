#pragma once

#include "pavane/containers/LifeWatch.h"
#include "pavane/resources/table_commands.h"
#include "pavane/tables/grid/ASelectRect.h"
#include "pavane/tables/grid/ATableColumn.h"
#include "pavane/tables/grid/RowOrder.h"
#include "pavane/tables/grid/selection_moves.h"
#include "pavane/tables/grid/SelectionSums.h"
#include "pavane/tables/grid/table_options.h"
#include "pavane/tables/grid/TableGrid.h"
#include "pavane/tables/grid/TableSearch.h"
#include "pavane/windows/ABWindow.h"

#include <functional>
#include <iosfwd>
#include <memory>
#include <vector>

namespace pavane
{

class ATableCombo;
class ATableEdit;
class CComboBox;
class TableAccess;
class TableHistory;
struct TableJob;

/// The window of a table. It holds no data: it knows how many rows there are, what the columns are
/// like and what is selected, and asks its virtual members for the rest.
///
/// Rows and columns count from 1; row 0 is the header row, shown with optHeaderRow, column 0 the
/// header column, which is always there and never scrolls. Numbers beyond the table are ignored.
/// The owner sets columns and rows and calls SetUpWindow, or ReConstruct when the data changed.
///
/// Any of the virtual members may change rows, columns or the selection, close the editor, show a
/// message or destroy the window.
class PAVANE_API ATableWnd : public ABWindow
{
public:
    ATableWnd();
    ~ATableWnd() override;

    /// Data rows, cut to 0 to 2^31 - 1. The layout stays until SetUpWindow.
    void setRows(long rows);
    long rows() const { return grid_.rows(); }
    /// Number of the last column, the header column being 0; -1 without columns.
    int columns() const { return grid_.columns().last(); }
    /// Sets option bits (TableOption); never clears one.
    void setOptions(int bits);
    ASelectRect& getSelectRect() { return selection_; }
    /// Takes the selection over and repaints nothing.
    void SetSelectRect(ASelectRect& selection) { selection_ = selection; }
    /// Deliberate: stores a row height and lays out, which computes the height again from the unit;
    /// heirs that lay out themselves see the stored one.
    void SetCellHeight(int pixels);
    int GetCellHeight() const { return grid_.rowHeight(); }
    /// Row height in eighths of the height of a character; below 0 a row takes the whole height.
    void SetCellHeaderUnit(int unit) { rowUnit_ = unit; }
    /// Style of the scroll bars, FSB_...; the desktop draws them in its own.
    void SetScrollMode(int mode) { scrollMode_ = mode; }
    int GetScrollMode() const { return scrollMode_; }
    /// Turns widths in characters into pixels, each once. Height of a character of the font; 0, and
    /// nothing turned, without a window.
    int ColumnToPixel();
    /// Width of all columns.
    int getColumnsWidth() const;
    /// Takes copies of `count` columns, header column first, in place of those there were.
    void setColumnPar(ATableColumn* columns, long count);
    /// Lays out after the data changed and takes the selection over.
    void ReConstruct(const ASelectRect& selection);
    /// Repaints the selected cells.
    void InvalidateSelect();
    /// Shows the cell; then, unless the selection is still `previous`, repaints the change and
    /// tells sendSelectionChange.
    void setSelectCell(ASelectRect& previous, int row, int column);
    /// Selects the nearest data cell alone and shows it. SelChanged is not asked.
    void SetSelectOneCell(int row, int column);
    /// Forgets what could be undone: the records hold other data now. Calls that change columns or
    /// the numbers of records do so by themselves (setColumnPar, deleteColumn, recordsInserted but
    /// at the end, recordsRemoved); setRows does not: records that are gone are left out by undo.
    void ForgetHistory();

    int GetPages(CDC& dc) override;
    /// Below 100 when the columns are wider than a page and all cells are drawn smaller.
    int GetPrintPercent(CDC& dc) override;
    /// Non-zero prints the columns that do not fit on pages of their own, each with the header
    /// column: first down, then across. Zero at first.
    void SetPrintSplit(int on);
    int GetPrintSplit() const;
    CString GetSubscript() override;
    int GetMenuID() override;
    void amMenuParse(CMenu* popup) override;
    void DrawWindow(CDC& dc, CRect& client, CRect& update) override;
    /// Draws the rows of a page (from 1), with the headers. The rows of a full page share the
    /// rectangle, 4.5 mm each at most; a unit is a pixel of the screen then, as much larger or
    /// smaller as the rows are.
    void PrintWindow(CDC& dc, CRect& rect, int page) override;
    const char* GetWndClassName() override;
    int GetClassParms(WNDCLASSA& wc) override;
    void SetUpWindow() override;
    /// The cells, for screen readers.
    AccessSource* GetAccess() override;

    // What heirs say of their data; in this order, new ones go to the end. `context` is null.
    /// Stores an edited text; 0 refuses it. The base takes texts of fewer than 3 characters.
    virtual int setCellStr(int row, int column, const CString& text);
    /// The text that is put into the editor.
    virtual CString strCell(int row, int column);
    virtual CString hdrCellAsStr(int row, int column, void* context);
    virtual CString cellAsStr(int row, int column, void* context);
    /// Puts the selected cells, or all, on the clipboard with their headers: the text that
    /// CopyAsTextInStream makes, and beside it what cell_forms.h writes. 0 when it refuses.
    virtual int CopyToClipboardAsText(int selectionOnly);
    /// Writes it to a stream; 0 when that fails in the middle.
    virtual int CopyAsTextInStream(std::ostream& stream, int selectionOnly);
    /// The user activated a data cell that has no editor.
    virtual void changeCell(int row, int column);
    /// Whether the cell can be edited now.
    virtual int isEnableAutoEdit(int row, int column);
    /// Whether its list can be opened now. The base answers 0 but counts as yes for the table.
    virtual int isEnableAutoComboBox(int row, int column);
    /// Draw a cell. The rectangle leaves out the lines at the right and bottom edge; heirs call the
    /// base and draw the text. `state`: 1 has the focus, 2 selected.
    virtual void drawHeaderCell(CDC& dc, CRect& rect, int row, int column);
    virtual void drawCell(CDC& dc, CRect& rect, int row, int column, int state);
    /// Asked before the user's selection takes effect; 0 brings the previous one back.
    virtual int SelChanged(ASelectRect& next, ASelectRect& previous);
    /// Told of every change.
    virtual void sendSelectionChange(ASelectRect& next, ASelectRect& previous);
    /// The user activated a header cell.
    virtual void changeHeader(int row, int column);
    virtual COLORREF GetCellBkColor(int row, int column, int state);
    /// Where no cells are.
    virtual COLORREF GetWindowBkColor();
    /// Fills the list of a cell; the index to choose at first.
    virtual int FillComboBox(CComboBox* list, int row, int column);
    /// Takes the choice over; 0 refuses it. The base answers 0 but counts as yes for the table.
    virtual int getFromComboBox(CComboBox* list, int row, int column);
    // Keys: how often, and whether Shift is held.
    virtual void kbUp(int count, int shift);
    virtual void kbDown(int count, int shift);
    virtual void kbLeft(int count, int shift);
    virtual void kbRight(int count, int shift);
    virtual void kbPgUp(int count, int shift);
    virtual void kbPgDown(int count, int shift);
    virtual void kbPgLeft(int count, int shift);
    virtual void kbPgRight(int count, int shift);
    /// To the next cell row by row, and back.
    virtual void kbNext(int count, int shift);
    virtual void kbPrev(int count, int shift);
    virtual void kbCtrlHome(int count, int shift);
    virtual void kbCtrlEnd(int count, int shift);
    virtual void kbEnd(int count, int shift);
    virtual void kbHome(int count, int shift);
    virtual void kbEnter(int count, int shift);
    virtual void kbTab(int count, int shift);
    /// The number that a cell stands for: for sorting and for sums. Non-zero when it stands for
    /// one. The base reads the text of the cell.
    virtual int cellNumber(int row, int column, double& value);
    /// Whether rows can be sorted by a data column. The base says yes to all with optSort.
    virtual int isSortable(int column);
    /// What brings the value of a cell back exactly, for undo: bytes that only setCellValue reads;
    /// 0 when they were refused. The base takes strCell and setCellStr; of cells that open
    /// a list only, cellAsStr and pasteCell.
    virtual CString cellValue(int row, int column);
    virtual int setCellValue(int row, int column, const CString& value);
    /// Stores a pasted text, of cells with lists too; 0 refuses it. The base calls setCellStr; in
    /// cells that open a list only it chooses the line with that text, and refuses when none has.
    virtual int pasteCell(int row, int column, const CString& text);
    /// Empties a cell; 0 refuses. The base pastes an empty text.
    virtual int clearCell(int row, int column);
    /// Edits of cells between these two are one step of undo, named `label`; calls nest. The table
    /// calls them when it pastes and clears; what a field or a list stores is a step by itself.
    /// Heirs whose data has a history of its own override these, the four below and the labels.
    virtual void beginEdits(const CString& label);
    virtual void endEdits();
    virtual int canUndo();
    virtual int canRedo();
    /// Takes the last step back, or makes it again, and shows where; 0 when there is none.
    virtual int Undo();
    virtual int Redo();
    /// Section of the profile that keeps the widths of columns that a user sized; empty: none.
    virtual CString profileSection();
    /// What the menu and the keys do (tableCommands in resources/table_commands.h). Non-zero when
    /// the command is one of a table.
    virtual int RunTableCommand(unsigned id);

    /// A line that tells what the table does, and words of the search; empty when there is nothing
    /// to tell any more. The base shows it at the lower edge; heirs may have a better place.
    virtual void showState(const CString& text);
    /// Names of the steps that Undo and Redo would take; empty without one.
    virtual CString undoLabel();
    virtual CString redoLabel();

    /// The record that a shown row holds, as the data is stored, and the row that shows a record;
    /// both from 1. The same number while the table is not sorted. Hooks get rows as shown.
    int recordOf(int row) const;
    int rowOf(int record) const;
    /// Orders the rows, of a long table in slices after the call; the focus stays on its record.
    /// 0 when that column is not sortable, or an edited value is refused.
    int SortRows(const SortedBy& by);
    /// What the rows are ordered by now.
    SortedBy sortedBy() const;
    /// For data that gets records in front of `record`, or loses some from there on: changes the
    /// number of rows as setRows does, and the others stay where they are shown. Selections are of
    /// rows and stay.
    void recordsInserted(int record, int count = 1);
    void recordsRemoved(int record, int count = 1);
    /// Looks for a text behind the focus cell, and selects the cell that has it; in slices after
    /// the call where that takes long. The user is told when it is nowhere. 0 when there is no text
    /// to look for, or an edited value is refused.
    int FindText(const FindWhat& what);
    /// Drops the sorting or searching in hand; 0 when there is none.
    int cancelWork();
    /// Another width for a column, as if the user had dragged its edge; the profile keeps it.
    void SetColumnWidth(int column, int pixels);
    /// As wide as its header, the texts in view and those of 1000 rows more need.
    void FitColumn(int column);
    /// Count, sum, mean, least and greatest of the selected numbers; of the first `mostCells` cells
    /// only, so that a large selection costs no more than a status line may.
    SelectionSums sumsOfSelection(std::int64_t mostCells = 100000);

    CString OnToolTip(CPoint point) override;

protected:
    void addColumn(ATableColumn& column);
    void deleteColumn(int column);
    /// Range of a bar for the greatest first row or column.
    void SetVScrlRange(int lastFirstRow);
    void SetHScrlRange(int lastFirstColumn);
    /// Between the first row or column and the place of its bar, which has 16 bits.
    int VPosTo(int thumb) const;
    int ToVPos(int row) const;
    int HPosTo(int thumb) const;
    int ToHPos(int column) const;
    void setOpt(int bits, int on);
    /// Non-zero when every bit is set.
    int isOptSet(int bits) const { return (options_ & bits) == bits; }
    static int Intersects(CRect a, CRect b);
    /// Non-zero when `inner` lies in `outer`.
    static int Contains(CRect outer, CRect inner);
    /// Client rectangle of a cell, empty when it is not there.
    CRect cellRect(int row, int column) const { return grid_.cellRect(row, column); }
    /// Runs `store`, which stores another value in a cell, and remembers the value before and after
    /// when a step of undo is open (beginEdits); the result of `store`, 0 when the window is gone.
    int editCell(int row, int column, const std::function<int()>& store);
    /// What a cell is called in messages and steps, by its headers: "Name 3".
    CString cellTitle(int row, int column);
    int hasFocus() const { return GetFocus() == this; }
    /// Whether rows are being sorted or searched, which Escape ends.
    int isWorking() const;
    const TableGrid& grid() const { return grid_; }
    /// Draws the text of a cell in its rectangle, in the colour that the dc has, with "..." where
    /// it does not fit; `right` non-zero puts it at the right. Leaves room for the mark of cells
    /// that can be edited.
    void drawCellText(CDC& dc, const CRect& rect, int row, int column, const CString& text,
                      int right = 0);
    /// Pixels of a cell, left and right, that its text has to leave.
    int textMargins(int row, int column) const;

    // Editors. Results: non-zero when there is none any more; 0 when the value was refused.
    int hideEdit();
    int hideCombo();
    int hideEditors() { return hideEdit() && hideCombo(); }
    /// Open an editor on a cell; non-zero when there is one.
    int showEdit(int row, int column);
    int showCombo(int row, int column);
    int showAuto(int row, int column);

    // Scrolling stores what is being edited first; 0 when that is refused.
    int tableScrollUp();
    int tableScrollDown();
    int tableScrollLeft();
    int tableScrollRight();
    int tableScrollPgUp();
    int tableScrollPgDown();
    int tableScrollPgLeft();
    int tableScrollPgRight();
    int tableVScrollTrack(int thumb);
    int tableHScrollTrack(int thumb);

    int OnCreate(CREATESTRUCT& cs) override;
    void OnDestroy() override;
    void OnSize(unsigned type, int cx, int cy) override;
    void OnSetFocus(CWnd* old) override;
    void OnKillFocus(CWnd* next) override;
    void OnKeyDown(unsigned key, unsigned repeat, unsigned flags) override;
    void OnChar(unsigned character, unsigned repeat, unsigned flags) override;
    void OnLButtonDown(unsigned flags, CPoint point) override;
    void OnLButtonUp(unsigned flags, CPoint point) override;
    void OnLButtonDblClk(unsigned flags, CPoint point) override;
    void OnRButtonDown(unsigned flags, CPoint point) override;
    void OnMouseMove(unsigned flags, CPoint point) override;
    void OnCaptureChanged(CWnd* next) override;
    int OnSetCursor(CWnd* window, unsigned hitArea, unsigned message) override;
    void OnTimer(unsigned id) override;
    int OnMouseWheel(unsigned flags, int delta, CPoint screen) override;
    int OnMouseHWheel(unsigned flags, int delta, CPoint screen) override;
    void OnVScroll(unsigned code, unsigned position) override;
    void OnHScroll(unsigned code, unsigned position) override;
    void OnContextMenu(CWnd* window, CPoint screen) override;
    int OnCommand(unsigned id, unsigned code, CWnd* control) override;
    /// The list of a cell lost the focus.
    void OnHideCombo();
    void OnCopyClbrAll();
    void OnCopyClbrSel();
    void OnCopyClbrCells();
    void OnPasteClbr();
    void OnClearCells();
    void OnCopyInFileAll();
    void OnCopyInFileSel();
    /// Whether a command would do something now.
    int isTime(TableWhen when);

private:
    friend class ATableEdit;
    friend class ATableCombo;
    friend class TableAccess;
    friend class TableHistory;
    friend class TableWatch;
    class EditingPaste;
    class JobScope;
    class TextsOfTable;
    class Tasks;    // TableTasks.h
    class Sorter;   // TableSorter.h
    class Painter;  // TablePainter.h
    class Paper;    // TablePaper.h
    class Finder;   // TableFinder.h
    class Sizer;    // ColumnSizer.h

    CRect client() const;
    CFont& tableFont();
    CRect areaWithoutBars() const;
    int layOutOnce(const CRect& area);
    void columnsChanged();

    int scrollTo(std::int64_t row, std::int64_t column);
    int scrollRows(std::int64_t rows)
    {
        return scrollTo(grid_.firstRow() + rows, grid_.firstColumn());
    }
    int scrollColumns(std::int64_t columns)
    {
        return scrollTo(grid_.firstRow(), grid_.firstColumn() + columns);
    }
    void setThumbs();
    int showCell(TableCell cell);

    int takeSelection(const ASelectRect& next, TableCell show);
    void repaintChange(const ASelectRect& previous);
    void moveFocus(TableMove move, int count, int shift);
    void goToNextEditor(int back);
    void dragTo(CPoint point, int scroll);
    void endDrag();

    int isComboEnabled(int row, int column);
    int canEdit(int row, int column);
    void closeEditor(std::unique_ptr<CWnd> editor);
    void dropEditors();
    void endOpening();
    void forgetClosed();
    void moveEditors();
    void editorLostFocus();
    void keyFromEditor(unsigned key, unsigned repeat);

    int isListOnly(int row, int column);
    int chooseInList(int row, int column, const CString& text);
    int storeAsStep(const CString& what, int row, int column, const std::function<int()>& store);
    int walkHistory(int forward);
    int mayHoldEditable(int firstColumn, int lastColumn) const;
    int copyCells(int selectionOnly, int headers);
    void tellOfCopy(int copied);
    void tellAccess(unsigned event, TableCell cell);

    void saveText(int selectionOnly);
    void selectWhole(int rows, int columns);
    void removeNever(CMenu& popup);
    /// The column that commands of columns act on: that whose header the menu was opened on, else
    /// that of the focus cell, or the nearest; 0 without cells.
    int commandColumn() const;

    LifeToken life_;
    TableGrid grid_;
    ASelectRect selection_;
    int options_ = 0;
    int rowUnit_ = 10;
    int scrollMode_ = 0;
    CFont font_;
    int hasFont_ = 0;
    int layingOut_ = 0;
    int baseRan_ = 0;        ///< a hook of the base itself ran
    int opening_ = 0;        ///< an editor is being made
    CRect skipped_;          ///< what was to be painted meanwhile
    int storing_ = 0;        ///< an editor is handing its value over
    int closing_ = 0;        ///< the window goes: a refused value is dropped
    int keyFromEditor_ = 0;  ///< the key that is being handled was pressed in an editor
    std::unique_ptr<ATableEdit> edit_;
    std::unique_ptr<ATableCombo> combo_;
    std::vector<std::unique_ptr<CWnd>> closed_;  ///< editors that may be on the stack still
    int menuColumn_ = -1;  ///< on whose header the context menu is open; below 0, on none
    std::unique_ptr<Painter> painter_;
    std::unique_ptr<Paper> paper_;
    std::unique_ptr<Tasks> tasks_;
    std::unique_ptr<Sorter> sorter_;
    std::unique_ptr<Finder> finder_;
    std::unique_ptr<Sizer> sizer_;
    std::shared_ptr<TableHistory> history_;  ///< shared with the undo that runs
    std::unique_ptr<TableAccess> access_;
    std::unique_ptr<CComboBox> hiddenList_;  ///< which pasted texts are looked up in
    TableJob* job_ = nullptr;                ///< a long one that runs now
    const char* copyProblem_ = nullptr;      ///< why the last copy did not happen
};

/// Rows that a notch of the wheel scrolls a table by, in all tables; 1 at first, at least 1.
PAVANE_API void SetTableWheelRows(int rows);
PAVANE_API int GetTableWheelRows();
/// Whether the wheel scrolls columns while Shift is held; 0 at first.
PAVANE_API void SetTableShiftWheel(int on);
PAVANE_API int GetTableShiftWheel();

}  // namespace pavane
