#include "pavane/tables/TablePaper.h"

#include "pavane/tables/TablePainter.h"
#include "pavane/tables/TableWatch.h"
#include "platform/CDC.h"
#include "platform/window_dc.h"

#include <algorithm>
#include <cmath>

namespace pavane
{

namespace
{

constexpr double millimetresOfInch = 25.4;

double millimetres(const CDC& dc, int pixels, int perInch)
{
    return pixels * millimetresOfInch / std::max(dc.GetDeviceCaps(perInch), 1);
}

/// A logical rectangle in device pixels.
CRect devicePixels(const CDC& dc, const CRect& rect)
{
    CPoint corners[] = {rect.TopLeft(), rect.BottomRight()};
    dc.LPtoDP(corners, 2);
    CRect pixels(corners[0].x, corners[0].y, corners[1].x, corners[1].y);
    pixels.NormalizeRect();
    return pixels;
}

PaperRoom roomOf(const CDC& dc, const CRect& rect)
{
    const CRect pixels = devicePixels(dc, rect);
    return {dc.GetDeviceCaps(VERTSIZE), millimetres(dc, pixels.Width(), LOGPIXELSX),
            millimetres(dc, pixels.Height(), LOGPIXELSY)};
}

/// What a page number and a caption of a line take of the height, and no more than a quarter of it.
double withoutTexts(double height)
{
    constexpr double texts = 13;
    return height - std::min(texts, height / 4);
}

/// The height of a character of `font` on a screen, in pixels, and its average width.
TEXTMETRIC screenMetrics(const CFont& font)
{
    TEXTMETRIC metrics;
    CBitmap picture;
    if (!picture.CreateBitmap(1, 1, 1))
        return metrics;
    CMemoryDC dc(picture);
    CFont own = font;
    dc.SelectObject(&own);
    (void)dc.GetTextMetrics(metrics);
    return metrics;
}

/// Maps pixels of the screen onto the paper from a corner of it on, `unit` dots each.
void mapPixels(CDC& dc, CPoint corner, double unit)
{
    constexpr int steps = 1 << 16;
    dc.SetMapMode(MM_ANISOTROPIC);
    (void)dc.SetWindowOrg(0, 0);
    (void)dc.SetViewportOrg(corner.x, corner.y);
    const int dots = std::max(1, static_cast<int>(std::lround(steps * std::min(unit, 1e3))));
    (void)dc.SetWindowExt(steps, steps);
    (void)dc.SetViewportExt(dots, dots);
}

}  // namespace

void ATableWnd::Paper::setSplit(int on) { split_ = on != 0; }

ATableWnd::Paper::Key ATableWnd::Paper::keyOf(const CDC& dc) const
{
    Key key;
    constexpr int caps[] = {HORZSIZE, VERTSIZE, HORZRES, VERTRES, LOGPIXELSX};
    for (std::size_t i = 0; i < std::size(caps); ++i)
        key.caps[i] = dc.GetDeviceCaps(caps[i]);
    const TableGrid& grid = table_.grid_;
    key.headerRow = grid.headerRow();
    key.columns = grid.columns().last();
    key.rowHeight = grid.rowHeight();
    const bool isStretched = !split_ && grid.columns().stretchColumns();
    key.width = isStretched ? 0 : grid.columns().total();
    key.split = split_;
    return key;
}

/// Without a window nothing has been laid out: as it would be on a screen.
void ATableWnd::Paper::measureForPaper()
{
    if (table_.GetSafeHwnd())
        return;
    const TEXTMETRIC metrics = screenMetrics(table_.tableFont());
    table_.grid_.columns().convert(metrics.tmAveCharWidth);
    table_.grid_.setRowHeight(metrics.tmHeight * std::max(table_.rowUnit_, 8) / 8);
}

/// Columns as wide as they are on a sheet, in pixels of the screen. Those that share what a window
/// leaves share what the sheet leaves.
TableColumns ATableWnd::Paper::columnsOn(const PaperRoom& room, const SheetColumns& sheet) const
{
    TableColumns columns = table_.grid_.columns();
    const bool whole = sheet.first == 1 && sheet.last == columns.last();
    if (whole)  // shares are rounded
        (void)columns.stretch(static_cast<std::int64_t>(
            TableScale::usable(room, pages_.rows, table_.grid_.rowHeight()) -
            columns.stretchColumns()));
    return columns;
}

void ATableWnd::Paper::layOut(const CDC& dc, const PaperRoom& room)
{
    measureForPaper();
    const TableGrid& grid = table_.grid_;
    pages_ = pagesOn(room, grid.headerRow());
    const TableColumns& columns = grid.columns();
    sheets_ = {{1, columns.last()}};
    if (split_)
        sheets_ = sheetsAcross(columns, TableScale::usable(room, pages_.rows, grid.rowHeight()));
    percent_ = 100;
    for (const SheetColumns& sheet : sheets_) {
        const TableColumns shown = columnsOn(room, sheet);
        const auto width = static_cast<double>(shown.width(0) + shown.before(sheet.last + 1) -
                                               shown.before(sheet.first));
        const TableScale scale(room, pages_.rows, grid.rowHeight(), width);
        percent_ = std::clamp(static_cast<int>(scale.fit * 100), 1, percent_);
    }
    key_ = keyOf(dc);
}

void ATableWnd::Paper::count(CDC& dc)
{
    CRect clip;
    (void)dc.GetClipBox(clip);
    PaperRoom room = roomOf(dc, clip);
    room.height = withoutTexts(room.height);
    layOut(dc, room);
}

int ATableWnd::Paper::pages() const
{
    return PageGrid{pages_.count(table_.grid_.rows()), static_cast<int>(sheets_.size())}.count();
}

void ATableWnd::Paper::print(CDC& dc, const CRect& rect, int page)
{
    const TableWatch watch(table_);
    const PaperRoom room = roomOf(dc, rect);
    measureForPaper();
    if (!(key_ == keyOf(dc)))
        layOut(dc, room);
    const TableGrid& grid = table_.grid_;
    const PageGrid sheets{pages_.count(grid.rows()), static_cast<int>(sheets_.size())};
    const PageGrid::Place place = sheets.placeOf(page);
    const CellRange rows = pages_.rowsOf(place.down + 1, grid.extent());
    const CRect pixels = devicePixels(dc, rect);
    if (page < 1 || page > sheets.count() || grid.columns().last() < 0 || pixels.IsRectEmpty())
        return;
    const SheetColumns sheet = sheets_[static_cast<std::size_t>(place.across)];
    const TableColumns columns = columnsOn(room, sheet);
    const int headerWidth = columns.width(0);
    const auto left = [&](int column) {
        return column == 0 ? 0
                           : headerWidth + static_cast<int>(columns.before(column) -
                                                            columns.before(sheet.first));
    };
    const TableScale scale(room, pages_.rows, grid.rowHeight(), left(sheet.last + 1));
    const double dots = dc.GetDeviceCaps(LOGPIXELSX) / millimetresOfInch;
    const int saved = dc.SaveDC();
    dc.IntersectClipRect(rect);
    CFont font = table_.tableFont();
    LOGFONT inPixels = font.logFont();
    inPixels.lfHeight = screenMetrics(font).tmHeight;  // the default one has none of its own
    (void)font.CreateFontIndirect(inPixels);
    mapPixels(dc, pixels.TopLeft(), scale.unit * dots);
    dc.SelectObject(&font);
    Painter& painter = *table_.painter_;
    painter.beginPrinting(scale.unit * dots);
    const auto line = [&](int row, int index) {
        const auto edge = [&](int i) {
            return static_cast<int>(std::lround(i * scale.row / scale.unit));
        };
        const auto cell = [&](int column, int from, int to) {
            const CRect box(from, edge(index), to, edge(index + 1));
            if (!box.IsRectEmpty())
                painter.paintCell(dc, box, row, column, 0);
            return !watch.gone();
        };
        if (!cell(0, 0, headerWidth))
            return false;
        for (int c = sheet.first; c <= std::min(sheet.last, grid.columns().last()); ++c)
            if (!cell(c, left(c), left(c + 1)))
                return false;
        return true;
    };
    int index = 0;
    bool goesOn = !grid.headerRow() || line(0, index++);
    for (std::int64_t r = rows.firstRow; goesOn && r <= std::min(rows.lastRow, grid.rows()); ++r)
        goesOn = line(static_cast<int>(r), index++);
    if (goesOn)
        painter.endPrinting(dc);
    dc.RestoreDC(saved);
}

}  // namespace pavane
