#include "pavane/history/step_label.h"
#include "pavane/resources/menus.h"
#include "pavane/tables/ATableWnd.h"
#include "pavane/tables/ColumnSizer.h"
#include "pavane/tables/grid/cell_forms.h"
#include "pavane/tables/TableFinder.h"
#include "pavane/tables/TableSorter.h"
#include "pavane/tables/TableTasks.h"
#include "pavane/tables/TableWatch.h"
#include "platform/clipboard.h"
#include "platform/CMenu.h"
#include "tessel/value_text.h"

namespace pavane
{

int ATableWnd::GetMenuID() { return static_cast<int>(IDR_TABLE_MENU); }

int ATableWnd::isTime(TableWhen when)
{
    const TableExtent table = grid_.extent();
    const int selected = !selectedCells(selection_, table).empty();
    switch (when) {
    case TableWhen::hasCells:
        return !table.empty();
    case TableWhen::hasSelection:
        return selected;
    case TableWhen::canSelectRange:
        return !table.empty() && isOptSet(optRangeSelect);
    case TableWhen::canEdit:
        if (!table.empty()) {
            const TableCell focus =
                nearestCell({selection_.anchorRow, selection_.anchorColumn}, table);
            return canEdit(focus.row, focus.column);
        }
        return 0;
    case TableWhen::canUndo:
        return canUndo();
    case TableWhen::canRedo:
        return canRedo();
    case TableWhen::canClear:
    case TableWhen::canPaste: {
        const CellRange cells = selectedCells(selection_, table);
        const bool clears = when == TableWhen::canClear;
        return selected &&
               mayHoldEditable(cells.firstColumn, clears ? cells.lastColumn : table.lastColumn) &&
               (clears || IsClipboardFormatAvailable(cellBlockType) ||
                IsClipboardFormatAvailable("text/plain"));
    }
    case TableWhen::canSort:
        return !table.empty() && sorter_->canSort(commandColumn());
    case TableWhen::canSizeColumn:
        return !table.empty() && isOptSet(optSizeColumns);
    case TableWhen::always:
        break;
    }
    return 1;
}

void ATableWnd::amMenuParse(CMenu* popup)
{
    const TableWatch watch(*this);
    for (const TableCommand& command : tableCommands) {
        const int can = isTime(command.when);
        if (watch.gone())
            return;
        (void)popup->EnableMenuItem(command.id, can ? MF_ENABLED : MF_GRAYED);
    }
    const CString undone = undoLabel();
    const CString redone = watch.gone() ? CString() : redoLabel();
    for (CMenu::Line& line : popup->lines())
        if (line.id == ID_TABLE_UNDO || line.id == ID_TABLE_REDO)
            line.text = menuTextOfStep(tableCommandOf(line.id)->text,
                                       line.id == ID_TABLE_UNDO ? undone : redone);
    if (watch.gone())
        return;
    const SortedBy by = sorter_->target();
    const auto checked = [&](SortDirection direction) {
        const bool here = by.direction == SortDirection::stored || by.column == commandColumn();
        return here && by.direction == direction ? MF_CHECKED : MF_UNCHECKED;
    };
    (void)popup->CheckMenuItem(ID_TABLE_SORT_UP, checked(SortDirection::rising));
    (void)popup->CheckMenuItem(ID_TABLE_SORT_DOWN, checked(SortDirection::falling));
    (void)popup->CheckMenuItem(ID_TABLE_SORT_STORED, checked(SortDirection::stored));
    const int sorted = by.column || !sorter_->order().isStored();
    (void)popup->EnableMenuItem(ID_TABLE_SORT_STORED, sorted ? MF_ENABLED : MF_GRAYED);
    removeNever(*popup);
}

/// Takes out the lines of what the table never does, and lines between commands that part nothing.
void ATableWnd::removeNever(CMenu& popup)
{
    const struct {
        int option;
        std::vector<unsigned> commands;
    } needs[] = {
        {optRangeSelect, {ID_TABLE_SELECT_ALL, ID_TABLE_SELECT_ROWS, ID_TABLE_SELECT_COLUMNS}},
        {optSort, {ID_TABLE_SORT_UP, ID_TABLE_SORT_DOWN, ID_TABLE_SORT_STORED}},
        {optSizeColumns, {ID_TABLE_FIT_COLUMN, ID_TABLE_COLUMN_WIDTH}},
    };
    for (const auto& need : needs)
        for (const unsigned id : need.commands)
            if (!isOptSet(need.option))
                (void)popup.RemoveMenu(id, 0);
    const auto isBreak = [](const CMenu::Line& line) { return line.text.empty() && !line.popup; };
    for (int i = popup.GetMenuItemCount() - 1; i >= 0; --i) {
        const auto at = static_cast<std::size_t>(i);
        if (isBreak(popup.lines()[at]) && (i == 0 || isBreak(popup.lines()[at - 1])))
            (void)popup.RemoveMenu(static_cast<unsigned>(i), MF_BYPOSITION);
    }
}

int ATableWnd::commandColumn() const
{
    if (grid_.columns().has(menuColumn_))
        return menuColumn_;
    const TableExtent table = grid_.extent();
    return table.empty()
               ? 0
               : nearestCell({selection_.anchorRow, selection_.anchorColumn}, table).column;
}

int ATableWnd::cancelWork() { return tasks_->cancel(); }

/// All data rows, columns, or both, of the selected cells.
void ATableWnd::selectWhole(int rows, int columns)
{
    const TableWatch watch(*this);
    if (!hideEditors() || watch.gone() || !isTime(TableWhen::canSelectRange))
        return;
    const TableExtent table = grid_.extent();
    ASelectRect next = selection_;
    if (rows) {
        next.anchorColumn = 1;
        next.endColumn = table.lastColumn;
    }
    if (columns) {
        next.anchorRow = 1;
        next.endRow = table.rows;
    }
    ASelectRect previous = selection_;
    const ASelectRect before = selection_;
    if (next == before)
        return;
    selection_ = next;
    const int taken = SelChanged(selection_, previous);
    if (watch.gone())
        return;
    if (!taken)
        return (void)(selection_ = before);
    repaintChange(before);
    ASelectRect old = before;
    if (!watch.gone())
        sendSelectionChange(selection_, old);
}

int ATableWnd::RunTableCommand(unsigned id)
{
    switch (id) {
    case ID_TABLE_COPY_ALL:
        return OnCopyClbrAll(), 1;
    case ID_TABLE_COPY_SELECTION:
        return OnCopyClbrSel(), 1;
    case ID_TABLE_COPY_CELLS:
        return OnCopyClbrCells(), 1;
    case ID_TABLE_PASTE:
        return OnPasteClbr(), 1;
    case ID_TABLE_CLEAR:
        return OnClearCells(), 1;
    case ID_TABLE_SAVE_ALL:
        return OnCopyInFileAll(), 1;
    case ID_TABLE_SAVE_SELECTION:
        return OnCopyInFileSel(), 1;
    case ID_TABLE_EDIT:
        if (const TableWatch watch(*this);
            hideEditors() && !watch.gone() && !grid_.extent().empty()) {
            const TableCell cell =
                nearestCell({selection_.anchorRow, selection_.anchorColumn}, grid_.extent());
            (void)showAuto(cell.row, cell.column);
        }
        return 1;
    case ID_TABLE_SELECT_ALL:
        return selectWhole(1, 1), 1;
    case ID_TABLE_SELECT_ROWS:
        return selectWhole(1, 0), 1;
    case ID_TABLE_SELECT_COLUMNS:
        return selectWhole(0, 1), 1;
    case ID_TABLE_UNDO:
        return (void)Undo(), 1;
    case ID_TABLE_REDO:
        return (void)Redo(), 1;
    case ID_TABLE_FIND:
        return finder_->ask(), 1;
    case ID_TABLE_FIND_NEXT:
        return finder_->next(0), 1;
    case ID_TABLE_FIND_PREVIOUS:
        return finder_->next(1), 1;
    case ID_TABLE_GO_TO_ROW:
        return finder_->goToRow(), 1;
    case ID_TABLE_SORT_UP:
        return (void)sorter_->sort({commandColumn(), SortDirection::rising}), 1;
    case ID_TABLE_SORT_DOWN:
        return (void)sorter_->sort({commandColumn(), SortDirection::falling}), 1;
    case ID_TABLE_SORT_STORED:
        return (void)sorter_->sort({}), 1;
    case ID_TABLE_FIT_COLUMN:
        return (void)(isTime(TableWhen::canSizeColumn) && (sizer_->fit(commandColumn()), 1)), 1;
    case ID_TABLE_COLUMN_WIDTH:
        return (void)(isTime(TableWhen::canSizeColumn) && (sizer_->askWidth(commandColumn()), 1)),
               1;
    default:
        return 0;
    }
}

int ATableWnd::OnCommand(unsigned id, unsigned code, CWnd* control)
{
    if (code == 0 && RunTableCommand(id))
        return 1;
    return ABWindow::OnCommand(id, code, control);
}

// --- what heirs say of it

int ATableWnd::clearCell(int row, int column) { return pasteCell(row, column, {}); }

int ATableWnd::cellNumber(int row, int column, double& value)
{
    return stoval(cellAsStr(row, column, nullptr), value);
}

}  // namespace pavane
