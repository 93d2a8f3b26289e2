#pragma once

#include "tessel/large_buffer.h"

#include <cstdint>
#include <cstring>
#include <limits>
#include <type_traits>
#include <utility>

namespace pavane
{

/// A matrix of plain values, row-major: cell (row, column) is item row * columns + column, both
/// from 0. Owns its buffer (aligned, huge pages for big ones). Cells are not initialised. An
/// allocation that fails, or a size below 1, leaves a matrix of 0 x 0. Indices are not checked.
template <typename T>
class AMatrix
{
    static_assert(std::is_trivially_copyable_v<T>);

public:
    AMatrix() = default;
    AMatrix(int rows, int columns) { allocate(rows, columns); }
    AMatrix(const AMatrix& other) { *this = other; }
    AMatrix& operator=(const AMatrix& other)
    {
        if (this != &other && allocate(other.rows_, other.columns_))
            std::memcpy(data_, other.data_, static_cast<std::size_t>(cells()) * sizeof(T));
        return *this;
    }
    AMatrix(AMatrix&& other) noexcept { swap(other); }
    AMatrix& operator=(AMatrix&& other) noexcept
    {
        swap(other);
        return *this;
    }
    ~AMatrix() { freeLarge(data_); }

    /// Drops the contents and makes room for rows x columns cells. Non-zero on success.
    int allocate(int rows, int columns)
    {
        freeLarge(data_);
        data_ = nullptr;
        rows_ = columns_ = 0;
        if (rows < 1 || columns < 1)
            return 0;
        const std::int64_t wanted = std::int64_t{rows} * columns;
        if (wanted >
            std::numeric_limits<std::int64_t>::max() / static_cast<std::int64_t>(sizeof(T)))
            return 0;
        data_ = static_cast<T*>(allocateLarge(wanted * static_cast<std::int64_t>(sizeof(T))));
        if (!data_)
            return 0;
        rows_ = rows;
        columns_ = columns;
        return 1;
    }
    void fill(const T& value)
    {
        for (std::int64_t i = 0; i < cells(); ++i)
            data_[i] = value;
    }

    int rows() const { return rows_; }
    int columns() const { return columns_; }
    std::int64_t cells() const { return std::int64_t{rows_} * columns_; }
    T* data() { return data_; }
    const T* data() const { return data_; }
    T* row(int r) { return data_ + std::int64_t{r} * columns_; }
    const T* row(int r) const { return data_ + std::int64_t{r} * columns_; }
    T& operator()(int r, int c) { return row(r)[c]; }
    const T& operator()(int r, int c) const { return row(r)[c]; }

private:
    void swap(AMatrix& other) noexcept
    {
        std::swap(rows_, other.rows_);
        std::swap(columns_, other.columns_);
        std::swap(data_, other.data_);
    }
    int rows_ = 0;
    int columns_ = 0;
    T* data_ = nullptr;
};

}  // namespace pavane
