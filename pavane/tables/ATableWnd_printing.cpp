#include "pavane/tables/ATableWnd.h"
#include "pavane/tables/TablePainter.h"
#include "pavane/tables/TableWatch.h"
#include "platform/CDC.h"
#include "platform/window_dc.h"

#include <algorithm>
#include <cmath>

namespace pavane
{

CString ATableWnd::GetSubscript() { return "Table 1. ~U~C"; }

int ATableWnd::GetPages(CDC& dc)
{
    pages_ = TablePages::ofHeight(dc.GetDeviceCaps(VERTSIZE), grid_.headerRow());
    pagesKnown_ = 1;
    return pages_.count(grid_.rows());
}

/// Without a window nothing has been laid out: as it would be on a screen.
void ATableWnd::measureForPaper()
{
    CBitmap picture;
    if (!picture.CreateBitmap(1, 1, 1))
        return;
    CMemoryDC dc(picture);
    dc.SelectObject(&tableFont());
    TEXTMETRIC metrics;
    (void)dc.GetTextMetrics(metrics);
    grid_.columns().convert(metrics.tmAveCharWidth);
    grid_.setRowHeight(metrics.tmHeight * std::max(rowUnit_, 8) / 8);
}

void ATableWnd::PrintWindow(CDC& dc, CRect& rect, int page)
{
    const TableWatch watch(*this);
    // the header row may have come or gone since the pages were counted
    if (!pagesKnown_ || pages_.headerRow != grid_.headerRow())
        (void)GetPages(dc);
    if (!GetSafeHwnd())
        measureForPaper();
    const int rowHeight = rect.Height() / pages_.rows;
    const CellRange rows = pages_.rowsOf(page, grid_.extent());
    if (rowHeight < 1 || columns() < 0 || (rows.empty() && page != 1))
        return;
    // widths and text grow from the screen to the paper as the rows do
    const int shownHeight = grid_.rowHeight();
    const double scale = static_cast<double>(rowHeight) / shownHeight;
    TEXTMETRIC metrics;
    const int saved = dc.SaveDC();
    dc.IntersectClipRect(rect);
    CFont font = tableFont();
    dc.SelectObject(&font);
    LOGFONT scaled = font.logFont();
    (void)dc.GetTextMetrics(metrics);
    scaled.lfHeight = std::max(1, static_cast<int>(std::lround(metrics.tmHeight * scale)));
    (void)font.CreateFontIndirect(scaled);
    dc.SelectObject(&font);
    painter_->beginPrinting(std::max(1, static_cast<int>(std::lround(scale))));
    const auto left = [&](int column) {
        const double before = static_cast<double>(grid_.columns().before(column)) * scale;
        return rect.left + static_cast<int>(std::min(std::floor(before + 0.5), 1e9));
    };
    const auto line = [&](int row, int top) {
        for (int c = 0; c <= columns() && left(c) < rect.right; ++c) {
            const CRect cell(left(c), top, left(c + 1), top + rowHeight);
            if (!cell.IsRectEmpty())
                painter_->paintCell(dc, cell, row, c, 0);
            if (watch.gone())
                return false;
        }
        return true;
    };
    int top = rect.top;
    bool goesOn = true;
    if (grid_.headerRow()) {
        goesOn = line(0, top);
        top += rowHeight;
    }
    for (std::int64_t r = rows.firstRow; goesOn && r <= std::min(rows.lastRow, grid_.rows()); ++r) {
        goesOn = line(static_cast<int>(r), top);
        top += rowHeight;
    }
    if (goesOn)
        painter_->endPrinting();
    dc.RestoreDC(saved);
}

}  // namespace pavane
