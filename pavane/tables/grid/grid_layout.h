#pragma once

#include "pavane/tables/grid/TableColumns.h"
#include "platform/api.h"

namespace pavane
{

/// What a layout of a table starts from, in pixels.
struct GridMetrics {
    int width = 0;            ///< of the client area, were there no scroll bars
    int height = 0;           ///< the same
    int verticalBar = 0;      ///< width of the vertical bar
    int horizontalBar = 0;    ///< height of the horizontal bar
    int characterHeight = 0;  ///< of the font
    int rowUnit = 10;  ///< height of a row in eighths of it; below 0 one row takes all the height
    int headerRow = 0;
};

/// What comes of it: how tall a row is, and how far rows and columns scroll.
struct GridLayout {
    int rowHeight = 1;
    int lastFirstRow = 1;
    int lastFirstColumn = 1;
    friend constexpr bool operator==(const GridLayout&, const GridLayout&) = default;
};

/// Lays out `rows` rows; stretch columns get their widths. Rows are at least a pixel tall, and one
/// data row always counts as fitting.
PAVANE_API GridLayout layOutGrid(TableColumns& columns, int rows, const GridMetrics& metrics);

}  // namespace pavane
