#pragma once

#include "platform/api.h"

#include <cstdint>
#include <vector>

namespace pavane
{

/// How the rows of a table are ordered.
enum class SortDirection : std::uint8_t { stored, rising, falling };

/// What the rows of a table are ordered by; column 0: by nothing.
struct SortedBy {
    int column = 0;
    SortDirection direction = SortDirection::stored;
    friend constexpr bool operator==(const SortedBy&, const SortedBy&) = default;
};

/// What one more click on the header of `column` makes of it: rising, falling, as stored.
constexpr SortedBy nextOrder(const SortedBy& now, int column)
{
    if (now.column != column || now.direction == SortDirection::stored)
        return {column, SortDirection::rising};
    if (now.direction == SortDirection::rising)
        return {column, SortDirection::falling};
    return {};
}

/// Which record each row of a table shows; both count from 1. Numbers beyond the table stand for
/// themselves. As long as rows are shown as they are stored it takes no memory.
class PAVANE_API RowOrder
{
public:
    int isStored() const { return records_.empty(); }
    int recordOf(int row) const { return at(records_, row); }
    int rowOf(int record) const { return at(rows_, record); }
    /// Rows are shown as they are stored.
    void reset();
    /// Takes an order over: the record of each row, and the row of each record.
    void set(std::vector<int> records, std::vector<int> rows);
    /// Another number of records: those beyond go, new ones are shown last.
    void resize(int count);
    /// `count` records were put in front of `record`; they are shown behind the one before them.
    void insert(int record, int count);
    /// `count` records went, from `record` on.
    void remove(int record, int count);

private:
    static int at(const std::vector<int>& numbers, int i)
    {
        return i >= 1 && static_cast<std::size_t>(i) <= numbers.size()
                   ? numbers[static_cast<std::size_t>(i) - 1]
                   : i;
    }
    int count() const { return static_cast<int>(records_.size()); }
    void invert();

    std::vector<int> records_;
    std::vector<int> rows_;
};

}  // namespace pavane
