#include "tessel/ABitMatrix.h"

#include "tessel/large_buffer.h"

#include <algorithm>
#include <bit>
#include <cstring>
#include <utility>

namespace pavane
{

namespace
{

constexpr ABitMatrix::Word allOnes = ~ABitMatrix::Word{0};

std::size_t bytesOf(std::int64_t words)
{
    return static_cast<std::size_t>(words) * sizeof(ABitMatrix::Word);
}

}  // namespace

ABitMatrix::ABitMatrix(int rows, int columns)
{
    if (rows < 1 || columns < 1)
        return;
    const std::int64_t rowWords = (std::int64_t{columns} + wordBits - 1) / wordBits;
    const std::size_t bytes = bytesOf(rows * rowWords);
    words_ = static_cast<Word*>(allocateLarge(static_cast<std::int64_t>(bytes)));
    if (!words_)
        return;
    std::memset(words_, 0, bytes);
    rows_ = rows;
    columns_ = columns;
    rowWords_ = rowWords;
}

ABitMatrix::ABitMatrix(const ABitMatrix& other) { *this = other; }

ABitMatrix& ABitMatrix::operator=(const ABitMatrix& other)
{
    if (this == &other)
        return *this;
    ABitMatrix copy(other.rows_, other.columns_);
    if (copy.words_)
        std::memcpy(copy.words_, other.words_, bytesOf(copy.rows_ * copy.rowWords_));
    return *this = std::move(copy);
}

ABitMatrix::ABitMatrix(ABitMatrix&& other) noexcept { *this = std::move(other); }

ABitMatrix& ABitMatrix::operator=(ABitMatrix&& other) noexcept
{
    std::swap(rows_, other.rows_);
    std::swap(columns_, other.columns_);
    std::swap(rowWords_, other.rowWords_);
    std::swap(words_, other.words_);
    return *this;
}

ABitMatrix::~ABitMatrix() { freeLarge(words_); }

void ABitMatrix::setSpan(int r, int first, int last)
{
    if (r < 0 || r >= rows_)
        return;
    first = std::max(first, 0);
    last = std::min(last, columns_ - 1);
    if (first > last)
        return;
    Word* const words = row(r);
    const int firstWord = first / wordBits;
    const int lastWord = last / wordBits;
    const Word head = allOnes << (first % wordBits);
    const Word tail = allOnes >> (wordBits - 1 - last % wordBits);
    if (firstWord == lastWord) {
        words[firstWord] |= head & tail;
        return;
    }
    words[firstWord] |= head;
    std::fill(words + firstWord + 1, words + lastWord, allOnes);
    words[lastWord] |= tail;
}

void ABitMatrix::setAll(int value)
{
    if (!words_)
        return;
    std::memset(words_, value ? 0xFF : 0, bytesOf(rows_ * rowWords_));
    const int used = columns_ % wordBits;
    if (!value || !used)
        return;
    const Word tail = allOnes >> (wordBits - used);
    for (int r = 0; r < rows_; ++r)
        row(r)[rowWords_ - 1] = tail;
}

void ABitMatrix::invert()
{
    const int used = columns_ % wordBits;
    const Word tail = used ? allOnes >> (wordBits - used) : allOnes;
    for (int r = 0; r < rows_; ++r) {
        Word* const words = row(r);
        for (std::int64_t w = 0; w < rowWords_; ++w)
            words[w] = ~words[w];
        words[rowWords_ - 1] &= tail;
    }
}

std::int64_t ABitMatrix::count() const
{
    std::int64_t bits = 0;
    for (std::int64_t i = 0; i < rows_ * rowWords_; ++i)
        bits += std::popcount(words_[i]);
    return bits;
}

int ABitMatrix::operator==(const ABitMatrix& other) const
{
    return rows_ == other.rows_ && columns_ == other.columns_ &&
           (!words_ || !std::memcmp(words_, other.words_, bytesOf(rows_ * rowWords_)));
}

}  // namespace pavane
