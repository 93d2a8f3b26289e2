#include "pavane/tables/ATableWnd.h"

#include "pavane/tables/ColumnSizer.h"
#include "pavane/tables/grid/scroll_scale.h"
#include "pavane/tables/TableWatch.h"
#include "platform/accessibility.h"
#include "platform/flat_scroll_bars.h"
#include "platform/system_metrics.h"
#include "platform/window_dc.h"

#include <algorithm>
#include <cstdlib>

namespace pavane
{

CFont& ATableWnd::tableFont()
{
    if (!hasFont_) {
        const CWnd* const parent = IsFlagSet(windowReplaced) ? GetParent() : nullptr;
        font_ = parent ? parent->GetFont() : GetFont();
        hasFont_ = GetSafeHwnd() != 0;
    }
    return font_;
}

int ATableWnd::ColumnToPixel()
{
    if (!GetSafeHwnd())
        return 0;
    CClientDC dc(this);
    dc.SelectObject(&tableFont());
    TEXTMETRIC metrics;
    (void)dc.GetTextMetrics(metrics);
    grid_.columns().convert(metrics.tmAveCharWidth);
    return std::abs(metrics.tmHeight);
}

CRect ATableWnd::areaWithoutBars() const
{
    CRect area = client();
    if (IsScrollBarShown(SB_VERT))
        area.right += GetSystemMetrics(SM_CXVSCROLL);
    if (IsScrollBarShown(SB_HORZ))
        area.bottom += GetSystemMetrics(SM_CXHSCROLL);
    return area;
}

void ATableWnd::SetUpWindow()
{
    // bars that come or go send WM_SIZE, which comes here
    if (!GetSafeHwnd() || layingOut_)
        return;
    const TableWatch watch(*this);
    const CRect area = areaWithoutBars();
    if (!layOutOnce(area) || watch.gone())
        return;
    const CRect then = areaWithoutBars();
    if (!(then == area) && (!layOutOnce(then) || watch.gone()))
        return;
    moveEditors();
    if (!watch.gone())
        Invalidate();
    if (!watch.gone())
        tellAccess(EVENT_OBJECT_REORDER, {});
}

/// 0 when the window went meanwhile.
int ATableWnd::layOutOnce(const CRect& area)
{
    const TableWatch watch(*this);
    const HWND self = GetSafeHwnd();
    layingOut_ = 1;
    (void)InitializeFlatSB(self);
    (void)FlatSB_SetScrollProp(self, WSB_PROP_VSTYLE, scrollMode_, 0);
    (void)FlatSB_SetScrollProp(self, WSB_PROP_HSTYLE, scrollMode_, 0);
    GridMetrics metrics;
    metrics.width = area.Width();
    metrics.height = area.Height();
    metrics.verticalBar = GetSystemMetrics(SM_CXVSCROLL);
    metrics.horizontalBar = GetSystemMetrics(SM_CXHSCROLL);
    metrics.characterHeight = ColumnToPixel();
    sizer_->applyKept();
    if (watch.gone())
        return 0;
    metrics.rowUnit = rowUnit_;
    grid_.layOut(metrics);
    SetHScrlRange(grid_.lastFirstColumn());
    if (!watch.gone())
        SetVScrlRange(grid_.lastFirstRow());
    if (!watch.gone())
        setThumbs();
    if (watch.gone())
        return 0;
    layingOut_ = 0;
    return 1;
}

namespace
{

void setRange(CWnd& window, int bar, int last)
{
    const HWND self = window.GetSafeHwnd();
    SCROLLINFO info;
    info.fMask = SIF_RANGE | SIF_PAGE;
    info.nMin = 1;
    info.nMax = barEnd(last);
    info.nPage = 1;
    (void)FlatSB_SetScrollInfo(self, bar, info, 1);
    if (CWnd::FromHandle(self) == &window)
        window.SetScrollRange(bar, 1, barEnd(last), 1);
}

}  // namespace

void ATableWnd::SetVScrlRange(int lastFirstRow) { setRange(*this, SB_VERT, lastFirstRow); }
void ATableWnd::SetHScrlRange(int lastFirstColumn) { setRange(*this, SB_HORZ, lastFirstColumn); }

int ATableWnd::VPosTo(int thumb) const { return positionOf(thumb, grid_.lastFirstRow()); }
int ATableWnd::ToVPos(int row) const { return thumbOf(row, grid_.lastFirstRow()); }
int ATableWnd::HPosTo(int thumb) const { return positionOf(thumb, grid_.lastFirstColumn()); }
int ATableWnd::ToHPos(int column) const { return thumbOf(column, grid_.lastFirstColumn()); }

void ATableWnd::setThumbs()
{
    (void)FlatSB_SetScrollPos(GetSafeHwnd(), SB_VERT, ToVPos(grid_.firstRow()), 1);
    (void)FlatSB_SetScrollPos(GetSafeHwnd(), SB_HORZ, ToHPos(grid_.firstColumn()), 1);
}

void ATableWnd::OnSize(unsigned type, int cx, int cy)
{
    const TableWatch watch(*this);
    ABWindow::OnSize(type, cx, cy);
    if (!watch.gone())
        SetUpWindow();
}

/// Shows other rows and columns first. 0 when what is being edited is refused.
int ATableWnd::scrollTo(std::int64_t row, std::int64_t column)
{
    const auto isMove = [&] {
        return std::clamp<std::int64_t>(row, 1, grid_.lastFirstRow()) != grid_.firstRow() ||
               std::clamp<std::int64_t>(column, 1, grid_.lastFirstColumn()) != grid_.firstColumn();
    };
    if (!isMove())
        return 1;
    const TableWatch watch(*this);
    if (!hideEditors() || watch.gone())
        return 0;
    // what is invalid is painted where it stands; moved, it would stay as it is
    UpdateWindow();
    if (watch.gone())
        return 0;
    if (!isMove())
        return 1;
    const CRect all = client();
    CRect waiting;
    const bool stale = GetUpdateRect(waiting) != 0;  // a hidden window paints later
    const int oldRow = grid_.firstRow();
    const std::int64_t oldColumn = grid_.columns().before(grid_.firstColumn());
    (void)grid_.setFirst(row, column);
    const std::int64_t dy = (std::int64_t{oldRow} - grid_.firstRow()) * grid_.rowHeight();
    const std::int64_t dx = oldColumn - grid_.columns().before(grid_.firstColumn());
    // the headers of the other direction stay where they are
    CRect moved = all;
    (dy ? moved.top : moved.left) = dy ? grid_.headerHeight() : grid_.headerWidth();
    if (stale || (dx && dy) || std::abs(dx) >= moved.Width() || std::abs(dy) >= moved.Height())
        Invalidate();
    else
        ScrollWnd(this, static_cast<int>(dx), static_cast<int>(dy), moved);
    if (watch.gone())
        return 0;
    setThumbs();
    return !watch.gone();
}

int ATableWnd::showCell(TableCell cell)
{
    const TableCell first = grid_.firstToShow(cell, client());
    return scrollTo(first.row, first.column);
}

int ATableWnd::tableScrollUp() { return scrollRows(-1); }
int ATableWnd::tableScrollDown() { return scrollRows(1); }
int ATableWnd::tableScrollLeft() { return scrollColumns(-1); }
int ATableWnd::tableScrollRight() { return scrollColumns(1); }
int ATableWnd::tableScrollPgUp() { return scrollRows(-grid_.pageRows(client())); }
int ATableWnd::tableScrollPgDown() { return scrollRows(grid_.pageRows(client())); }
int ATableWnd::tableScrollPgLeft() { return scrollColumns(-grid_.pageColumns(client())); }
int ATableWnd::tableScrollPgRight() { return scrollColumns(grid_.pageColumns(client())); }

int ATableWnd::tableVScrollTrack(int thumb) { return scrollTo(VPosTo(thumb), grid_.firstColumn()); }
int ATableWnd::tableHScrollTrack(int thumb) { return scrollTo(grid_.firstRow(), HPosTo(thumb)); }

// A thumb stands for many rows of a long table: one that is let go where it stood scrolls nothing.

void ATableWnd::OnVScroll(unsigned code, unsigned position)
{
    switch (code) {
    case SB_LINEUP:
        return (void)tableScrollUp();
    case SB_LINEDOWN:
        return (void)tableScrollDown();
    case SB_PAGEUP:
        return (void)tableScrollPgUp();
    case SB_PAGEDOWN:
        return (void)tableScrollPgDown();
    case SB_THUMBPOSITION:
        if (static_cast<int>(position) == ToVPos(grid_.firstRow()))
            return;
        [[fallthrough]];
    case SB_THUMBTRACK:
        return (void)tableVScrollTrack(static_cast<int>(position));
    case SB_TOP:
        return (void)scrollTo(1, grid_.firstColumn());
    case SB_BOTTOM:
        return (void)scrollTo(grid_.lastFirstRow(), grid_.firstColumn());
    default:
        return;
    }
}

void ATableWnd::OnHScroll(unsigned code, unsigned position)
{
    switch (code) {
    case SB_LINEUP:
        return (void)tableScrollLeft();
    case SB_LINEDOWN:
        return (void)tableScrollRight();
    case SB_PAGEUP:
        return (void)tableScrollPgLeft();
    case SB_PAGEDOWN:
        return (void)tableScrollPgRight();
    case SB_THUMBPOSITION:
        if (static_cast<int>(position) == ToHPos(grid_.firstColumn()))
            return;
        [[fallthrough]];
    case SB_THUMBTRACK:
        return (void)tableHScrollTrack(static_cast<int>(position));
    case SB_TOP:
        return (void)scrollTo(grid_.firstRow(), 1);
    case SB_BOTTOM:
        return (void)scrollTo(grid_.firstRow(), grid_.lastFirstColumn());
    default:
        return;
    }
}

}  // namespace pavane
