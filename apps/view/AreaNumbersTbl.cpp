#include "apps/view/AreaNumbersTbl.h"

#include <utility>

namespace pavane
{

namespace
{

constexpr int headerChars = 4;

}  // namespace

void AreaNumbersTbl::SetTable(const AreaTable* table)
{
    std::vector<ATableColumn> widths;
    const int columns = table ? table->columns() : 0;
    if (columns != columns_) {
        widths.push_back(charsWide(headerChars));
        for (int i = 0; i < columns; ++i) {
            widths.push_back(charsWide(table->width(i)));
            // marks of what can be edited would take the room of names
            if (table->isName(i))
                widths.back().flags |= colEdit | colNoGlyph;
        }
        columns_ = columns;
    }
    showTable(table, table ? static_cast<int>(table->rows().size()) : 0, std::move(widths));
}

const AreaRow& AreaNumbersTbl::rowAt(int row) const
{
    return table()->rows()[static_cast<std::size_t>(recordOf(row)) - 1];
}

/// The area's own number; that of all has none.
CString AreaNumbersTbl::hdrCellAsStr(int row, int column, void* context)
{
    if (row <= 0)
        return ValuesTbl::hdrCellAsStr(row, column, context);
    return table() && rowAt(row).area >= 0 ? std::to_string(rowAt(row).area + 1) : CString();
}

}  // namespace pavane
