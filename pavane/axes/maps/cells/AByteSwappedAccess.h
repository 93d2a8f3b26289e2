#pragma once

#include "pavane/axes/maps/cells/AMatrixAccess.h"
#include "tessel/big_endian.h"

#include <bit>
#include <cmath>
#include <cstdint>
#include <cstring>
#include <limits>

namespace pavane
{

/// The item whose bytes begin at `at`, wherever that is, in the other byte order if `Swapped`.
template <typename T, bool Swapped>
T storedItem(const unsigned char* at)
{
    StoredWord<T> word;
    std::memcpy(&word, at, sizeof word);
    return std::bit_cast<T>(Swapped ? byteSwapped(word) : word);
}

/// Finite values stay finite: beyond the range of float they saturate.
inline float cellValue(double value)
{
    constexpr double limit = std::numeric_limits<float>::max();
    if (std::isfinite(value))
        value = value > limit ? limit : value < -limit ? -limit : value;
    return static_cast<float>(value);
}

/// As AStridedAccess, of cells in the byte order that the machine does not have, such as those of
/// FITS on most: cell (r, c) is the item r * rowStride + c * columnStride behind `first`, strides
/// in items, also negative ones or 0. The cells need not be aligned. `makeCellAccess` makes one for
/// whatever a host has.
template <typename T>
class AByteSwappedAccess : public AMatrixAccess
{
public:
    AByteSwappedAccess(const void* first, int rows, int columns, std::int64_t rowStride,
                       std::int64_t columnStride = 1,
                       double blank = std::numeric_limits<double>::quiet_NaN())
        : first_(static_cast<const unsigned char*>(first)), rows_(first ? rows : 0),
          columns_(first ? columns : 0), rowBytes_(rowStride * itemBytes),
          columnBytes_(columnStride * itemBytes), blank_(blank)
    {
    }
    int rows() const override { return rows_; }
    int columns() const override { return columns_; }
    void copyRow(int row, int first, int count, float* to) const override
    {
        const unsigned char* from = first_ + row * rowBytes_ + first * columnBytes_;
        for (int i = 0; i < count; ++i) {
            const auto value =
                static_cast<double>(storedItem<T, true>(from + std::int64_t{i} * columnBytes_));
            to[i] = value == blank_ ? std::numeric_limits<float>::quiet_NaN() : cellValue(value);
        }
    }

private:
    static constexpr std::int64_t itemBytes = sizeof(T);

    const unsigned char* first_;
    int rows_;
    int columns_;
    std::int64_t rowBytes_;
    std::int64_t columnBytes_;
    double blank_;
};

}  // namespace pavane
