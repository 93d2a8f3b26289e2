#pragma once

#include "platform/api.h"
#include "platform/types.h"

#include <string_view>

namespace pavane
{

class TableColumns;

/// Gives columns the widths that a text of addWidth keeps, in pixels; nothing when the text is of
/// a table with another number of columns. What cannot be read is left out.
PAVANE_API void applyWidths(TableColumns& columns, std::string_view text);

/// The text with the width of one column more, or another width for it.
PAVANE_API CString addWidth(const TableColumns& columns, std::string_view text, int column);

}  // namespace pavane
