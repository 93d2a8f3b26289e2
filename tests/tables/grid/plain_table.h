#pragma once

#include "pavane/tables/grid/cell_range.h"
#include "pavane/tables/grid/grid_layout.h"
#include "pavane/tables/grid/selection_moves.h"
#include "platform/geometry.h"

#include <cmath>
#include <numeric>
#include <vector>

namespace pavane
{

/// A table as plain and slow as can be: everything is found by counting cells and pixels.
struct PlainTable {
    std::vector<int> widths;     ///< header column first
    std::vector<double> wanted;  ///< of stretch columns, before the least width
    std::vector<bool> stretches;
    int rows = 0;
    int header = 0;
    int rowHeight = 1;
    int firstRow = 1, firstColumn = 1, lastFirstRow = 1, lastFirstColumn = 1;

    int last() const { return static_cast<int>(widths.size()) - 1; }
    int width(int c) const { return widths[static_cast<std::size_t>(c)]; }
    TableExtent extent() const { return {rows, last()}; }
    int sum(int from, int to) const
    {
        int all = 0;
        for (int c = from; c <= to; ++c)
            all += width(c);
        return all;
    }

    int fittingRows(int height) const
    {
        int fitting = 0;
        while ((fitting + 1 + header) * rowHeight <= height)
            ++fitting;
        return std::max(fitting, 1);
    }
    void stretch(int usable)
    {
        double share = usable;
        int count = 0;
        for (std::size_t c = 0; c < widths.size(); ++c) {
            share -= stretches[c] ? wanted[c] : widths[c];
            count += stretches[c];
        }
        share = count ? std::floor(share / count + 0.5) : 0;
        for (std::size_t c = 0; c < widths.size(); ++c)
            if (stretches[c]) {
                wanted[c] += share;
                widths[c] = std::max(16, static_cast<int>(wanted[c]));
            }
    }
    int firstThatFits(int usable) const
    {
        bool held = false, any = false;
        for (std::size_t c = 0; c < widths.size(); ++c) {
            any = any || stretches[c];
            held = held || (stretches[c] && wanted[c] < 16);
        }
        if ((any && !held) || sum(0, last()) <= usable)
            return 1;
        for (int first = 1; first < last(); ++first)
            if (width(0) + sum(first, last()) <= usable)
                return first;
        return std::max(last(), 1);
    }
    void layOut(const GridMetrics& m)
    {
        rowHeight = m.rowUnit < 0 ? m.height / (1 + header)
                                  : m.characterHeight * std::max(m.rowUnit, 1) / 8;
        rowHeight = std::max(rowHeight, 1);
        bool bar = rows > fittingRows(m.height);
        for (int round = 0; round < 2; ++round) {
            const int usable = m.width - (bar ? m.verticalBar : 0);
            stretch(usable);
            lastFirstColumn = firstThatFits(usable);
            const int fits = fittingRows(m.height - (lastFirstColumn >= 2 ? m.horizontalBar : 0));
            lastFirstRow = std::max(rows - fits + 1, 1);
            if (bar == (lastFirstRow > 1))
                break;
            bar = true;
        }
        scroll(firstRow, firstColumn);
    }
    void scroll(int row, int column)
    {
        firstRow = std::clamp(row, 1, lastFirstRow);
        firstColumn = std::clamp(column, 1, lastFirstColumn);
    }

    CRect cellRect(int row, int column) const
    {
        CRect r(0, 0, 0, header * rowHeight);
        for (int below = firstRow; row > 0 && below <= row; ++below)
            r.bottom += rowHeight;
        if (row > 0 && row < firstRow)
            r.bottom = header * rowHeight - (firstRow - row - 1) * rowHeight;
        r.top = row > 0 ? r.bottom - rowHeight : 0;
        if (column > 0)
            r.left = width(0) + sum(firstColumn, column - 1);
        r.right = r.left + width(column);
        return r;
    }
    TableCell cellAt(CPoint p) const
    {
        TableCell cell{(p.y + 1) / rowHeight, 0};
        if (!header || cell.row > 0)
            cell.row += firstRow - header;
        if (p.x >= width(0))
            for (cell.column = firstColumn; cell.column < last(); ++cell.column)
                if (cellRect(0, cell.column).right > p.x)
                    break;
        return {std::clamp(cell.row, 0, rows), std::min(cell.column, last())};
    }
    /// Scrolls one by one until the cell is seen whole, or stands at the top left.
    void show(TableCell cell, const CRect& client)
    {
        const int row = std::min(cell.row, rows);
        if (row >= 1 && row < firstRow)
            scroll(row, firstColumn);
        while (row >= 1 && row > firstRow && cellRect(row, 0).bottom > client.bottom &&
               firstRow < lastFirstRow)
            scroll(firstRow + 1, firstColumn);
        const int column = std::min(cell.column, last());
        if (column >= 1 && column < firstColumn)
            scroll(firstRow, column);
        while (column >= 1 && column > firstColumn && cellRect(0, column).right > client.right &&
               firstColumn < lastFirstColumn)
            scroll(firstRow, firstColumn + 1);
    }
    int pageRows(const CRect& client) const
    {
        return std::max(fittingRows(client.Height()) - 1, 1);
    }
    int pageColumns(const CRect& client) const
    {
        int whole = 0;
        for (int c = firstColumn; c <= last() && cellRect(0, c).right <= client.right; ++c)
            ++whole;
        return std::max(whole - 1, 1);
    }

    /// One step of a move for each of its count.
    ASelectRect moved(const ASelectRect& from, TableMove move, int count, bool extend,
                      const CRect& client) const
    {
        if (rows < 1 || last() < 1)
            return from;
        int r = std::clamp(from.anchorRow, 1, rows), c = std::clamp(from.anchorColumn, 1, last());
        const int page = pageRows(client), pageAcross = pageColumns(client);
        // the steps of each move but the last two; those to an end are as long as the table
        const int down[] = {-1, 1, 0, 0, -page, page, 0, 0, 0, 0, -rows, rows};
        const int across[] = {0,           0,          -1,      1,      0,       0,
                              -pageAcross, pageAcross, -last(), last(), -last(), last()};
        for (int i = 0; i < count; ++i) {
            if (move == TableMove::next) {
                if (r < rows || c < last())
                    r += c == last(), c = c % last() + 1;
            } else if (move == TableMove::previous) {
                if (r > 1 || c > 1)
                    r -= c == 1, c = c == 1 ? last() : c - 1;
            } else {
                r += down[static_cast<int>(move)];
                c += across[static_cast<int>(move)];
            }
            r = std::clamp(r, 1, rows), c = std::clamp(c, 1, last());
        }
        return extend ? ASelectRect{r, c, from.endRow, from.endColumn} : ASelectRect{r, c, r, c};
    }
};

}  // namespace pavane
