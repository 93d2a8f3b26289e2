#include "pavane/tables/table_history.h"

#include "pavane/tables/ATableWnd.h"
#include "pavane/tables/TableWatch.h"

#include <algorithm>

namespace pavane
{

namespace
{

RecordBytes bytesOf(const CString& text)
{
    return {reinterpret_cast<const std::uint8_t*>(text.data()), text.size()};
}

}  // namespace

void TableHistory::begin(const CString& label)
{
    if (depth_++ == 0 && !walking_)
        steps_.begin(label, {});
}

void TableHistory::end()
{
    if (depth_ > 0 && --depth_ == 0 && !walking_)
        (void)steps_.commit({});  // takeLoss says what became of it
}

void TableHistory::note(int record, int column, const CString& before, const CString& after)
{
    if (isOpen())
        steps_.replace(record, column, bytesOf(before), bytesOf(after));
}

int TableHistory::walk(int forward)
{
    if (forward ? !canRedo() : !canUndo())
        return 0;
    box_ = {};
    count_ = 0;
    walking_ = 1;
    const int walked = forward ? steps_.redo(*this) : steps_.undo(*this);
    walking_ = 0;
    if (forget_)
        forget();
    return walked && !gone_;
}

int TableHistory::applyEdit(const EditChange& change)
{
    if (gone_)
        return 0;
    const TableCell cell{table_.rowOf(change.index), change.classCode};
    if (!table_.grid_.extent().contains(cell))
        return 1;
    const TableWatch watch(table_);
    const CString value(reinterpret_cast<const char*>(change.after.data()), change.after.size());
    const int taken = table_.setCellValue(cell.row, cell.column, value);
    gone_ = watch.gone();
    if (gone_ || !taken)
        return 0;
    const bool isFirst = count_++ == 0;
    if (isFirst || cell.row < first_.row || (cell.row == first_.row && cell.column < first_.column))
        first_ = cell;
    if (isFirst)
        box_ = {cell.row, cell.column, cell.row, cell.column};
    box_ = {std::min(box_.firstRow, cell.row), std::min(box_.firstColumn, cell.column),
            std::max(box_.lastRow, cell.row), std::max(box_.lastColumn, cell.column)};
    return 1;
}

CellRange TableHistory::changed() const
{
    if (count_ == 0 || box_.rowCount() * box_.columnCount() <= count_)
        return box_;
    return {first_.row, first_.column, first_.row, first_.column};
}

int TableHistory::windowGoes()
{
    while (depth_ > 0)
        end();
    return walking_;
}

void TableHistory::forget()
{
    forget_ = walking_;
    if (!walking_)
        steps_.clear();
}

}  // namespace pavane
