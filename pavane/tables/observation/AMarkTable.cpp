#include "pavane/tables/observation/AMarkTable.h"

#include "pavane/resources/tracker_messages.h"
#include "pavane/tables/observation/mark_access.h"
#include "pavane/tables/observation/mark_box.h"
#include "pavane/tables/TableWatch.h"
#include "platform/CDC.h"
#include "platform/message.h"

#include <algorithm>

namespace pavane
{

AMarkTable::AMarkTable(MarkItems items, int markColumn) : items_(items), markColumn_(markColumn) {}

AMarkTable::~AMarkTable() = default;

const char* AMarkTable::GetWndClassName() { return "AMarkTable"; }

void AMarkTable::SetMarkItems(MarkItems items, int markColumn)
{
    items_ = items;
    markColumn_ = markColumn;
    Invalidate();
}

void AMarkTable::SetMarkCount(int count)
{
    if (count == markCount())
        return;
    history_.clear();
    ABMarkTable::SetMarkCount(count);
    Invalidate();
}

void AMarkTable::SetMark(const ABitArray& marks)
{
    history_.clear();
    ABMarkTable::SetMark(marks);
}

int AMarkTable::isTextRight(int) { return 0; }

AccessSource* AMarkTable::GetAccess()
{
    if (!access_)
        access_ = std::make_unique<MarkAccess>(*this);
    return access_.get();
}

// --- items

int AMarkTable::itemOf(int row, int column) const
{
    const int item = items_ == MarkItems::rows && row >= 1         ? recordOf(row) - 1
                     : items_ == MarkItems::columns && column >= 1 ? column - 1
                                                                   : -1;
    return item < markCount() ? item : -1;
}

int AMarkTable::hasBox(int row, int column) const
{
    const int place = items_ == MarkItems::columns ? row == 0 : column == markColumn_;
    return place && itemOf(row, column) >= 0;
}

CString AMarkTable::markText(int item) const { return isMarked(item) ? "marked" : ""; }

CString AMarkTable::describeItem(int item) { return isMarked(item) ? "marked" : "not marked"; }

CString AMarkTable::markCountText() const
{
    return std::to_string(markedCount()) + " of " + std::to_string(markCount()) + " marked";
}

ABitArray AMarkTable::selectedItems() const
{
    ABitArray items(markCount());
    const ASelectRect selection = const_cast<AMarkTable*>(this)->getSelectRect();
    const CellRange cells = selectedCells(selection, grid().extent());
    if (cells.empty())
        return items;
    if (items_ == MarkItems::columns)
        for (int c = cells.firstColumn; c <= std::min(cells.lastColumn, markCount()); ++c)
            items.set(c - 1);
    if (items_ == MarkItems::rows)
        for (std::int64_t r = cells.firstRow; r <= cells.lastRow; ++r)
            items.set(recordOf(static_cast<int>(r)) - 1);
    return items;
}

void AMarkTable::showItem(int item)
{
    if (item < 0 || items_ == MarkItems::none)
        return;
    ASelectRect same = getSelectRect();
    if (items_ == MarkItems::columns)
        setSelectCell(same, 0, item + 1);
    else
        setSelectCell(same, rowOf(item + 1), 0);
}

// --- marks

int AMarkTable::takeMarks(const ABitArray& marks, const CString& label)
{
    if (marks == GetMark())
        return 0;
    history_.record(GetMark(), marks, label);
    const EditRecorded loss = history_.takeLoss();
    const TableWatch watch(*this);
    ABMarkTable::SetMark(marks);
    if (!watch.gone() && (loss == editLost || loss == editGaveUpOld))
        (void)AfxMessageBox(loss == editLost ? allStepsGone : oldStepsGone, MB_OK | MB_ICONWARNING);
    return 1;
}

void AMarkTable::MarksChanged(int first, int last)
{
    const TableWatch watch(*this);
    const CRect cell = items_ == MarkItems::rows ? cellRect(rowOf(first + 1), markColumn_)
                                                 : cellRect(0, first + 1);
    CRect all;
    GetClientRect(all);
    if (first != last)
        Invalidate();
    else if (items_ == MarkItems::rows)
        InvalidateRect(cell);
    else
        InvalidateRect({cell.left, 0, cell.right, all.bottom});
    if (access_)
        access_->tellMarks(first, last);
    if (watch.gone())
        return;
    if (CWnd* const parent = GetSafeHwnd() ? GetParent() : nullptr)
        (void)parent->SendMessage(WM_COMMAND, (GetDlgCtrlID() & 0xFFFF) | WPARAM{MTN_MARKS} << 16,
                                  static_cast<LPARAM>(GetSafeHwnd()));
}

int AMarkTable::cmMark()
{
    const ABitArray items = selectedItems();
    ABitArray marks = GetMark();
    int areAll = 1;
    for (int i = std::max(items.firstOne(), 0); i < items.count(); ++i)
        areAll &= !items.get(i) || marks.get(i);
    for (int i = std::max(items.firstOne(), 0); i < items.count(); ++i)
        if (items.get(i))
            marks.set(i, !areAll);
    return takeMarks(marks, areAll ? "Unmark" : "Mark");
}

int AMarkTable::cmMark(int first, int last)
{
    ABitArray marks = GetMark();
    first = std::max(first, 0);
    last = std::min(last, markCount() - 1);
    int areAll = 1;
    for (int i = first; i <= last; ++i)
        areAll &= marks.get(i);
    for (int i = first; i <= last; ++i)
        marks.set(i, !areAll);
    return takeMarks(marks, areAll ? "Unmark" : "Mark");
}

int AMarkTable::ToggleMark(int item) { return cmMark(item, item); }

int AMarkTable::cmMarkAll()
{
    ABitArray marks(markCount());
    marks.setAll(1);
    return takeMarks(marks, "Mark all");
}

int AMarkTable::cmMarkNone() { return takeMarks(ABitArray(markCount()), "Mark none"); }

int AMarkTable::cmInvertMarks()
{
    ABitArray marks(markCount());
    for (int i = 0; i < marks.count(); ++i)
        marks.set(i, !isMarked(i));
    return takeMarks(marks, "Invert marks");
}

// --- undo

int AMarkTable::canUndo() { return history_.canUndo() || ATableWnd::canUndo(); }
int AMarkTable::canRedo() { return history_.canRedo() || ATableWnd::canRedo(); }

CString AMarkTable::undoLabel()
{
    return history_.canUndo() ? CString(history_.undoLabel()) : ATableWnd::undoLabel();
}

CString AMarkTable::redoLabel()
{
    return history_.canRedo() ? CString(history_.redoLabel()) : ATableWnd::redoLabel();
}

int AMarkTable::Undo()
{
    if (!history_.canUndo())
        return ATableWnd::Undo();
    ABitArray marks;
    if (!history_.undo(marks))
        return 0;
    takeBack(marks);
    return 1;
}

int AMarkTable::Redo()
{
    if (!history_.canRedo())
        return ATableWnd::Redo();
    ABitArray marks;
    if (!history_.redo(marks))
        return 0;
    takeBack(marks);
    return 1;
}

void AMarkTable::takeBack(const ABitArray& marks)
{
    int first = 0;
    while (first < marks.count() && marks.get(first) == isMarked(first))
        ++first;
    const TableWatch watch(*this);
    ABMarkTable::SetMark(marks);
    if (!watch.gone() && first < markCount())
        showItem(first);
}

// --- painting

void AMarkTable::drawHeaderCell(CDC& dc, CRect& rect, int row, int column)
{
    const TableWatch watch(*this);
    ATableWnd::drawHeaderCell(dc, rect, row, column);
    const CString text = hdrCellAsStr(row, column, nullptr);
    if (watch.gone())
        return;
    CRect place = rect;
    if (hasBox(row, column)) {
        const CRect box = markBox(rect, 0);
        drawMarkBox(dc, box, isMarked(itemOf(row, column)), dc.GetTextColor());
        place.left = box.right;
    }
    drawCellText(dc, place, row, column, text, isTextRight(column));
}

void AMarkTable::drawCell(CDC& dc, CRect& rect, int row, int column, int state)
{
    const TableWatch watch(*this);
    ATableWnd::drawCell(dc, rect, row, column, state);
    if (watch.gone())
        return;
    const int item = itemOf(row, column);
    if (hasBox(row, column))
        return drawMarkBox(dc, markBox(rect, 1), isMarked(item), dc.GetTextColor());
    if (items_ == MarkItems::columns && isMarked(item))
        drawMarkBars(dc, rect, dc.GetTextColor());
    const CString text = cellAsStr(row, column, nullptr);
    if (!watch.gone())
        drawCellText(dc, rect, row, column, text, isTextRight(column));
}

}  // namespace pavane
