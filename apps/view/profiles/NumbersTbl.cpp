#include "apps/view/profiles/NumbersTbl.h"

#include <utility>

namespace pavane
{

namespace
{

constexpr int headerChars = 5;

}  // namespace

void NumbersTbl::SetTable(const NumberTable* table)
{
    std::vector<ATableColumn> widths = {charsWide(headerChars)};
    for (int i = 0; table && i < table->columns(); ++i)
        widths.push_back(charsWide(table->width(i)));
    showTable(table, table ? table->rows() : 0, std::move(widths));
}

}  // namespace pavane
