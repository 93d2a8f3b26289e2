#include "pavane/tables/ATableWnd.h"

#include "pavane/resources/table_glyphs.h"
#include "pavane/tables/ColumnSizer.h"
#include "pavane/tables/grid/selection_repaint.h"
#include "pavane/tables/table_access.h"
#include "pavane/tables/table_editors.h"
#include "pavane/tables/table_history.h"
#include "pavane/tables/TableFinder.h"
#include "pavane/tables/TablePainter.h"
#include "pavane/tables/TablePaper.h"
#include "pavane/tables/TableSorter.h"
#include "pavane/tables/TableTasks.h"
#include "pavane/tables/TableWatch.h"
#include "platform/accessibility.h"

#include <algorithm>
#include <iterator>
#include <limits>

namespace pavane
{

ATableWnd::ATableWnd()
    : painter_(std::make_unique<Painter>(*this)), paper_(std::make_unique<Paper>(*this)),
      tasks_(std::make_unique<Tasks>(*this)), sorter_(std::make_unique<Sorter>(*this)),
      finder_(std::make_unique<Finder>(*this)), sizer_(std::make_unique<Sizer>(*this)),
      history_(std::make_shared<TableHistory>(*this))
{
    SetFlag(windowNoWaitCursor, 1);
}

ATableWnd::~ATableWnd()
{
    // what heirs would store a value in is gone already
    dropEditors();
    closing_ = 1;
    (void)DestroyWindow();
}

const char* ATableWnd::GetWndClassName() { return "ATableWnd"; }
int ATableWnd::GetClassParms(WNDCLASSA& wc) { return ABWindow::GetClassParms(wc); }

int ATableWnd::OnCreate(CREATESTRUCT& cs)
{
    SetWheelUnit(WHEEL_DELTA);
    return ABWindow::OnCreate(cs);
}

void ATableWnd::OnDestroy()
{
    const TableWatch watch(*this);
    closing_ = 1;
    const int stored = hideEditors();
    if (watch.gone())
        return;
    if (!stored)
        dropEditors();
    endDrag();
    finder_->windowGoes();
    tasks_->windowGoes();
    // a hook may have destroyed the window: what it ran in does not go on, the next window begins
    if (history_->windowGoes())
        history_ = std::make_shared<TableHistory>(*this);
    job_ = nullptr;
    painter_->forget();
    layingOut_ = opening_ = storing_ = closing_ = keyFromEditor_ = 0;
    setOpt(optSkipPaint, 0);
    skipped_.SetRectEmpty();
    ABWindow::OnDestroy();
}

void ATableWnd::setRows(long rows)
{
    const TableWatch watch(*this);
    const int before = grid_.rows();
    grid_.setRows(rows);
    if (grid_.rows() == before)
        return;
    sorter_->recordsChanged(grid_.rows());
    if (watch.gone())
        return;
    moveEditors();
    if (!watch.gone())
        Invalidate();
}

void ATableWnd::setOptions(int bits) { setOpt(bits, 1); }

void ATableWnd::setOpt(int bits, int on)
{
    options_ = on ? options_ | bits : options_ & ~bits;
    grid_.setHeaderRow(isOptSet(optHeaderRow));
}

void ATableWnd::SetCellHeight(int pixels)
{
    grid_.setRowHeight(pixels);
    SetUpWindow();
}

int ATableWnd::getColumnsWidth() const
{
    return static_cast<int>(
        std::min<std::int64_t>(grid_.columns().total(), std::numeric_limits<int>::max()));
}

void ATableWnd::setColumnPar(ATableColumn* columns, long count)
{
    const long most = std::numeric_limits<int>::max();
    grid_.columns().set(columns, static_cast<int>(std::clamp(count, 0L, most)));
    ForgetHistory();
    columnsChanged();
}

void ATableWnd::addColumn(ATableColumn& column)
{
    grid_.columns().add(column);
    columnsChanged();
}

void ATableWnd::deleteColumn(int column)
{
    if (!grid_.columns().remove(column))
        return;
    ForgetHistory();
    // an editor stays on its cell, which may have another number now, or have gone
    const auto follow = [column](TableCell cell) {
        return TableCell{cell.column == column ? 0 : cell.row,
                         cell.column > column ? cell.column - 1 : cell.column};
    };
    if (edit_)
        edit_->setCell(follow(edit_->cell()));
    if (combo_)
        combo_->setCell(follow(combo_->cell()));
    const TableWatch watch(*this);
    sorter_->columnGone(column);
    if (!watch.gone())
        columnsChanged();
}

void ATableWnd::columnsChanged()
{
    const TableWatch watch(*this);
    sizer_->columnsChanged();
    sorter_->columnsChanged();  // may tell that a sorting ended
    if (watch.gone())
        return;
    (void)ColumnToPixel();
    moveEditors();
    if (!watch.gone())
        Invalidate();
}

void ATableWnd::ReConstruct(const ASelectRect& selection)
{
    selection_ = selection;
    SetUpWindow();
}

int ATableWnd::Intersects(CRect a, CRect b)
{
    CRect both;
    return both.IntersectRect(a, b);
}

int ATableWnd::Contains(CRect outer, CRect inner)
{
    return inner.left >= outer.left && inner.top >= outer.top && inner.right <= outer.right &&
           inner.bottom <= outer.bottom;
}

CRect ATableWnd::client() const
{
    CRect rect;
    GetClientRect(rect);
    return rect;
}

// --- selection

void ATableWnd::InvalidateSelect()
{
    InvalidateRect(grid_.rangeRect(selectedCells(selection_, grid_.extent()), client()));
}

void ATableWnd::repaintChange(const ASelectRect& previous)
{
    const CRect all = client();
    const ChangedCells changed =
        changedCells(previous, selection_, grid_.extent(), grid_.cellsIn(all));
    for (int i = 0; i < changed.count; ++i)
        InvalidateRect(grid_.rangeRect(changed.ranges[static_cast<std::size_t>(i)], all));
    if (!IsAccessActive() || selection_ == previous)
        return;
    const TableWatch watch(*this);
    const TableCell focus{selection_.anchorRow, selection_.anchorColumn};
    const bool moved = !(focus == TableCell{previous.anchorRow, previous.anchorColumn});
    if (moved && hasFocus())
        tellAccess(EVENT_OBJECT_FOCUS, focus);
    if (!watch.gone())
        tellAccess(EVENT_OBJECT_SELECTIONWITHIN, {});
}

void ATableWnd::setSelectCell(ASelectRect& previous, int row, int column)
{
    if (grid_.extent().empty())
        return;
    const TableWatch watch(*this);
    ASelectRect before = previous;  // may be the selection itself, or be changed by hooks
    (void)showCell({row, column});  // a refused value keeps the cell out of view
    if (watch.gone() || before == selection_)
        return;
    repaintChange(before);
    if (watch.gone())
        return;
    ASelectRect now = selection_;
    sendSelectionChange(now, before);
}

void ATableWnd::SetSelectOneCell(int row, int column)
{
    if (grid_.extent().empty())
        return;
    const TableCell cell = nearestCell({row, column}, grid_.extent());
    ASelectRect previous = selection_;
    selection_ = oneCell(cell);
    setSelectCell(previous, cell.row, cell.column);
}

/// What the user selected: asks, and shows a cell of it. 0 when it is refused.
int ATableWnd::takeSelection(const ASelectRect& next, TableCell show)
{
    ASelectRect previous = selection_;
    if (!(next == selection_)) {
        const TableWatch watch(*this);
        const ASelectRect before = selection_;
        selection_ = next;
        const int taken = SelChanged(selection_, previous);
        if (watch.gone())
            return 0;
        if (!taken)
            return selection_ = before, 0;
        previous = before;
    }
    const TableWatch watch(*this);
    setSelectCell(previous, show.row, show.column);
    return !watch.gone();
}

// --- what heirs say

int ATableWnd::setCellStr(int, int, const CString& text)
{
    return std::count_if(text.begin(), text.end(), [](char c) { return (c & 0xC0) != 0x80; }) < 3;
}
CString ATableWnd::strCell(int, int) { return {}; }
CString ATableWnd::hdrCellAsStr(int, int, void*) { return {}; }
CString ATableWnd::cellAsStr(int, int, void*) { return {}; }
void ATableWnd::changeCell(int, int) {}
int ATableWnd::isEnableAutoEdit(int, int) { return 0; }
int ATableWnd::SelChanged(ASelectRect&, ASelectRect&) { return 1; }
void ATableWnd::sendSelectionChange(ASelectRect&, ASelectRect&) {}
void ATableWnd::changeHeader(int, int) {}

// The table takes these for a yes, and for nothing chosen, as long as no heir says otherwise; the
// note tells it that nobody did.
int ATableWnd::isEnableAutoComboBox(int, int) { return baseRan_ = 1, 0; }
int ATableWnd::FillComboBox(CComboBox*, int, int) { return baseRan_ = 1, 0; }
int ATableWnd::getFromComboBox(CComboBox*, int, int) { return baseRan_ = 1, 0; }

}  // namespace pavane
