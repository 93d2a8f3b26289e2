#pragma once

#include "pavane/tables/grid/ATableColumn.h"
#include "platform/api.h"

#include <cstdint>
#include <vector>

namespace pavane
{

/// The columns of a table, header column first, and where each begins. Widths are 0 to 32767
/// pixels. Numbers beyond the columns have no width.
class PAVANE_API TableColumns
{
public:
    /// A stretch column is never narrower.
    static constexpr int leastStretch = 16;

    /// Takes copies of `count` columns in place of those there were.
    void set(const ATableColumn* columns, int count);
    void add(const ATableColumn& column);
    /// 0 when there is no such column.
    int remove(int column);

    /// Number of the last column, -1 without columns.
    int last() const { return static_cast<int>(columns_.size()) - 1; }
    bool has(int column) const { return column >= 0 && column <= last(); }
    /// Flags of a column, 0 beyond them.
    int flags(int column) const { return has(column) ? at(column).flags : 0; }
    int width(int column) const;
    /// Another width for a column, cut to what widths can be.
    void setWidth(int column, int width);
    /// The same, and the column no longer takes a share of the window.
    void fix(int column, int width);
    /// Pixels from the left edge of column 0 to that of `column`, as if none were scrolled away;
    /// last() + 1 gives the width of all.
    std::int64_t before(int column) const;
    std::int64_t total() const { return before(last() + 1); }
    /// The first column from `first` on whose right edge lies right of `x`, which counts as in
    /// `before`; last() + 1 when there is none.
    int columnAt(std::int64_t x, int first) const;

    /// Turns widths in characters into pixels, once; a column with both flags is in quarters.
    void convert(int averageCharacterWidth);

    int stretchColumns() const;
    /// Gives each stretch column its share of what `usable` pixels leave, or takes it. What a
    /// column could not give, since it is no narrower than leastStretch, it gets back first when
    /// the room grows. Returns non-zero when one is held at that width.
    int stretch(std::int64_t usable);

private:
    const ATableColumn& at(int column) const { return columns_[static_cast<std::size_t>(column)]; }
    void sum(int from);

    std::vector<ATableColumn> columns_;
    std::vector<int> wanted_;  ///< width that the shares of a column make; may be below the least
    std::vector<std::int64_t> before_{0};
};

}  // namespace pavane
