#include "pavane/tables/grid/table_paper.h"

#include <cmath>

namespace pavane
{

namespace
{

constexpr double tallestRow = 4.5;
constexpr double lowestRow = 3;

double rowHeightOn(const PaperRoom& room, int rows)
{
    return std::min(tallestRow, room.height / std::max(rows, 1));
}

}  // namespace

TablePages pagesOn(const PaperRoom& room, int headerRow)
{
    TablePages pages = TablePages::ofHeight(room.sheet, headerRow);
    const double fitting = std::floor(std::max(room.height, 0.0) / lowestRow);
    if (fitting < pages.rows)
        pages.rows = std::max(static_cast<int>(fitting), 1 + pages.headerRow);
    return pages;
}

std::vector<SheetColumns> sheetsAcross(const TableColumns& columns, double usable)
{
    std::vector<SheetColumns> sheets;
    const double room = usable - columns.width(0);
    for (int c = 1; c <= columns.last(); ++c) {
        const auto width = [&](int first) {
            return static_cast<double>(columns.before(c + 1) - columns.before(first));
        };
        if (sheets.empty() || width(sheets.back().first) > room)
            sheets.push_back({c, c});
        else
            sheets.back().last = c;
    }
    if (sheets.empty())
        sheets.push_back({1, columns.last()});
    return sheets;
}

TableScale::TableScale(const PaperRoom& room, int rows, int rowHeight, double width)
    : row(rowHeightOn(room, rows))
{
    const double whole = row / std::max(rowHeight, 1);
    fit = width * whole > room.width ? room.width / (width * whole) : 1;
    unit = whole * fit;
}

double TableScale::usable(const PaperRoom& room, int rows, int rowHeight)
{
    const double row = rowHeightOn(room, rows);
    return row > 0 ? room.width * std::max(rowHeight, 1) / row : 0;
}

}  // namespace pavane
