#pragma once

#include "tessel/api.h"

#include <cstdint>

namespace pavane
{

/// A matrix of bits, all 0 at first: bit (row, column), both from 0. Rows are packed into 64-bit
/// words, column 0 in the lowest bit of a row's first word, and padded to whole words; padding bits
/// are 0 always. An allocation that fails leaves a matrix of 0 x 0.
class PAVANE_API ABitMatrix
{
public:
    using Word = std::uint64_t;
    static constexpr int wordBits = 64;

    ABitMatrix() = default;
    /// `rows` x `columns` bits; anything below 1 gives an empty matrix.
    ABitMatrix(int rows, int columns);
    ABitMatrix(const ABitMatrix& other);
    ABitMatrix& operator=(const ABitMatrix& other);
    ABitMatrix(ABitMatrix&& other) noexcept;
    ABitMatrix& operator=(ABitMatrix&& other) noexcept;
    ~ABitMatrix();

    int rows() const { return rows_; }
    int columns() const { return columns_; }
    /// Words from the start of one row to the next.
    std::int64_t rowWords() const { return rowWords_; }
    /// First word of a row, which must exist. Writers keep the padding bits 0.
    Word* row(int r) { return words_ + r * rowWords_; }
    const Word* row(int r) const { return words_ + r * rowWords_; }

    /// The bit, 0 outside the matrix.
    int get(int r, int c) const
    {
        return inside(r, c) ? static_cast<int>((row(r)[c / wordBits] >> (c % wordBits)) & 1u) : 0;
    }
    /// Sets (or clears, with value 0) a bit; nothing happens outside the matrix.
    void set(int r, int c, int value = 1)
    {
        if (!inside(r, c))
            return;
        Word& w = row(r)[c / wordBits];
        const Word bit = Word{1} << (c % wordBits);
        w = value ? (w | bit) : (w & ~bit);
    }
    /// Sets the bits `first` to `last`, both included, of row r. Cut to the matrix; nothing happens
    /// when the row does not exist or `first` is above `last`.
    void setSpan(int r, int first, int last);
    /// Every bit to 0 or to 1.
    void setAll(int value);
    /// Every bit to what it was not.
    void invert();
    /// How many bits are 1.
    std::int64_t count() const;
    /// Non-zero when sizes and bits are the same.
    int operator==(const ABitMatrix& other) const;

private:
    int inside(int r, int c) const { return r >= 0 && r < rows_ && c >= 0 && c < columns_; }
    int rows_ = 0;
    int columns_ = 0;
    std::int64_t rowWords_ = 0;
    Word* words_ = nullptr;
};

}  // namespace pavane
