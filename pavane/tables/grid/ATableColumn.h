#pragma once

#include <cstdint>

namespace pavane
{

/// What a column of a table is like. Hosts store the values.
enum TableColumnFlag : std::uint16_t {
    colEdit = 0x0001,          ///< its cells are edited in place
    colQuarterChars = 0x0002,  ///< the width is in quarters of a character, until it is converted
    colChars = 0x0004,         ///< the width is in characters, until it is converted
    colCombo = 0x0008,         ///< its cells choose from a list
    colStretch = 0x0800,       ///< takes a share of the free width of the window
    colNoGlyph = 0x4000        ///< no mark tells that its cells can be edited or chosen
};

/// One column of a table. Pixels once converted; negative widths count as 0.
struct ATableColumn {
    std::int16_t width = 0;
    std::uint16_t flags = 0;
};
static_assert(sizeof(ATableColumn) == 4);

}  // namespace pavane
