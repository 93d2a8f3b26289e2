#pragma once

#include "pavane/tables/grid/table_values.h"
#include "platform/api.h"

namespace pavane
{

/// What is looked for in a table.
struct FindWhat {
    CString text;
    int matchCase = 0;
    int wholeCell = 0;   ///< the text is all of the cell
    int thisColumn = 0;  ///< in the column where the search begins only
    int backward = 0;
};

/// Looks for a text in the data cells of a table, row by row, in pieces. It begins behind a cell,
/// goes round the end, and looks at that cell last.
class PAVANE_API TableSearch
{
public:
    TableSearch(const FindWhat& what, TableCell from);
    /// Goes on by some hundred cells; done when the text was found, or is nowhere.
    WorkState step(TableTexts& table);
    /// Row 0 when it was not found.
    TableCell found() const { return found_; }
    /// Non-zero when the search went on from the other end.
    int wrapped() const { return wrapped_; }
    /// How far it is, 0 to 100.
    int percent() const;

private:
    int matches(const CString& cell) const;
    void goOn(const TableExtent& table);

    FindWhat what_;
    CString needle_;
    TableCell at_;
    TableCell found_;
    int wrapped_ = 0;
    int begun_ = 0;
    std::int64_t all_ = 0;   ///< cells to look at
    std::int64_t left_ = 0;  ///< of these
    CString text_;
};

}  // namespace pavane
