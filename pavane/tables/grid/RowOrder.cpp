#include "pavane/tables/grid/RowOrder.h"

#include "pavane/tables/grid/SortJob.h"

#include <algorithm>
#include <limits>
#include <numeric>

namespace pavane
{

void RowOrder::reset()
{
    records_ = {};
    rows_ = {};
}

void RowOrder::set(std::vector<int> records, std::vector<int> rows)
{
    records_ = std::move(records);
    rows_ = std::move(rows);
}

void RowOrder::invert()
{
    rows_.resize(records_.size());
    for (std::size_t row = 0; row < records_.size(); ++row)
        rows_[static_cast<std::size_t>(records_[row]) - 1] = static_cast<int>(row) + 1;
}

void RowOrder::resize(int count)
{
    if (isStored() || count == this->count())
        return;
    // of more rows than are sorted an order would take gigabytes
    if (count < 1 || count > mostSortedRows)
        return reset();
    const int before = this->count();
    if (count < before)
        std::erase_if(records_, [count](int record) { return record > count; });
    records_.resize(static_cast<std::size_t>(count));
    if (count > before)
        std::iota(records_.begin() + before, records_.end(), before + 1);
    invert();
}

void RowOrder::insert(int record, int count)
{
    count = std::clamp(count, 0, std::numeric_limits<int>::max() - this->count());
    if (isStored() || count == 0)
        return;
    if (count > mostSortedRows - this->count())
        return reset();
    const int first = std::clamp(record, 1, this->count() + 1);
    const int place = first > 1 ? rowOf(first - 1) : 0;
    for (int& other : records_)
        if (other >= first)
            other += count;
    const auto put =
        records_.insert(records_.begin() + place, static_cast<std::size_t>(count), first);
    std::iota(put, put + count, first);
    invert();
}

void RowOrder::remove(int record, int count)
{
    const std::int64_t first = std::max(record, 1);
    const std::int64_t end = std::int64_t{record} + std::max(count, 0);
    if (isStored() || first >= end)
        return;
    std::erase_if(records_, [&](int r) { return r >= first && r < end; });
    if (records_.empty())
        return reset();
    for (int& other : records_)
        if (other >= end)
            other -= static_cast<int>(end - first);
    invert();
}

}  // namespace pavane
