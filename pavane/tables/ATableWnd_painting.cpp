#include "pavane/tables/ATableWnd.h"
#include "pavane/tables/TablePainter.h"
#include "platform/CDC.h"

namespace pavane
{

void ATableWnd::DrawWindow(CDC& dc, CRect& client, CRect& update)
{
    if (isOptSet(optSkipPaint)) {
        // an editor is being opened over this: the area waits for it, or for the next paint
        if (opening_)
            return (void)skipped_.UnionRect(skipped_, update);
        setOpt(optSkipPaint, 0);
        return InvalidateRect(update);
    }
    CRect area;
    if (!area.IntersectRect(client, update))
        return;
    const int saved = dc.SaveDC();
    dc.IntersectClipRect(area);
    dc.SelectObject(&tableFont());
    painter_->paint(dc, area);
    dc.RestoreDC(saved);
}

void ATableWnd::drawHeaderCell(CDC& dc, CRect& rect, int row, int column)
{
    painter_->drawHeader(dc, rect, row, column);
}

void ATableWnd::drawCell(CDC& dc, CRect& rect, int row, int column, int state)
{
    painter_->drawData(dc, rect, row, column, state);
}

void ATableWnd::drawCellText(CDC& dc, const CRect& rect, int row, int column, const CString& text,
                             int right)
{
    painter_->drawText(dc, rect, row, column, text, right);
}

int ATableWnd::textMargins(int row, int column) const { return painter_->textMargins(row, column); }

COLORREF ATableWnd::GetCellBkColor(int, int, int state)
{
    return (state & 2) && !isOptSet(optNoSelColor) ? painter_->colors().selected
                                                   : painter_->colors().window;
}

COLORREF ATableWnd::GetWindowBkColor() { return painter_->colors().background; }

}  // namespace pavane
