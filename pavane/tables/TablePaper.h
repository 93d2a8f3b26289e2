#pragma once

#include "pavane/printing/layout/page_range.h"
#include "pavane/tables/ATableWnd.h"
#include "pavane/tables/grid/table_paper.h"

namespace pavane
{

/// How a table stands on the pages of a printer: what GetPages found out for it, and PrintWindow
/// keeps to.
class ATableWnd::Paper
{
public:
    explicit Paper(ATableWnd& table) : table_(table) {}

    /// Non-zero puts the columns that do not fit on further sheets; zero makes all of them smaller.
    void setSplit(int on);
    int split() const { return split_; }
    /// Lays out for the pages of `dc` and the room that its clip leaves.
    void count(CDC& dc);
    int pages() const;
    /// How small the columns make the cells on the widest sheet, per cent.
    int percent() const { return percent_; }
    /// Draws a page into a rectangle of a context, which is laid out for when `count` was not asked
    /// for this printer and this table.
    void print(CDC& dc, const CRect& rect, int page);

private:
    /// What tells a printer and its paper, and what of the table counts.
    struct Key {
        int caps[5] = {};
        int headerRow = 0, columns = -1, rowHeight = 0, split = 0;
        std::int64_t width = -1;
        friend bool operator==(const Key&, const Key&) = default;
    };
    Key keyOf(const CDC& dc) const;
    void layOut(const CDC& dc, const PaperRoom& room);
    TableColumns columnsOn(const PaperRoom& room, const SheetColumns& sheet) const;
    void measureForPaper();

    ATableWnd& table_;
    int split_ = 0;
    Key key_;
    TablePages pages_;
    std::vector<SheetColumns> sheets_;
    int percent_ = 100;
};

}  // namespace pavane
