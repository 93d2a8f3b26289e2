#include "pavane/tables/grid/grid_layout.h"

#include <algorithm>
#include <cstdint>
#include <limits>

namespace pavane
{

namespace
{

int rowHeightOf(const GridMetrics& m)
{
    std::int64_t height = 0;
    if (m.rowUnit < 0)  // the header row and the one data row share the area
        height = m.headerRow ? m.height / 2 : m.height;
    else
        height = std::int64_t{m.characterHeight} * std::max(m.rowUnit, 1) / 8;
    return static_cast<int>(std::clamp<std::int64_t>(height, 1, std::numeric_limits<int>::max()));
}

int lastFirstRowOf(int rows, std::int64_t height, int rowHeight, int headerRow)
{
    const std::int64_t fitting =
        std::max<std::int64_t>(height, 0) / rowHeight - (headerRow ? 1 : 0);
    return static_cast<int>(
        std::max<std::int64_t>(rows - std::max<std::int64_t>(fitting, 1) + 1, 1));
}

/// The first column from which all later ones fit beside the header column, after stretching.
int lastFirstColumnOf(TableColumns& columns, std::int64_t usable)
{
    const int stretches = columns.stretchColumns();
    const int held = columns.stretch(usable);
    // a share that was rounded up may be a pixel too wide: nothing to scroll for
    if ((stretches && !held) || columns.total() <= usable)
        return 1;
    std::int64_t rest = usable;
    for (int c = columns.last(); c >= 1; --c) {
        rest -= columns.width(c);
        if (rest < columns.width(0))
            return std::clamp(c + 1, 1, std::max(columns.last(), 1));
    }
    return 1;
}

}  // namespace

GridLayout layOutGrid(TableColumns& columns, int rows, const GridMetrics& m)
{
    GridLayout layout;
    layout.rowHeight = rowHeightOf(m);
    layout.lastFirstRow = lastFirstRowOf(rows, m.height, layout.rowHeight, m.headerRow);
    for (;;) {
        const bool hasBar = layout.lastFirstRow > 1;
        layout.lastFirstColumn =
            lastFirstColumnOf(columns, std::int64_t{m.width} - (hasBar ? m.verticalBar : 0));
        const int bar = layout.lastFirstColumn > 1 ? m.horizontalBar : 0;
        layout.lastFirstRow =
            lastFirstRowOf(rows, std::int64_t{m.height} - bar, layout.rowHeight, m.headerRow);
        // the horizontal bar may have brought the vertical one, which takes width
        if (hasBar || layout.lastFirstRow == 1)
            return layout;
    }
}

}  // namespace pavane
