#pragma once

#include "pavane/tables/grid/cell_range.h"
#include "platform/api.h"

#include <cstdint>
#include <string_view>

namespace pavane
{

/// Where pasted texts go.
class PasteTarget
{
public:
    enum class Answer { taken, refused, stop };
    virtual ~PasteTarget() = default;
    /// Asked for each cell of the table that the block covers.
    virtual Answer put(TableCell cell, std::string_view text) = 0;
    /// Asked before each field, with what part of the paste is done; 0 ends it.
    virtual int goesOn(double done) { return (void)done, 1; }
};

/// What became of a paste.
struct PasteResult {
    std::int64_t taken = 0;
    std::int64_t left = 0;          ///< refused, or beyond the table
    std::int64_t firstLeftRow = 0;  ///< the first of those; may lie beyond the table
    std::int64_t firstLeftColumn = 0;
    int stopped = 0;  ///< by the target, in the middle
};

/// Puts the block of cells in `text` at the anchor of the selection, row by row; a single field
/// fills the whole selection.
PAVANE_API PasteResult pasteText(std::string_view text, const ASelectRect& selection,
                                 const TableExtent& table, PasteTarget& target);

}  // namespace pavane
