#include "pavane/tables/grid/table_paste.h"

#include "pavane/tables/grid/TextBlockReader.h"

namespace pavane
{

namespace
{

constexpr std::int64_t fieldsAtOnce = 4096;

/// Hands one field on and counts; 0 when the target ends it.
int put(PasteResult& result, std::int64_t row, std::int64_t column, std::string_view text,
        const TableExtent& table, PasteTarget& target)
{
    auto answer = PasteTarget::Answer::refused;
    if (row <= table.rows && column <= table.lastColumn)
        answer = target.put({static_cast<int>(row), static_cast<int>(column)}, text);
    result.stopped = answer == PasteTarget::Answer::stop;
    if (answer == PasteTarget::Answer::taken)
        ++result.taken;
    if (answer == PasteTarget::Answer::refused && ++result.left == 1) {
        result.firstLeftRow = row;
        result.firstLeftColumn = column;
    }
    return !result.stopped;
}

/// Non-zero when the text is one field, which is what `field` then holds.
int isSingle(std::string_view text)
{
    TextBlockReader reader(text);
    return reader.next() && !reader.next();
}

}  // namespace

PasteResult pasteText(std::string_view text, const ASelectRect& selection, const TableExtent& table,
                      PasteTarget& target)
{
    PasteResult result;
    if (table.empty())
        return result;
    TextBlockReader reader(text);
    const CellRange filled = selectedCells(selection, table);
    const auto goesOn = [&](double part, double whole) {
        result.stopped = !target.goesOn(part / whole);
        return !result.stopped;
    };
    if (!filled.empty() && isSingle(text)) {
        (void)reader.next();
        const auto rows = static_cast<double>(filled.rowCount());
        for (std::int64_t row = filled.firstRow; row <= filled.lastRow; ++row)
            for (std::int64_t column = filled.firstColumn; column <= filled.lastColumn; ++column)
                if (!goesOn(static_cast<double>(row - filled.firstRow), rows) ||
                    !put(result, row, column, reader.field(), table, target))
                    return result;
        return result;
    }
    const TableCell at = nearestCell({selection.anchorRow, selection.anchorColumn}, table);
    const auto size = static_cast<double>(text.size());
    std::int64_t beyond = 0;  // fields that only count cost less than the question
    while (reader.next()) {
        const std::int64_t row = at.row + reader.row();
        const std::int64_t column = at.column + reader.column();
        const bool inside = row <= table.rows && column <= table.lastColumn;
        if ((inside || beyond++ % fieldsAtOnce == 0) &&
            !goesOn(static_cast<double>(reader.taken()), size))
            return result;
        if (!put(result, row, column, reader.field(), table, target))
            return result;
    }
    return result;
}

}  // namespace pavane
