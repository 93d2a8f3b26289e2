#pragma once

#include "pavane/tables/ATableWnd.h"
#include "pavane/tables/table_colors.h"
#include "platform/image_list.h"

#include <map>
#include <tuple>
#include <vector>

namespace pavane
{

/// How a table paints its cells: grounds, edges, marks and texts, on the screen and on paper. Hooks
/// that draw may end the table, and this with it.
class ATableWnd::Painter
{
public:
    explicit Painter(ATableWnd& table);

    /// Those of paper while it prints, else those of the desktop.
    const TableColors& colors();
    /// Paints what meets `area`, ground and cells.
    void paint(CDC& dc, const CRect& area);
    /// One cell, clipped to it; `cell` has the lines at its right and bottom edge in it.
    void paintCell(CDC& dc, const CRect& cell, int row, int column, int state);
    // What the base's hooks draw.
    void drawHeader(CDC& dc, const CRect& rect, int row, int column);
    void drawData(CDC& dc, const CRect& rect, int row, int column, int state);
    void drawText(CDC& dc, const CRect& rect, int row, int column, const CString& text, int right);
    int textMargins(int row, int column) const;

    /// From here to endPrinting cells are those of a page, of which a logical unit is so many dots.
    /// Their lines are drawn at the end: those that run on from cell to cell as one.
    void beginPrinting(double dots);
    void endPrinting(CDC& dc);
    /// A window that a hook destroyed can be made again.
    void forget();

private:
    /// A line of paper, as wide as a unit.
    struct PaperLine {
        CRect place;
        COLORREF color;
    };
    /// Whether it runs across, where, and its colour.
    using LineKey = std::tuple<bool, int, COLORREF>;
    struct EdgeLines;
    void strokeLines(CDC& dc);
    void forgetLines();
    void edge(CDC& dc, const CRect& place, COLORREF color);
    void fillGround(CDC& dc, const CRect& area, COLORREF ground);
    void paintCells(CDC& dc, const CRect& area);
    void learnFilling(CDC& dc, const CRect& cell, int row, int column, int state);
    void drawSortMark(CDC& dc, const CRect& rect, int row, int column, COLORREF ground);
    void drawLines(CDC& dc, const CRect& rect, int row);
    void drawGlyph(CDC& dc, const CRect& rect, int row, int column, COLORREF ground);

    ATableWnd& table_;
    CImageList glyphs_;
    TableColors colors_;
    int painting_ = 0;
    int printing_ = 0;
    int cellsFill_ = 0;      ///< all cells so far filled themselves; below 0, one did not
    int cellFilled_ = 0;     ///< the last one did
    int cellsOnGround_ = 0;  ///< the ground was painted under the cells too
    double dots_ = 1;        ///< of paper to a unit
    std::vector<PaperLine> lines_;
    std::map<LineKey, std::size_t> lineEnds_;  ///< the last line of each
};

}  // namespace pavane
