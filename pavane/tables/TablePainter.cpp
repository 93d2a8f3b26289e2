#include "pavane/tables/TablePainter.h"

#include "pavane/resources/table_glyphs.h"
#include "pavane/tables/TableSorter.h"
#include "pavane/tables/TableWatch.h"
#include "platform/CDC.h"

#include <algorithm>
#include <iterator>

namespace pavane
{

namespace
{

constexpr int glyphPlace = 14;  // left edge of a mark, from the right edge of its cell
constexpr int textMargin = 4;

/// The frame of the focus cell; on middle greys, which inverted look the same, a solid one.
void drawFocus(CDC& dc, const CRect& rect, COLORREF ground, COLORREF text)
{
    if (TableColors::isInverseSeen(ground))
        return dc.DrawFocusRect(rect);
    dc.FillSolidRect({rect.left, rect.top, rect.right, rect.top + 1}, text);
    dc.FillSolidRect({rect.left, rect.bottom - 1, rect.right, rect.bottom}, text);
    dc.FillSolidRect({rect.left, rect.top, rect.left + 1, rect.bottom}, text);
    dc.FillSolidRect({rect.right - 1, rect.top, rect.right, rect.bottom}, text);
}

}  // namespace

/// Lines along the edges of a cell, one unit wide, those at the right and bottom just outside
/// `rect`.
struct ATableWnd::Painter::EdgeLines {
    Painter& painter;
    CDC& dc;
    const CRect& rect;

    void top(COLORREF color) const
    {
        painter.edge(dc, {rect.left, rect.top, rect.right + 1, rect.top + 1}, color);
    }
    void bottom(COLORREF color) const
    {
        painter.edge(dc, {rect.left, rect.bottom, rect.right + 1, rect.bottom + 1}, color);
    }
    void left(COLORREF color) const
    {
        painter.edge(dc, {rect.left, rect.top, rect.left + 1, rect.bottom + 1}, color);
    }
    void right(COLORREF color) const
    {
        painter.edge(dc, {rect.right, rect.top, rect.right + 1, rect.bottom + 1}, color);
    }
    /// Those of the cells before this one.
    void aboveTop(COLORREF color) const
    {
        painter.edge(dc, {rect.left, rect.top - 1, rect.right + 1, rect.top}, color);
    }
    void beforeLeft(COLORREF color) const
    {
        painter.edge(dc, {rect.left - 1, rect.top, rect.left, rect.bottom + 1}, color);
    }
};

ATableWnd::Painter::Painter(ATableWnd& table) : table_(table)
{
    (void)glyphs_.Create(glyphWidth, glyphHeight);
    for (const auto& rows : tableGlyphs)
        (void)glyphs_.Add(rows, static_cast<int>(std::size(rows)));
}

const TableColors& ATableWnd::Painter::colors()
{
    if (printing_)
        colors_ = TableColors::ofPaper();
    else if (!painting_)
        colors_ = TableColors::ofDesktop();
    return colors_;
}

void ATableWnd::Painter::beginPrinting(double dots)
{
    ++printing_;
    dots_ = dots;
    forgetLines();
}

void ATableWnd::Painter::endPrinting(CDC& dc)
{
    --printing_;
    strokeLines(dc);
    forgetLines();
}

void ATableWnd::Painter::forget()
{
    painting_ = printing_ = 0;
    forgetLines();
}

void ATableWnd::Painter::forgetLines()
{
    lines_.clear();
    lineEnds_.clear();
}

void ATableWnd::Painter::edge(CDC& dc, const CRect& place, COLORREF color)
{
    if (!printing_)
        return dc.FillSolidRect(place, color);
    const bool across = place.Width() > place.Height();
    const auto [end, isNew] =
        lineEnds_.try_emplace({across, across ? place.top : place.left, color}, lines_.size());
    if (!isNew) {
        CRect& before = lines_[end->second].place;
        if (across ? before.right == place.left : before.bottom == place.top) {
            (across ? before.right : before.bottom) = across ? place.right : place.bottom;
            return;
        }
        end->second = lines_.size();
    }
    lines_.push_back({place, color});
}

/// Strokes have any width on paper, where the edges of filled rectangles stand on dots.
void ATableWnd::Painter::strokeLines(CDC& dc)
{
    for (const PaperLine& line : lines_) {
        const CRect& place = line.place;
        if (!dc.IsVector()) {
            dc.FillSolidRect(place, line.color);
            continue;
        }
        // a point of a stroke is the middle of a dot
        const double toMiddle = 0.5 - 0.5 / dots_;
        const CPointF ends[] = {{place.left + toMiddle, place.top + toMiddle},
                                {place.right - 1 + toMiddle, place.bottom - 1 + toMiddle}};
        CPen pen(PS_SOLID, 1, line.color);
        CPen* const before = dc.SelectObject(&pen);
        (void)dc.PolylineF(ends, 2);
        dc.SelectObject(before);
    }
}

void ATableWnd::Painter::paint(CDC& dc, const CRect& area)
{
    const TableWatch watch(table_);
    (void)colors();
    ++painting_;
    const COLORREF ground = table_.GetWindowBkColor();
    if (watch.gone())
        return;
    fillGround(dc, area, ground);
    paintCells(dc, area);
    if (!watch.gone())
        --painting_;
}

/// Paints where no cells are, and under them as long as it is not known that they fill themselves.
void ATableWnd::Painter::fillGround(CDC& dc, const CRect& area, COLORREF ground)
{
    CRect cells = table_.grid_.rangeRect(allCells(table_.grid_.extent()), area);
    if (cellsFill_ <= 0 || cells.IsRectEmpty() || table_.isOptSet(optFlatHeader)) {
        dc.FillSolidRect(area, ground);
        cellsOnGround_ = 1;
        return;
    }
    cellsOnGround_ = 0;
    dc.FillSolidRect({area.left, area.top, area.right, cells.top}, ground);
    dc.FillSolidRect({area.left, cells.top, cells.left, cells.bottom}, ground);
    dc.FillSolidRect({cells.right, cells.top, area.right, cells.bottom}, ground);
    dc.FillSolidRect({area.left, cells.bottom, area.right, area.bottom}, ground);
}

/// The cells that meet `area`. Hooks that draw may change the table: what is left of it goes on.
void ATableWnd::Painter::paintCells(CDC& dc, const CRect& area)
{
    const TableWatch watch(table_);
    const CellRange rows = table_.grid_.rowsIn(area.top, area.bottom);
    const CellRange columns = table_.grid_.columnsIn(area.left, area.right);
    const bool onHeaders = area.left < table_.grid_.headerWidth();
    const bool focused = table_.hasFocus();
    const auto draw = [&](int row, int column) {
        const CRect cell = table_.grid_.cellRect(row, column);
        if (cell.IsRectEmpty())
            return !watch.gone();
        int state = 0;
        if (row > 0 && column > 0 && table_.selection_.contains(row, column))
            state = row == table_.selection_.anchorRow &&
                            column == table_.selection_.anchorColumn && focused
                        ? 3
                        : 2;
        paintCell(dc, cell, row, column, state);
        return !watch.gone();
    };
    if (area.top < table_.grid_.headerHeight())
        for (int c = columns.firstColumn; c <= std::min(columns.lastColumn, table_.columns()); ++c)
            if (!draw(0, c))
                return;
    for (std::int64_t r = rows.firstRow;
         onHeaders && r <= std::min(rows.lastRow, table_.grid_.rows()); ++r)
        if (!draw(static_cast<int>(r), 0))
            return;
    if (onHeaders && area.top < table_.grid_.headerHeight() && !draw(0, 0))
        return;
    for (std::int64_t r = rows.firstRow; r <= std::min(rows.lastRow, table_.grid_.rows()); ++r)
        for (int c = columns.firstColumn; c <= std::min(columns.lastColumn, table_.columns()); ++c)
            if (!draw(static_cast<int>(r), c))
                return;
}

void ATableWnd::Painter::paintCell(CDC& dc, const CRect& cell, int row, int column, int state)
{
    const bool header = row == 0 || column == 0;
    const int saved = dc.SaveDC();
    // flat headers draw the line of the header before them too
    const int before = header && table_.isOptSet(optFlatHeader) ? 1 : 0;
    dc.IntersectClipRect({cell.left - before, cell.top - before, cell.right, cell.bottom});
    CRect rect(cell.left, cell.top, cell.right - 1, cell.bottom - 1);
    if (header) {
        table_.drawHeaderCell(dc, rect, row, column);
        return (void)dc.RestoreDC(saved);
    }
    const TableWatch watch(table_);
    cellFilled_ = 0;
    table_.drawCell(dc, rect, row, column, state);
    if (!watch.gone() && !printing_)
        learnFilling(dc, cell, row, column, state);
    dc.RestoreDC(saved);
}

/// Cells that the base draws fill themselves, and the ground under them need not be painted. A cell
/// of an heir that does otherwise gets its ground, now and ever after.
void ATableWnd::Painter::learnFilling(CDC& dc, const CRect& cell, int row, int column, int state)
{
    if (cellFilled_ && cellsFill_ == 0)
        cellsFill_ = 1;
    if (cellFilled_ || cellsFill_ < 0)
        return;
    cellsFill_ = -1;
    if (cellsOnGround_ || table_.isOptSet(optFlatHeader))
        return;
    const TableWatch watch(table_);
    const COLORREF ground = table_.GetWindowBkColor();
    if (watch.gone())
        return;
    dc.FillSolidRect(cell, ground);
    CRect rect(cell.left, cell.top, cell.right - 1, cell.bottom - 1);
    table_.drawCell(dc, rect, row, column, state);
}

// Deliberate: the two options choose other edges in headers than in data cells; tables are drawn
// with what comes of that.

void ATableWnd::Painter::drawHeader(CDC& dc, const CRect& rect, int row, int column)
{
    const TableColors& c = colors();
    const EdgeLines lines{*this, dc, rect};
    dc.SetBkMode(TRANSPARENT);
    const int vertical = table_.isOptSet(optVertLines);
    const int horizontal = table_.isOptSet(optHorzLines);
    if (!table_.isOptSet(optFlatHeader)) {
        dc.SetTextColor(c.textOn(c.face));
        dc.FillSolidRect(rect, c.face);
        if (row == 0 || vertical) {
            lines.top(c.highlight);
            lines.bottom(c.frame);
        }
        if (column == 0 || horizontal) {
            lines.left(c.highlight);
            lines.right(c.frame);
        }
        return drawSortMark(dc, rect, row, column, c.face);
    }
    constexpr COLORREF black = 0;
    dc.SetTextColor(c.textOn(flatHeaderColor));
    dc.FillSolidRect(rect, flatHeaderColor);
    if (row == 0)
        lines.top(black);
    if (vertical) {
        lines.bottom(black);
        lines.aboveTop(black);
    }
    if (column == 0)
        lines.left(black);
    if (horizontal) {
        lines.right(black);
        lines.beforeLeft(black);
    }
    drawSortMark(dc, rect, row, column, flatHeaderColor);
}

/// The arrow in the header of the column that the rows are ordered by.
void ATableWnd::Painter::drawSortMark(CDC& dc, const CRect& rect, int row, int column,
                                      COLORREF ground)
{
    const SortedBy& by = table_.sorter_->by();
    if (row != 0 || column < 1 || column != by.column || printing_)
        return;
    const COLORREF text = colors().textOn(ground);
    glyphs_.SetColors(text, text, text);
    (void)ImageList_Draw(
        glyphs_, by.direction == SortDirection::rising ? glyphRising : glyphFalling, dc,
        rect.right - glyphPlace, rect.top + (rect.Height() - glyphHeight) / 2, ILD_TRANSPARENT);
}

void ATableWnd::Painter::drawData(CDC& dc, const CRect& rect, int row, int column, int state)
{
    const TableWatch watch(table_);
    dc.SetBkMode(TRANSPARENT);
    const bool flat = table_.isOptSet(optFlatHeader);
    const COLORREF ground =
        flat ? table_.GetWindowBkColor() : table_.GetCellBkColor(row, column, state);
    if (watch.gone())
        return;
    if (!flat && printing_ && ground == colors().window) {
        dc.SetBkColor(ground);  // the paper has that colour
    } else if (!flat) {
        dc.FillSolidRect({rect.left, rect.top, rect.right + !table_.isOptSet(optVertLines),
                          rect.bottom + !table_.isOptSet(optHorzLines)},
                         ground);
        cellFilled_ = 1;
    }
    drawLines(dc, rect, row);
    const COLORREF text = colors().textOn(ground);
    if (state & 1) {
        drawFocus(dc, rect, ground, text);
        CRect inner = rect;
        inner.DeflateRect(1, 1);
        if (table_.isOptSet(optDoubleFocus) && !inner.IsRectEmpty())
            drawFocus(dc, inner, ground, text);
    }
    dc.SetTextColor(text);
    if (!(table_.grid_.columns().flags(column) & colNoGlyph))
        drawGlyph(dc, rect, row, column, ground);
}

void ATableWnd::Painter::drawLines(CDC& dc, const CRect& rect, int row)
{
    const EdgeLines lines{*this, dc, rect};
    const COLORREF color = colors().shadow;
    if (table_.isOptSet(optVertLines))
        lines.right(color);
    if (!table_.isOptSet(optHorzLines))
        return;
    lines.bottom(color);
    if (row == 1 && !table_.grid_.headerRow())
        lines.top(color);
}

/// The mark that tells whether a cell can be edited or chosen; paper has none.
void ATableWnd::Painter::drawGlyph(CDC& dc, const CRect& rect, int row, int column, COLORREF ground)
{
    const int flags = table_.grid_.columns().flags(column);
    if (printing_ || !(flags & (colEdit | colCombo)))
        return;
    const TableWatch watch(table_);
    const TableColors& c = colors();
    glyphs_.SetColors(c.textOn(ground), c.accentOn(ground), c.faintOn(ground));
    if (flags & colEdit) {
        const int image = table_.isEnableAutoEdit(row, column) > 0 ? glyphEdit : glyphNoEdit;
        if (watch.gone())
            return;
        (void)ImageList_Draw(glyphs_, image, dc, rect.right - glyphPlace, rect.top + 2,
                             ILD_TRANSPARENT);
    }
    if (flags & colCombo) {
        const int image = table_.isComboEnabled(row, column) ? glyphList : glyphNoList;
        if (watch.gone())
            return;
        (void)ImageList_Draw(glyphs_, image, dc, rect.right - glyphPlace,
                             rect.top + 1 + (rect.Height() - glyphHeight) / 2, ILD_TRANSPARENT);
    }
}

int ATableWnd::Painter::textMargins(int row, int column) const
{
    const int flags = table_.grid_.columns().flags(column);
    const bool marked = row > 0 ? (flags & (colEdit | colCombo)) && !(flags & colNoGlyph)
                                : column > 0 && column == table_.sorter_->by().column;
    return textMargin + (marked && !printing_ ? glyphPlace + 1 : textMargin);
}

void ATableWnd::Painter::drawText(CDC& dc, const CRect& rect, int row, int column,
                                  const CString& text, int right)
{
    CRect place(rect.left + textMargin, rect.top,
                rect.right + textMargin - textMargins(row, column), rect.bottom);
    // letters of paper are not fitted to pixels: a text that just fits on the screen may be wider
    const int more = printing_ ? dc.GetTextExtent(text).cx - place.Width() : 0;
    if (more > 0 && more < textMargin)
        (right ? place.left : place.right) += right ? -more : more;
    if (place.left < place.right)
        (void)dc.DrawText(text, place,
                          DT_SINGLELINE | DT_VCENTER | DT_NOPREFIX | DT_END_ELLIPSIS |
                              static_cast<unsigned>(right ? DT_RIGHT : DT_LEFT));
}

}  // namespace pavane
