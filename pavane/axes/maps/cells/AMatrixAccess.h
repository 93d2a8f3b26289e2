#pragma once

#include "tessel/AMatrix.h"
#include "tessel/api.h"

#include <cmath>
#include <cstdint>
#include <limits>

namespace pavane
{

/// How a map graph reads the matrix of a host, without a copy of it. Row r and column c count from
/// 0; a cell that is not finite is blank. The access does not own the cells: they, and the access
/// itself, have to outlive every graph that reads them, and a host that changes cells tells the
/// graph (`ABMapGraph::cellsChanged`).
///
/// A host with cells of its own kind derives from this and writes `rows`, `columns` and `copyRow`;
/// `floatRow` saves the copy where the cells lie in memory as floats already.
class PAVANE_API AMatrixAccess
{
public:
    virtual ~AMatrixAccess() = default;
    virtual int rows() const = 0;
    virtual int columns() const = 0;
    /// Writes cells (row, first) to (row, first + count - 1) to `to`. Only asked for cells inside.
    virtual void copyRow(int row, int first, int count, float* to) const = 0;
    /// The cells of a row when they lie in memory as floats one behind another, else null.
    virtual const float* floatRow(int row) const { return static_cast<void>(row), nullptr; }
    /// One cell; NaN outside the matrix.
    float cell(int row, int column) const
    {
        float value = std::numeric_limits<float>::quiet_NaN();
        if (row >= 0 && row < rows() && column >= 0 && column < columns())
            copyRow(row, column, 1, &value);
        return value;
    }
    int isEmpty() const { return rows() < 1 || columns() < 1; }
};

/// Cells of type T (float, double, short and the like) at fixed distances in memory: cell (r, c) is
/// first[r * rowStride + c * columnStride], strides in items, also negative ones. `blank`, when it
/// is not NaN, is the stored value that stands for a blank cell.
template <typename T>
class AStridedAccess : public AMatrixAccess
{
public:
    AStridedAccess(const T* first, int rows, int columns, std::int64_t rowStride,
                   std::int64_t columnStride = 1,
                   double blank = std::numeric_limits<double>::quiet_NaN())
        : first_(first), rows_(first ? rows : 0), columns_(first ? columns : 0),
          rowStride_(rowStride), columnStride_(columnStride), blank_(blank)
    {
    }
    int rows() const override { return rows_; }
    int columns() const override { return columns_; }
    void copyRow(int row, int first, int count, float* to) const override
    {
        const T* from = first_ + row * rowStride_ + first * columnStride_;
        for (int i = 0; i < count; ++i, from += columnStride_) {
            const double value = static_cast<double>(*from);
            to[i] = value == blank_ ? std::numeric_limits<float>::quiet_NaN() : asFloat(value);
        }
    }
    const float* floatRow(int row) const override
    {
        if constexpr (std::is_same_v<T, float>)
            if (columnStride_ == 1 && blank_ != blank_)
                return first_ + row * rowStride_;
        return nullptr;
    }

private:
    /// Finite values stay finite: beyond the range of float they saturate.
    static float asFloat(double value)
    {
        constexpr double limit = std::numeric_limits<float>::max();
        if (std::isfinite(value))
            value = value > limit ? limit : value < -limit ? -limit : value;
        return static_cast<float>(value);
    }

    const T* first_;
    int rows_;
    int columns_;
    std::int64_t rowStride_;
    std::int64_t columnStride_;
    double blank_;
};

/// The cells of an AMatrix<float>, read as they are at each call; the matrix may be sized anew.
class PAVANE_API AFloatMatrixAccess : public AMatrixAccess
{
public:
    explicit AFloatMatrixAccess(const AMatrix<float>& cells) : cells_(&cells) {}
    int rows() const override { return cells_->rows(); }
    int columns() const override { return cells_->columns(); }
    void copyRow(int row, int first, int count, float* to) const override
    {
        std::memcpy(to, cells_->row(row) + first, static_cast<std::size_t>(count) * sizeof(float));
    }
    const float* floatRow(int row) const override { return cells_->row(row); }

private:
    const AMatrix<float>* cells_;
};

/// The rows of an access as floats, one after another, copied only where they have to be.
class RowReader
{
public:
    explicit RowReader(const AMatrixAccess& cells) : cells_(&cells) {}
    /// Row `row`, columns()-many floats; valid until the next call. Null without memory.
    const float* row(int row)
    {
        if (const float* direct = cells_->floatRow(row))
            return direct;
        if (copy_.columns() != cells_->columns() && !copy_.allocate(1, cells_->columns()))
            return nullptr;
        cells_->copyRow(row, 0, cells_->columns(), copy_.data());
        return copy_.data();
    }

private:
    const AMatrixAccess* cells_;
    AMatrix<float> copy_;
};

}  // namespace pavane
