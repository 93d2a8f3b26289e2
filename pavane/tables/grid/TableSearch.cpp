#include "pavane/tables/grid/TableSearch.h"

#include "pavane/tables/grid/text_fold.h"

#include <algorithm>

namespace pavane
{

namespace
{

constexpr int cellsAtOnce = 256;
constexpr std::size_t bytesAtOnce = 1 << 20;

}  // namespace

TableSearch::TableSearch(const FindWhat& what, TableCell from)
    : what_(what), needle_(what.matchCase ? what.text : smallLetters(what.text)), at_(from)
{
}

int TableSearch::matches(const CString& cell) const
{
    // a byte of the middle of a character never begins one, so bytes may be compared
    if (what_.matchCase)
        return what_.wholeCell ? cell == needle_ : cell.find(needle_) != CString::npos;
    if (cell.size() < needle_.size() || (what_.wholeCell && cell.size() != needle_.size()))
        return 0;
    const CString folded = smallLetters(cell);
    return what_.wholeCell ? folded == needle_ : folded.find(needle_) != CString::npos;
}

/// To the next cell, round the end. The table may have become smaller.
void TableSearch::goOn(const TableExtent& table)
{
    const int step = what_.backward ? -1 : 1;
    at_ = nearestCell(at_, table);
    if (!what_.thisColumn) {
        at_.column += step;
        if (at_.column >= 1 && at_.column <= table.lastColumn)
            return;
        at_.column = what_.backward ? table.lastColumn : 1;
    }
    if (at_.row != (what_.backward ? 1 : table.rows))
        return (void)(at_.row += step);
    at_.row = what_.backward ? table.rows : 1;
    wrapped_ = 1;
}

WorkState TableSearch::step(TableTexts& table)
{
    std::size_t bytes = 0;
    for (int i = 0; i < cellsAtOnce && bytes < bytesAtOnce; ++i) {
        const TableExtent extent = table.extent();
        if (extent.empty() || needle_.empty())
            return WorkState::done;
        if (!begun_) {
            begun_ = 1;
            all_ = std::int64_t{extent.rows} * (what_.thisColumn ? 1 : extent.lastColumn);
            left_ = all_;
        }
        if (left_-- <= 0)
            return WorkState::done;
        goOn(extent);
        if (!table.text(at_, text_))
            return WorkState::gone;
        bytes += text_.size();
        if (matches(text_))
            return found_ = at_, WorkState::done;
    }
    return WorkState::goesOn;
}

int TableSearch::percent() const
{
    return all_ < 1
               ? 0
               : 100 -
                     static_cast<int>(100 * (static_cast<double>(std::max<std::int64_t>(left_, 0)) /
                                             static_cast<double>(all_)));
}

}  // namespace pavane
