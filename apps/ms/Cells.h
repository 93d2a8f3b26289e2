#pragma once

#include <casacore/casa/Arrays/Array.h>
#include <casacore/casa/Arrays/Slicer.h>
#include <casacore/casa/Arrays/Vector.h>
#include <casacore/tables/Tables/ArrayColumn.h>
#include <casacore/tables/Tables/ScalarColumn.h>
#include <casacore/tables/Tables/Table.h>

#include <cstddef>
#include <string>
#include <vector>

namespace pavane_ms
{

inline casacore::Slicer rowRange(casacore::rownr_t first, std::size_t count)
{
    return {casacore::IPosition(1, static_cast<ssize_t>(first)),
            casacore::IPosition(1, static_cast<ssize_t>(count))};
}

/// An array column of [hands, channels] a row, read and written by blocks of rows as one long
/// vector, hands the fastest. Rows of one shape go in one piece.
template <typename T>
class Cells
{
public:
    Cells(const casacore::Table& table, const std::string& name)
        : column_(table, name), isFixed_(column_.columnDesc().isFixedShape())
    {
    }

    /// `channels` of each row; the vector is made to fit.
    void get(casacore::rownr_t first, int hands, const std::vector<int>& channels,
             casacore::Vector<T>& cells) const
    {
        cells.resize(static_cast<std::size_t>(sizeOf(hands, channels)));
        walk(first, hands, channels, cells, [this](auto row, auto count, casacore::Array<T>& part) {
            if (isFixed_)
                column_.getColumnRange(rowRange(row, count), part);
            else
                column_.get(row, part);
        });
    }

    void put(casacore::rownr_t first, int hands, const std::vector<int>& channels,
             casacore::Vector<T>& cells)
    {
        walk(first, hands, channels, cells, [this](auto row, auto count, casacore::Array<T>& part) {
            if (isFixed_)
                column_.putColumnRange(rowRange(row, count), part);
            else
                column_.put(row, part);
        });
    }

private:
    static ssize_t sizeOf(int hands, const std::vector<int>& channels)
    {
        ssize_t size = 0;
        for (const int each : channels)
            size += ssize_t{hands} * each;
        return size;
    }

    template <typename Use>
    void walk(casacore::rownr_t first, int hands, const std::vector<int>& channels,
              casacore::Vector<T>& cells, const Use& use) const
    {
        if (channels.empty())
            return;
        T* at = cells.data();
        if (isFixed_) {
            casacore::Array<T> all(
                casacore::IPosition(3, hands, channels[0], static_cast<ssize_t>(channels.size())),
                at, casacore::SHARE);
            return use(first, channels.size(), all);
        }
        for (std::size_t i = 0; i < channels.size(); ++i) {
            casacore::Array<T> one(casacore::IPosition(2, hands, channels[i]), at, casacore::SHARE);
            use(first + i, std::size_t{1}, one);
            at += ssize_t{hands} * channels[i];
        }
    }

    casacore::ArrayColumn<T> column_;
    bool isFixed_;
};

}  // namespace pavane_ms
