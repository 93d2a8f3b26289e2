#include "pavane/tables/grid/table_paste.h"

#include "pavane/tables/grid/TextBlockReader.h"

namespace pavane
{

namespace
{

/// Hands one field on and counts; 0 when the table is gone.
int put(PasteResult& result, std::int64_t row, std::int64_t column, std::string_view text,
        const TableExtent& table, PasteTarget& target)
{
    auto answer = PasteTarget::Answer::refused;
    if (row <= table.rows && column <= table.lastColumn)
        answer = target.put({static_cast<int>(row), static_cast<int>(column)}, text);
    result.gone = answer == PasteTarget::Answer::gone;
    if (answer == PasteTarget::Answer::taken)
        ++result.taken;
    if (answer == PasteTarget::Answer::refused && ++result.left == 1) {
        result.firstLeftRow = row;
        result.firstLeftColumn = column;
    }
    return !result.gone;
}

/// Non-zero when the text is one field, which is what `field` then holds.
int isSingle(std::string_view text)
{
    TextBlockReader reader(text);
    return reader.next() && !reader.next();
}

}  // namespace

PasteResult pasteText(std::string_view text, int withHeaders, const ASelectRect& selection,
                      const TableExtent& table, PasteTarget& target)
{
    PasteResult result;
    if (table.empty())
        return result;
    TextBlockReader reader(text);
    const CellRange filled = selectedCells(selection, table);
    if (!withHeaders && !filled.empty() && isSingle(text)) {
        (void)reader.next();
        for (std::int64_t row = filled.firstRow; row <= filled.lastRow; ++row)
            for (std::int64_t column = filled.firstColumn; column <= filled.lastColumn; ++column)
                if (!put(result, row, column, reader.field(), table, target))
                    return result;
        return result;
    }
    const TableCell at = nearestCell({selection.anchorRow, selection.anchorColumn}, table);
    const int skipped = withHeaders ? 1 : 0;
    while (reader.next()) {
        const std::int64_t row = reader.row() - skipped;
        const std::int64_t column = reader.column() - skipped;
        if (row >= 0 && column >= 0 &&
            !put(result, at.row + row, at.column + column, reader.field(), table, target))
            return result;
    }
    return result;
}

}  // namespace pavane
