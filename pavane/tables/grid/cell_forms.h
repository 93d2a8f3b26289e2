#pragma once

#include "pavane/tables/grid/cell_range.h"
#include "pavane/tables/grid/table_text.h"
#include "platform/api.h"
#include "platform/types.h"

#include <cstddef>

namespace pavane
{

/// Our own form of copied cells on the clipboard: a block without headers, so that a paste knows
/// that it holds cells only, in which every field that needs it is in quotes. TextBlockReader reads
/// it, and the fields are the bytes of the cells.
inline constexpr const char* cellBlockType = "application/x-pavane-cells";

/// What copied cells are beside their plain text. Bytes that are no part of UTF-8 are U+FFFD in the
/// last two.
struct CellForms {
    CString block;  ///< see cellBlockType
    CString csv;    ///< RFC 4180: CR LF ends the lines
    CString html;   ///< one table; headers are <th>; zero bytes, which it cannot hold, are U+FFFD
};

enum class CellsWritten {
    whole,
    stopped,  ///< a text could not be had
    tooLarge  ///< the block alone takes more than allowed
};

/// Writes `cells` of a table in all forms, each text asked for once; with `headers` csv and html
/// have the header line and the header column, whether the table shows them or not. When all take
/// more than `most` bytes, html is left out, then csv: they are empty. What is no longer there when
/// its turn comes is left out.
PAVANE_API CellsWritten writeCellForms(TableTexts& table, const CellRange& cells, int headers,
                                       std::size_t most, CellForms& forms);

}  // namespace pavane
