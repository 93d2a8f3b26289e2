#include "pavane/tables/grid/TableColumns.h"

#include <algorithm>
#include <limits>

namespace pavane
{

namespace
{

constexpr std::int64_t widest = 32767;

std::int16_t cutWidth(std::int64_t width)
{
    return static_cast<std::int16_t>(std::clamp<std::int64_t>(width, 0, widest));
}

/// Nearest whole number, halves up, so that a second layout of the same width changes nothing.
std::int64_t nearest(std::int64_t a, std::int64_t b)
{
    const std::int64_t doubled = 2 * a + b;
    const std::int64_t cut = doubled / (2 * b);
    return doubled % (2 * b) < 0 ? cut - 1 : cut;
}

}  // namespace

void TableColumns::set(const ATableColumn* columns, int count)
{
    columns_.assign(columns, columns + std::max(columns ? count : 0, 0));
    wanted_.clear();
    for (const ATableColumn& column : columns_)
        wanted_.push_back(std::max<int>(column.width, 0));
    sum(0);
}

void TableColumns::add(const ATableColumn& column)
{
    columns_.push_back(column);
    wanted_.push_back(std::max<int>(column.width, 0));
    sum(last());
}

int TableColumns::remove(int column)
{
    if (!has(column))
        return 0;
    columns_.erase(columns_.begin() + column);
    wanted_.erase(wanted_.begin() + column);
    sum(column);
    return 1;
}

/// Where columns begin, from `from` on.
void TableColumns::sum(int from)
{
    before_.resize(columns_.size() + 1);
    for (int c = from; c <= last(); ++c)
        before_[static_cast<std::size_t>(c) + 1] = before_[static_cast<std::size_t>(c)] + width(c);
}

int TableColumns::width(int column) const
{
    return has(column) ? std::max<int>(at(column).width, 0) : 0;
}

void TableColumns::setWidth(int column, int width)
{
    if (!has(column))
        return;
    const auto i = static_cast<std::size_t>(column);
    columns_[i].width = cutWidth(width);
    wanted_[i] = columns_[i].width;
    sum(column);
}

void TableColumns::fix(int column, int width)
{
    if (!has(column))
        return;
    auto& flags = columns_[static_cast<std::size_t>(column)].flags;
    flags = static_cast<std::uint16_t>(flags & ~(colStretch | colQuarterChars | colChars));
    setWidth(column, width);
}

std::int64_t TableColumns::before(int column) const
{
    return before_[static_cast<std::size_t>(std::clamp(column, 0, last() + 1))];
}

int TableColumns::columnAt(std::int64_t x, int first) const
{
    const int from = std::clamp(first, 0, last() + 1);
    const auto right = std::upper_bound(before_.begin() + from + 1, before_.end(), x);
    return static_cast<int>(right - before_.begin()) - 1;
}

void TableColumns::convert(int averageCharacterWidth)
{
    const std::int64_t character = std::int64_t{averageCharacterWidth} + 1;
    for (std::size_t i = 0; i < columns_.size(); ++i) {
        ATableColumn& column = columns_[i];
        if (!(column.flags & (colQuarterChars | colChars)))
            continue;
        const std::int64_t width = character * column.width;
        column.width = cutWidth(column.flags & colQuarterChars ? width / 4 : width);
        column.flags = static_cast<std::uint16_t>(column.flags & ~(colQuarterChars | colChars));
        wanted_[i] = column.width;
    }
    sum(0);
}

int TableColumns::stretchColumns() const
{
    return static_cast<int>(std::count_if(columns_.begin(), columns_.end(),
                                          [](const auto& c) { return c.flags & colStretch; }));
}

int TableColumns::stretch(std::int64_t usable)
{
    const int count = stretchColumns();
    if (!count)
        return 0;
    std::int64_t free = usable;
    for (int c = 0; c <= last(); ++c)
        free -= flags(c) & colStretch ? wanted_[static_cast<std::size_t>(c)] : width(c);
    const std::int64_t share = nearest(free, count);
    int held = 0;
    for (int c = 0; c <= last(); ++c) {
        if (!(flags(c) & colStretch))
            continue;
        const auto i = static_cast<std::size_t>(c);
        wanted_[i] = static_cast<int>(
            std::clamp<std::int64_t>(wanted_[i] + share, std::numeric_limits<int>::min(), widest));
        columns_[i].width = cutWidth(std::max(wanted_[i], leastStretch));
        held |= wanted_[i] < leastStretch;
    }
    sum(0);
    return held;
}

}  // namespace pavane
