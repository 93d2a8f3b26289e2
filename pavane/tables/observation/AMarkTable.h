#pragma once

#include "pavane/tables/ATableWnd.h"
#include "pavane/tables/freq/ABMarkTable.h"
#include "pavane/tables/freq/MarkHistory.h"

#include <cstdint>
#include <memory>

namespace pavane
{

class MarkAccess;

/// What of a table can be marked.
enum class MarkItems : std::uint8_t {
    none,
    rows,    ///< item i is record i + 1, in whatever row it is shown
    columns  ///< item i is data column i + 1
};

/// Code of the WM_COMMAND that the parent gets, with the identifier of the table, after marks have
/// changed.
inline constexpr unsigned MTN_MARKS = 0x0A00;

/// A table in which the user marks rows or columns, beside selecting cells. A mark is a box with a
/// tick: of a row in its header cell or in a column for marks, of a column in its header. A click
/// on the box sets or takes it, a double click on the header too; Space does so for all items of
/// the selection, which never begins editing, and the commands All, None, Invert for all. Each is
/// a step of undo.
///
/// Heirs say what there is by hdrCellAsStr and cellAsStr and call SetMarkCount when the number of
/// records (or columns) changes; texts are drawn here.
class PAVANE_API AMarkTable : public ATableWnd, public ABMarkTable
{
public:
    explicit AMarkTable(MarkItems items = MarkItems::rows, int markColumn = 0);
    ~AMarkTable() override;

    /// What is marked, and for rows in which column the boxes stand; 0: in the header column,
    /// before its text.
    void SetMarkItems(MarkItems items, int markColumn = 0);
    MarkItems markItems() const { return items_; }
    int markColumn() const { return markColumn_; }

    /// As of ABMarkTable; what the user did before cannot be undone.
    void SetMarkCount(int count);
    void SetMark(const ABitArray& marks);

    // What the user does; each is a step of undo and gives non-zero when a mark has changed.

    /// Marks the items of the selected cells, or takes their marks when all of them have one.
    int cmMark();
    int cmMark(int first, int last);
    int cmMarkAll();
    int cmMarkNone();
    int cmInvertMarks();
    /// Sets the mark of an item, or takes it.
    int ToggleMark(int item);

    /// "3 of 14 marked".
    CString markCountText() const;
    /// What a box says where only texts go: "marked" or "".
    CString markText(int item) const;
    /// The item of a cell, -1 for none.
    int itemOf(int row, int column) const;
    /// Whether the box of an item stands in the cell.
    int hasBox(int row, int column) const;

    AccessSource* GetAccess() override;
    const char* GetWndClassName() override;
    int GetMenuID() override;
    void amMenuParse(CMenu* popup) override;
    void drawHeaderCell(CDC& dc, CRect& rect, int row, int column) override;
    void drawCell(CDC& dc, CRect& rect, int row, int column, int state) override;
    /// Sets or takes the mark that the header stands for.
    void changeHeader(int row, int column) override;
    int canUndo() override;
    int canRedo() override;
    int Undo() override;
    int Redo() override;
    CString undoLabel() override;
    CString redoLabel() override;
    int RunTableCommand(unsigned id) override;
    /// Whether the texts of a column stand at the right, as numbers do. The base: none.
    virtual int isTextRight(int column);
    /// What a screen reader says of an item beside its name: "marked" or "not marked".
    virtual CString describeItem(int item);

protected:
    /// Takes other marks as one step of undo; non-zero when one changed. Heirs with a history of
    /// their own override this and the undo of the table.
    virtual int takeMarks(const ABitArray& marks, const CString& label);
    /// Repaints and tells the parent; heirs that override it call it.
    void MarksChanged(int first, int last) override;
    /// Scrolls to the item.
    void showItem(int item);

    void OnKeyDown(unsigned key, unsigned repeat, unsigned flags) override;
    void OnChar(unsigned character, unsigned repeat, unsigned flags) override;
    void OnLButtonDown(unsigned flags, CPoint point) override;
    void OnLButtonDblClk(unsigned flags, CPoint point) override;

private:
    int boxAt(CPoint point) const;
    ABitArray selectedItems() const;
    void takeBack(const ABitArray& marks);

    MarkItems items_;
    int markColumn_;
    MarkHistory history_;
    std::unique_ptr<MarkAccess> access_;
};

}  // namespace pavane
