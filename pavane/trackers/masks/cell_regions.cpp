#include "pavane/trackers/masks/cell_regions.h"

#include "tessel/rounding.h"

#include <bit>
#include <cmath>
#include <new>

namespace pavane
{

namespace
{

using Word = ABitMatrix::Word;
constexpr int bits = ABitMatrix::wordBits;
constexpr int mostGrowth = 1000;

/// Calls `take(first, last)` for each run of set bits of a row.
template <typename Take>
void runsOfRow(const ABitMatrix& mask, int row, const Take& take)
{
    int open = -1;
    for (int c = 0; c < mask.columns();) {
        const Word word = mask.row(row)[c / bits] >> (c % bits);
        const Word wanted = open < 0 ? word : ~word;
        const int found = wanted ? std::countr_zero(wanted) : bits;
        const int left = bits - c % bits;
        if (found >= left) {
            c += left;
            continue;
        }
        c += found;
        if (open >= 0)
            take(open, c - 1);
        open = open < 0 ? c : -1;
    }
    if (open >= 0)
        take(open, mask.columns() - 1);
}

}  // namespace

ContourPlace contourMask(const AMatrixAccess& values, double level, int row, int column,
                         ABitMatrix& mask)
{
    mask = ABitMatrix(values.rows(), values.columns());
    if (!mask.rows() && !values.isEmpty())
        return ContourPlace::noMemory;
    const auto inside = [&](int r, int c) {
        if (r < 0 || c < 0 || r >= mask.rows() || c >= mask.columns() || mask.get(r, c))
            return false;
        const double value = values.cell(r, c);
        return level < 0 ? value <= level : value >= level;  // neither of a blank cell
    };
    if (!inside(row, column))
        return ContourPlace::outside;
    int atEdge = 0;
    try {
        flood(row, column, inside, [&](const CellRun& run) {
            mask.setSpan(run.row, run.first, run.last);
            atEdge |= run.first == 0 || run.last == mask.columns() - 1 || run.row == 0 ||
                      run.row == mask.rows() - 1;
        });
    } catch (const std::bad_alloc&) {
        return ContourPlace::noMemory;
    }
    return atEdge ? ContourPlace::atEdge : ContourPlace::closed;
}

int growMask(const ABitMatrix& mask, int cells, ABitMatrix& grown)
{
    grown = ABitMatrix(mask.rows(), mask.columns());
    if (cells < 1 || cells > mostGrowth || grown.rows() != mask.rows())
        return 0;
    const double radius = cells + 0.5;
    for (int row = 0; row < mask.rows(); ++row)
        runsOfRow(mask, row, [&](int first, int last) {
            for (int dy = -cells; dy <= cells; ++dy) {
                const int reach = truncated(std::sqrt(radius * radius - double{1} * dy * dy));
                grown.setSpan(row + dy, first - reach, last + reach);
            }
        });
    return 1;
}

int shrinkMask(const ABitMatrix& mask, int cells, ABitMatrix& shrunk)
{
    ABitMatrix clear = mask;
    if (clear.rows() != mask.rows())
        return 0;
    clear.invert();
    if (!growMask(clear, cells, shrunk))
        return 0;
    shrunk.invert();
    return 1;
}

}  // namespace pavane
