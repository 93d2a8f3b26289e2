#include "pavane/tables/grid/column_widths.h"

#include "pavane/tables/grid/TableColumns.h"

#include <algorithm>
#include <charconv>
#include <map>

namespace pavane
{

namespace
{

constexpr int widest = 32767;

/// Takes a whole number off the start of a text; 0 when there is none.
int takeNumber(std::string_view& text, int& number)
{
    const auto [end, error] = std::from_chars(text.data(), text.data() + text.size(), number);
    text.remove_prefix(static_cast<std::size_t>(end - text.data()));
    return error == std::errc{};
}

int takeSign(std::string_view& text, char sign)
{
    if (text.empty() || text.front() != sign)
        return 0;
    text.remove_prefix(1);
    return 1;
}

/// "5: 0=60 3=120": the last column, then columns and their widths.
std::map<int, int> widthsIn(std::string_view text, int lastColumn)
{
    std::map<int, int> widths;
    int last = 0;
    if (!takeNumber(text, last) || last != lastColumn || !takeSign(text, ':'))
        return widths;
    int column = 0;
    int width = 0;
    while (takeSign(text, ' ') && takeNumber(text, column) && takeSign(text, '=') &&
           takeNumber(text, width))
        if (column >= 0 && column <= lastColumn)
            widths[column] = std::clamp(width, 0, widest);
    return widths;
}

}  // namespace

void applyWidths(TableColumns& columns, std::string_view text)
{
    for (const auto& [column, width] : widthsIn(text, columns.last()))
        columns.fix(column, width);
}

CString addWidth(const TableColumns& columns, std::string_view text, int column)
{
    std::map<int, int> widths = widthsIn(text, columns.last());
    widths[column] = columns.width(column);
    CString kept = std::to_string(columns.last()) + ":";
    for (const auto& [c, width] : widths)
        (kept += ' ').append(std::to_string(c)).append("=").append(std::to_string(width));
    return kept;
}

}  // namespace pavane
