#include "pavane/resources/tracker_messages.h"
#include "pavane/tables/ATableWnd.h"
#include "pavane/tables/table_history.h"
#include "pavane/tables/TableWatch.h"
#include "platform/accessibility.h"
#include "platform/controls.h"
#include "platform/message.h"

namespace pavane
{

void ATableWnd::ForgetHistory() { history_->forget(); }

void ATableWnd::beginEdits(const CString& label) { history_->begin(label); }

void ATableWnd::endEdits()
{
    const std::shared_ptr<TableHistory> history = history_;  // a message may end the table
    history->end();
    const EditRecorded loss = history->takeLoss();
    if (loss == editGaveUpOld || loss == editLost)
        (void)AfxMessageBox(loss == editLost ? allStepsGone : oldStepsGone, MB_OK | MB_ICONWARNING);
}

int ATableWnd::canUndo() { return history_->canUndo(); }
int ATableWnd::canRedo() { return history_->canRedo(); }
CString ATableWnd::undoLabel() { return history_->undoLabel(); }
CString ATableWnd::redoLabel() { return history_->redoLabel(); }
int ATableWnd::Undo() { return walkHistory(0); }
int ATableWnd::Redo() { return walkHistory(1); }

/// A step of the history, and where it was: shown and selected.
int ATableWnd::walkHistory(int forward)
{
    const TableWatch watch(*this);
    const std::shared_ptr<TableHistory> history = history_;
    if (!hideEditors() || watch.gone() || !history->walk(forward) || watch.gone())
        return 0;
    hiddenList_.reset();
    const CellRange changed = history->changed();
    if (!changed.empty()) {
        InvalidateRect(grid_.rangeRect(history->box(), client()));
        const TableCell first{changed.firstRow, changed.firstColumn};
        ASelectRect next = oneCell(first);
        if (isOptSet(optRangeSelect)) {
            next.endRow = changed.lastRow;
            next.endColumn = changed.lastColumn;
        }
        (void)takeSelection(next, first);
        if (!watch.gone() && !(selection_ == next))
            (void)showCell(first);  // an heir keeps the selection elsewhere
        if (watch.gone())
            return 1;
        tellAccess(EVENT_OBJECT_VALUECHANGE, first);
    }
    if (history->takeLoss() == editUndoneInPart)
        (void)AfxMessageBox(undoneInPart, MB_OK | MB_ICONWARNING);
    return 1;
}

int ATableWnd::editCell(int row, int column, const std::function<int()>& store)
{
    const TableWatch watch(*this);
    const std::shared_ptr<TableHistory> history = history_;
    const int record = recordOf(row);
    const int remembers = history->isOpen();
    const CString before = remembers ? cellValue(row, column) : CString();
    if (watch.gone())
        return 0;
    const int taken = store();
    if (watch.gone() || !taken)
        return 0;
    if (remembers) {
        const CString after = cellValue(rowOf(record), column);
        history->note(record, column, before, after);
        if (watch.gone())
            return 0;
    }
    // of a long job its end is told
    if (!job_)
        tellAccess(EVENT_OBJECT_VALUECHANGE, {rowOf(record), column});
    return watch.gone() ? 0 : taken;
}

/// An edit that is a step of its own: `what` and the title of the cell name it. Heirs that have
/// another history make their own step when they store.
int ATableWnd::storeAsStep(const CString& what, int row, int column,
                           const std::function<int()>& store)
{
    const TableWatch watch(*this);
    const CString title = cellTitle(row, column);
    if (watch.gone())
        return 0;
    const LifeWatch life(life_);
    ATableWnd::beginEdits(what + title);
    const int taken = editCell(row, column, store);
    if (life.alive())
        ATableWnd::endEdits();
    return !watch.gone() && taken;
}

// --- values of cells

/// Whether a cell has a list and no field now.
int ATableWnd::isListOnly(int row, int column)
{
    const int flags = grid_.columns().flags(column);
    return (flags & colCombo) && !((flags & colEdit) && isEnableAutoEdit(row, column));
}

CString ATableWnd::cellValue(int row, int column)
{
    const TableWatch watch(*this);
    const int list = isListOnly(row, column);
    if (watch.gone())
        return {};
    return list ? cellAsStr(row, column, nullptr) : strCell(row, column);
}

int ATableWnd::setCellValue(int row, int column, const CString& value)
{
    const TableWatch watch(*this);
    const int list = isListOnly(row, column);
    if (watch.gone())
        return 0;
    return list ? pasteCell(row, column, value) : setCellStr(row, column, value);
}

int ATableWnd::pasteCell(int row, int column, const CString& text)
{
    const TableWatch watch(*this);
    const int list = isListOnly(row, column);
    const int chosen = list && !watch.gone() ? chooseInList(row, column, text) : -1;
    if (chosen >= 0 || watch.gone())
        return chosen > 0;
    return setCellStr(row, column, text);
}

/// Chooses the line that reads `text` in the list of a cell, which nobody sees. 0 when there is no
/// such line or the choice is refused, -1 when no heir fills lists.
int ATableWnd::chooseInList(int row, int column, const CString& text)
{
    constexpr unsigned hiddenId = 1003;
    const TableWatch watch(*this);
    if (!GetSafeHwnd())
        return -1;
    std::unique_ptr<CComboBox> list = std::move(hiddenList_);
    if (!list) {
        list = std::make_unique<CComboBox>();
        if (!list->Create(WS_CHILD | CBS_DROPDOWNLIST, {0, 0, 10, 10}, this, hiddenId))
            return -1;
    }
    list->ResetContent();
    baseRan_ = 0;
    (void)FillComboBox(list.get(), row, column);
    if (watch.gone() || baseRan_)
        return -1;
    int chosen = 0;
    for (int i = 0; i < list->GetCount() && !chosen; ++i) {
        if (list->GetLBText(i) != text)
            continue;
        (void)list->SetCurSel(i);
        baseRan_ = 0;
        chosen = getFromComboBox(list.get(), row, column);
        if (watch.gone())
            return 0;
        chosen = chosen || baseRan_;
        break;
    }
    hiddenList_ = std::move(list);  // for the next cell
    return chosen;
}

}  // namespace pavane
