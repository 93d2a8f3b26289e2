#pragma once

#include "pavane/containers/Pile.h"

#include <cstddef>
#include <cstdint>

namespace pavane
{

/// The crossings of short edges, kept by row: where a polygon has many corners, following every
/// edge from row to row costs more than noting where it crosses. Most rows have two, which lie in
/// the row's own record.
class LooseCrossings
{
public:
    struct Row {
        int count;
        int x[2];
        std::uint32_t more;  // the latest of those beyond two, meaningful when there are
    };

    /// Empty rows 0..rows-1; non-zero on success.
    int begin(std::size_t rows)
    {
        if (!rows_.reserve(rows))
            return 0;
        for (std::size_t r = 0; r < rows; ++r)
            rows_.data()[r].count = 0;
        return 1;
    }
    int add(std::size_t row, int x)
    {
        Row& r = rows_.data()[row];
        const int at = r.count++;
        if (at < 2) {
            r.x[at] = x;
            return 1;
        }
        const auto index = static_cast<std::uint32_t>(more_.count());
        const std::uint32_t before = r.more;
        r.more = index;
        return more_.add({x, at == 2 ? 0 : before});
    }
    const Row& row(std::size_t row) const { return rows_.data()[row]; }
    /// Puts the crossings of a row into xs, which has room for them.
    void take(const Row& row, int* xs) const
    {
        std::uint32_t at = row.more;
        for (int i = row.count; i > 2; --i) {
            *xs++ = more_.data()[at].x;
            at = more_.data()[at].next;
        }
        for (int i = 0; i < row.count && i < 2; ++i)
            *xs++ = row.x[i];
    }

private:
    struct Further {
        int x;
        std::uint32_t next;
    };
    Pile<Row> rows_;
    Pile<Further> more_;
};

}  // namespace pavane
