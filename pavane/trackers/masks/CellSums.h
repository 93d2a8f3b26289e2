#pragma once

#include "platform/api.h"
#include "tessel/ABitMatrix.h"

#include <cstddef>
#include <cstdint>

namespace pavane
{

class AMatrixAccess;

/// Sums of a map's values over the set cells of a mask of the same size, kept while the mask
/// changes. Blank cells add nothing.
///
/// A sum is made of sums over the 64 cells of a word of the mask, kept until the word changes;
/// words are added up by row and the rows in turn, each time anew. So it depends on the mask alone,
/// not on the way to it. Within a word four sums run side by side and rows are added with their
/// rounding, so that the error stays below 1e-12 of the sum of the values' magnitudes for any row
/// of up to 500 000 cells.
class PAVANE_API CellSums
{
public:
    CellSums() = default;
    CellSums(const CellSums&) = delete;
    CellSums& operator=(const CellSums&) = delete;
    ~CellSums() { clear(); }

    /// The values, not owned. 0 without memory: sums are 0 then.
    int setMap(const AMatrixAccess& values);
    /// No map: all sums are 0.
    void clear();
    /// What to find out anew: values, all of the mask, or one word of it.
    void valuesChanged();
    void maskChanged();
    void wordChanged(int row, std::int64_t word)
    {
        if (!values_)
            return;
        wordSums_[row * rowWords_ + word] = notKnown();
        rowSums_[row] = notKnown();
    }

    /// Sum over the mask that is followed.
    double total(const ABitMatrix& mask);
    /// Sum over some words of a row of any mask of the map's size.
    double ofWords(const ABitMatrix& mask, int row, std::int64_t first, std::int64_t end);

private:
    static double notKnown();
    std::size_t words() const;
    double rowSum(const ABitMatrix& mask, int row);
    double wordSum(int row, std::int64_t word, ABitMatrix::Word set);

    const AMatrixAccess* values_ = nullptr;
    std::int64_t rowWords_ = 0;
    double* wordSums_ = nullptr;  // by row and word of the mask; NaN while not known
    double* fullSums_ = nullptr;  // the same with every cell of the word set
    double* rowSums_ = nullptr;
};

}  // namespace pavane
