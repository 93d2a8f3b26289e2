#pragma once

#include "pavane/tables/grid/table_pages.h"
#include "pavane/tables/grid/TableColumns.h"
#include "platform/api.h"

#include <vector>

namespace pavane
{

/// What of a page a table may use, in millimetres.
struct PaperRoom {
    int sheet = 0;  ///< height of the sheet, as the device tells it
    double width = 0;
    double height = 0;
};

/// Rows of a page: as many as the sheet has room for at 4.5 mm each, which margins and captions
/// make lower; fewer where they would be lower than 3 mm.
PAVANE_API TablePages pagesOn(const PaperRoom& room, int headerRow);

/// Data columns of one of the sheets that a table is wide.
struct SheetColumns {
    int first = 1;
    int last = 0;
    friend constexpr bool operator==(const SheetColumns&, const SheetColumns&) = default;
};
/// The sheets of a table beside the header column, which all of them repeat, when `usable` pixels
/// of the screen fit on one; each takes a column at least.
PAVANE_API std::vector<SheetColumns> sheetsAcross(const TableColumns& columns, double usable);

/// How pixels of the screen stand on paper.
struct PAVANE_API TableScale {
    double row = 0;   ///< millimetres of a row
    double unit = 0;  ///< of a pixel
    double fit = 1;   ///< how much smaller that is than the row's because the columns are too wide
    /// For rows of `rowHeight` pixels and columns of `width` in all. Rows share the height equally,
    /// 4.5 mm each at most.
    TableScale(const PaperRoom& room, int rows, int rowHeight, double width);
    /// Pixels of the screen that stand beside each other when rows are as tall as they can be.
    static double usable(const PaperRoom& room, int rows, int rowHeight);
};

}  // namespace pavane
