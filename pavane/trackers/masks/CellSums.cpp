#include "pavane/trackers/masks/CellSums.h"

#include "pavane/axes/maps/cells/AMatrixAccess.h"
#include "tessel/large_buffer.h"

#include <algorithm>
#include <bit>
#include <cmath>
#include <cstring>
#include <limits>

namespace pavane
{

namespace
{

using Word = ABitMatrix::Word;
constexpr int bits = ABitMatrix::wordBits;
constexpr int rowsAhead = 8;

/// The bits of a word that are columns of the map.
Word columnsOfWord(std::int64_t word, int columns)
{
    const std::int64_t left = columns - word * bits;
    return left >= bits ? ~Word{0} : ~Word{0} >> (bits - left);
}

/// Sum of those of 64 values whose bit is set and that are finite. The order is the same on every
/// processor.
double maskedSum(const float* values, Word set)
{
    using Floats = float __attribute__((vector_size(16)));
    using Ints = std::int32_t __attribute__((vector_size(16)));
    using Doubles = double __attribute__((vector_size(32)));
    constexpr std::int32_t infinite = 0x7F800000;
    Doubles sums = {};
    for (int i = 0; i < bits; i += 4, set >>= 4) {
        Ints x;
        std::memcpy(&x, values + i, sizeof x);
        const Ints taken = (static_cast<std::int32_t>(set & 15) & Ints{1, 2, 4, 8}) != 0;
        x &= taken & ((x & infinite) != infinite);
        Floats finite;
        std::memcpy(&finite, &x, sizeof x);
        sums += __builtin_convertvector(finite, Doubles);
    }
    return (sums[0] + sums[1]) + (sums[2] + sums[3]);
}

/// Asks for the values of a word.
void prefetch(const float* values)
{
    constexpr int cacheLine = 64 / sizeof(float);
    for (int i = 0; i < bits; i += cacheLine)
        __builtin_prefetch(values + i);
}

double* newSums(std::size_t n)
{
    return static_cast<double*>(allocateLarge(static_cast<std::int64_t>(n * sizeof(double))));
}

}  // namespace

double CellSums::notKnown() { return std::numeric_limits<double>::quiet_NaN(); }

int CellSums::setMap(const AMatrixAccess& values)
{
    clear();
    if (values.isEmpty())
        return 1;
    values_ = &values;
    rowWords_ = (std::int64_t{values.columns()} + bits - 1) / bits;
    wordSums_ = newSums(words());
    fullSums_ = newSums(words());
    rowSums_ = newSums(static_cast<std::size_t>(values.rows()));
    if (!wordSums_ || !fullSums_ || !rowSums_) {
        clear();
        return 0;
    }
    valuesChanged();
    return 1;
}

void CellSums::clear()
{
    for (double** sums : {&wordSums_, &fullSums_, &rowSums_}) {
        freeLarge(*sums);
        *sums = nullptr;
    }
    values_ = nullptr;
}

std::size_t CellSums::words() const
{
    return static_cast<std::size_t>(values_->rows() * rowWords_);
}

void CellSums::valuesChanged()
{
    if (values_)
        std::fill_n(fullSums_, words(), notKnown());
    maskChanged();
}

void CellSums::maskChanged()
{
    if (!values_)
        return;
    std::fill_n(wordSums_, words(), notKnown());
    std::fill_n(rowSums_, values_->rows(), notKnown());
}

double CellSums::total(const ABitMatrix& mask)
{
    if (!values_)
        return 0;
    double total = 0;
    double lost = 0;  // what the total so far could not hold
    for (int r = 0; r < mask.rows(); ++r) {
        if (std::isnan(rowSums_[r]))
            rowSums_[r] = rowSum(mask, r);
        const double row = rowSums_[r];
        const double sum = total + row;
        lost += std::abs(total) >= std::abs(row) ? (total - sum) + row : (row - sum) + total;
        total = sum;
    }
    return total + lost;
}

double CellSums::rowSum(const ABitMatrix& mask, int row)
{
    double sum = 0;
    double* const known = wordSums_ + row * rowWords_;
    for (std::int64_t w = 0; w < rowWords_; ++w) {
        if (std::isnan(known[w]))
            known[w] = wordSum(row, w, mask.row(row)[w]);
        sum += known[w];
    }
    return sum;
}

double CellSums::ofWords(const ABitMatrix& mask, int row, std::int64_t first, std::int64_t end)
{
    double sum = 0;
    for (std::int64_t w = first; values_ && w < end; ++w)
        sum += wordSum(row, w, mask.row(row)[w]);
    return sum;
}

double CellSums::wordSum(int row, std::int64_t word, Word set)
{
    if (!set)
        return 0;
    const Word whole = columnsOfWord(word, values_->columns());
    double& full = fullSums_[row * rowWords_ + word];
    if (set == whole && !std::isnan(full))
        return full;
    const int first = static_cast<int>(word) * bits;
    const float* const values = values_->floatRow(row);
    double sum = 0;
    if (values && whole == ~Word{0}) {
        // an edge that moved changes the same word row by row, each on a page of its own
        if (row + rowsAhead < values_->rows())
            prefetch(values_->floatRow(row + rowsAhead) + first);
        sum = maskedSum(values + first, set);
    } else {
        float copy[bits] = {};
        values_->copyRow(row, first, std::popcount(whole), copy);
        sum = maskedSum(copy, set);
    }
    if (set == whole)
        full = sum;
    return sum;
}

}  // namespace pavane
