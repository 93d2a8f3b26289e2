#include "apps/view/UvRowsTbl.h"

#include "pavane/tables/uvdata/uv_row_columns.h"

#include <utility>

namespace pavane
{

namespace
{

constexpr int headerChars = 8;

const UvRowColumn& columnAt(int column) { return uvRowColumns()[static_cast<std::size_t>(column)]; }

}  // namespace

int UvRowTable::columns() { return static_cast<int>(uvRowColumns().size()); }
CString UvRowTable::title(int column) { return columnAt(column).title; }
CString UvRowTable::tip(int column) { return columnAt(column).tip; }
int UvRowTable::width(int column) { return columnAt(column).width; }
int UvRowTable::isText(int column) { return !columnAt(column).number; }

CString UvRowTable::text(int row, int column) const
{
    return file ? columnAt(column).text(*file, rows[static_cast<std::size_t>(row)]) : CString();
}

int UvRowTable::number(int row, int column, double& value) const
{
    if (!file || row < 0 || column < 0 || isText(column))
        return 0;
    value = columnAt(column).number(*file, rows[static_cast<std::size_t>(row)]);
    return 1;
}

UvRowsTbl::UvRowsTbl()
{
    std::vector<ATableColumn> widths = {charsWide(headerChars)};
    for (int i = 0; i < UvRowTable::columns(); ++i)
        widths.push_back(charsWide(UvRowTable::width(i)));
    setColumnPar(widths.data(), static_cast<long>(widths.size()));
}

void UvRowsTbl::SetVisibilities(const AUVXFile* file, std::vector<UvPointOrigin> rows)
{
    shown_ = {file, std::move(rows)};
    showTable(&shown_, static_cast<int>(shown_.rows.size()), {}, 1);
}

}  // namespace pavane
