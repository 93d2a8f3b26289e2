#include "pavane/tables/ATableWnd.h"
#include "pavane/tables/LiveValues.h"
#include "platform/window_dc.h"

#include <algorithm>

namespace pavane
{

namespace
{

constexpr std::size_t longestTip = 2000;  // bytes

}  // namespace

/// The whole text of the cell under the pointer, where it does not fit.
CString ATableWnd::OnToolTip(CPoint point)
{
    const TableCell cell = grid_.cellAt(point);
    const CRect rect = grid_.cellRect(cell.row, cell.column);
    if (!rect.PtInRect(point) || edit_ || combo_)
        return ABWindow::OnToolTip(point);
    CString text;
    LiveValues values(*this);
    if (!values.text(cell, text) || text.empty())
        return {};
    if (text.size() > longestTip) {
        std::size_t end = longestTip;
        while (end > 0 && (text[end] & 0xC0) == 0x80)
            --end;  // not within a character
        text = text.substr(0, end) + "...";
    }
    CClientDC dc(this);
    dc.SelectObject(&tableFont());
    const int room = rect.Width() - 1 - textMargins(cell.row, cell.column);
    return dc.GetTextExtent(text).cx > room ? text : CString();
}

/// The first cells of a large selection, so that nobody waits for a status line.
SelectionSums ATableWnd::sumsOfSelection(std::int64_t mostCells)
{
    LiveValues values(*this);
    return sumsOf(values, selectedCells(selection_, grid_.extent()), mostCells);
}

}  // namespace pavane
