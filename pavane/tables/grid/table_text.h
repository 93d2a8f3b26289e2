#pragma once

#include "pavane/tables/grid/cell_range.h"
#include "platform/api.h"
#include "platform/types.h"

#include <cstddef>

namespace pavane
{

/// Where the texts of a table come from while it is written. The texts may be made by hooks that
/// change the table, or end it.
class TableTexts
{
public:
    virtual ~TableTexts() = default;
    /// Asked again before each line.
    virtual TableExtent extent() = 0;
    /// Text of any cell, headers included; 0 when the table is gone.
    virtual int text(TableCell cell, CString& text) = 0;
};

/// Where a text goes; 0 when it does not take it.
class TextSink
{
public:
    virtual ~TextSink() = default;
    virtual int write(const char* bytes, std::size_t count) = 0;
};

/// Most that is held back before it is written.
inline constexpr std::size_t textBlock = std::size_t{64} * 1024;

/// Writes `cells` of a table, lines ended by a line feed: the corner and the column headers, then
/// the rows with their headers; cells are separated by tabs and not quoted. What is no longer there
/// when its turn comes is left out. Stops at a failed write and returns 0.
PAVANE_API int writeTableText(TableTexts& table, const CellRange& cells, TextSink& sink);

}  // namespace pavane
