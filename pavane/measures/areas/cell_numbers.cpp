#include "pavane/measures/areas/cell_numbers.h"

#include "pavane/axes/maps/cells/cell_median.h"
#include "pavane/axes/maps/cells/simd_path.h"
#include "pavane/measures/areas/number_kernels.h"

#include <algorithm>
#include <array>
#include <bit>
#include <cmath>
#include <new>

namespace pavane
{

namespace
{

using Word = ABitMatrix::Word;
constexpr int bits = ABitMatrix::wordBits;
/// Of a normal distribution: its width over its median deviation.
constexpr double widthOverDeviation = 1.4826;
constexpr int rowsAhead = 6;
constexpr std::int64_t fewCells = std::int64_t{1} << 16;
/// Values from which on the search that goes over a map once is the faster one, and what it takes.
constexpr std::size_t manyValues = std::size_t{1} << 15;
constexpr std::size_t mostOfSearch = std::numeric_limits<int>::max();

/// Calls `run(first, end)` for each run of set bits in a row of the mask.
template <typename Run>
void eachRun(const ABitMatrix& mask, int row, const Run& run)
{
    const Word* const words = mask.row(row);
    int open = -1;  // where a run began that reaches the end of a word
    for (std::int64_t w = 0; w < mask.rowWords(); ++w) {
        Word left = words[w];
        const int start = static_cast<int>(w) * bits;
        if (open >= 0) {
            if (left == ~Word{0})
                continue;
            run(open, start + std::countr_one(left));
            open = -1;
            left &= left + 1;  // without the lowest run
        }
        while (left) {
            const int first = std::countr_zero(left);
            const Word filled = left | (left - 1);
            if (filled == ~Word{0}) {
                open = start + first;
                break;
            }
            run(start + first, start + std::countr_one(filled));
            left &= filled + 1;
        }
    }
    if (open >= 0)
        run(open, mask.columns());
}

/// Asks for the begin of a row: those of a small area lie on a page of memory each.
void prefetch(const float* values, int count)
{
    constexpr int line = 64 / sizeof(float), most = 4 * line;
    for (int i = 0; i < std::min(count, most); i += line)
        __builtin_prefetch(values + i);
}

const NumberKernels& kernels()
{
    static const NumberKernels best = numberKernels(bestSimdPath());
    return best;
}

/// Appends the finite ones of `count` values to `to` and sums them, also by their column; returns
/// how many they are.
std::size_t takeFinite(const float* from, int count, int first, float* to, RowSums& sums)
{
    const RowSums before = sums;
    if (kernels().addFinite(from, count, first, to, sums))
        return static_cast<std::size_t>(count);
    sums = before;
    std::size_t taken = 0;
    for (int i = 0; i < count; ++i)
        if (std::isfinite(from[i]))
            taken += static_cast<std::size_t>(
                kernels().addFinite(from + i, 1, first + i, to + taken, sums));
    return taken;
}

/// Takes to the front what is less than, or with `isEqual` equal to, the pivot; how many they are.
/// Without a branch that depends on the values: half of those would be guessed wrong.
template <int isEqual>
std::size_t part(float* values, std::size_t count, float pivot)
{
    std::size_t front = 0;
    for (std::size_t i = 0; i < count; ++i) {
        const float value = values[i];
        values[i] = values[front];
        values[front] = value;
        front += isEqual ? value == pivot : value < pivot;
    }
    return front;
}

/// Puts the value of the rank in its place, what is not greater before it and what is not less
/// behind it.
void select(float* values, std::size_t count, std::size_t rank)
{
    constexpr std::size_t few = 24;
    constexpr int mostParts = 40;  // a bad choice of pivots so often is a trap
    for (int i = 0; count > few && i < mostParts; ++i) {
        const float a = values[count / 4], b = values[count / 2], c = values[count - 1 - count / 4];
        const float pivot = std::max(std::min(a, b), std::min(std::max(a, b), c));
        const std::size_t less = part<0>(values, count, pivot);
        if (rank < less) {
            count = less;
            continue;
        }
        const std::size_t equal = part<1>(values + less, count - less, pivot);
        if (rank < less + equal)
            return;
        values += less + equal;
        count -= less + equal;
        rank -= less + equal;
    }
    std::nth_element(values, values + rank, values + count);
}

/// The value of a rank above 0 or, unless `isOdd`, the mean of that and the one before it.
double middle(float* values, std::size_t count, std::size_t rank, int isOdd)
{
    select(values, count, rank);
    if (isOdd)
        return double{values[rank]};
    return (double{*std::max_element(values, values + rank)} + double{values[rank]}) / 2;
}

/// The median of values of which mean and rms are known: in most areas it is one of the few between
/// these two, which one pass finds.
double medianNear(float* values, std::size_t count, double mean, double rms)
{
    constexpr std::size_t mostNear = 2048;
    constexpr double reach = 0.15;  // of the rms; in noise one value of eight lies within it
    if (count <= mostNear) {
        std::array<float, mostNear + 16> near;  // the kernels write more than they take
        std::size_t below = 0;
        const std::size_t found =
            kernels().between(values, count, static_cast<float>(mean - reach * rms),
                              static_cast<float>(mean + reach * rms), below, near.data());
        const std::size_t rank = count / 2;  // and the one before it
        if (below < rank && rank < below + found)
            return middle(near.data(), found, rank - below, count % 2 != 0);
    }
    return medianOf(values, count);
}

}  // namespace

double medianOf(float* values, std::size_t count)
{
    if (!count)
        return CellNumbers::none;
    if (count < manyValues || count > mostOfSearch)
        return middle(values, count, count / 2, count % 2 != 0);
    const AStridedAccess<float> all(values, 1, static_cast<int>(count),
                                    static_cast<std::int64_t>(count));
    return cellMedian(all, nullptr, sampleCells(all), bestSimdPath()).value;
}

int CellCounter::gather(const AMatrixAccess& cells, const ABitMatrix& mask, int firstRow,
                        int firstColumn, CellNumbers& numbers, const StopFlag* stop)
{
    // of a small mask the room for all of it costs less than to count what is set; one more is
    // written, and not taken
    const std::int64_t box = std::int64_t{mask.rows()} * mask.columns();
    const auto room = static_cast<std::size_t>(box > fewCells ? mask.count() : box) + 1;
    if (values_.size() < room)
        values_.resize(room);
    std::size_t taken = 0;
    std::int64_t all = 0;
    double byColumn = 0, byRow = 0;
    float least = std::numeric_limits<float>::infinity();
    float greatest = -least;
    for (int r = 0; r < mask.rows(); ++r) {
        if (isStopped(stop))
            return 0;
        const int row = firstRow + r;
        const float* const direct = cells.floatRow(row);
        if (direct && r + rowsAhead < mask.rows())
            prefetch(cells.floatRow(row + rowsAhead) + firstColumn, mask.columns());
        const auto cellsFrom = [&](int column, int count) {
            if (direct)
                return direct + column;
            row_.resize(static_cast<std::size_t>(std::max(mask.columns(), 1)));
            cells.copyRow(row, column, count, row_.data());
            return static_cast<const float*>(row_.data());
        };
        RowSums sums;
        eachRun(mask, r, [&](int first, int end) {
            const int column = firstColumn + first;
            const int count = end - first;
            const float* const from = cellsFrom(column, count);
            all += count;
            taken += takeFinite(from, count, column, values_.data() + taken, sums);
        });
        numbers.sum += sums.sum;
        byColumn += sums.byColumn;
        byRow += sums.sum * row;
        const float low = sums.least, high = sums.greatest;
        // places are looked for only in the rows that have a new extreme
        const auto placeOf = [&](float value) {
            int place = -1;
            eachRun(mask, r, [&](int first, int end) {
                if (place >= 0)
                    return;
                const float* const from = cellsFrom(firstColumn + first, end - first);
                const float* const found = std::find(from, from + (end - first), value);
                if (found != from + (end - first))
                    place = firstColumn + first + static_cast<int>(found - from);
            });
            return place;
        };
        if (low < least) {
            least = low;
            numbers.leastColumn = placeOf(low);
            numbers.leastRow = row;
        }
        if (high > greatest) {
            greatest = high;
            numbers.greatestColumn = placeOf(high);
            numbers.greatestRow = row;
        }
    }
    taken_ = taken;
    numbers.cells = static_cast<std::int64_t>(taken);
    numbers.blank = all - numbers.cells;
    if (!taken)
        return 1;
    numbers.least = double{least};
    numbers.greatest = double{greatest};
    numbers.mean = numbers.sum / static_cast<double>(taken);
    if (numbers.sum > 0) {
        numbers.centroidColumn = byColumn / numbers.sum;
        numbers.centroidRow = byRow / numbers.sum;
    }
    return 1;
}

int CellCounter::count(const AMatrixAccess& cells, const ABitMatrix& mask, int firstRow,
                       int firstColumn, CellNumbers& numbers, const StopFlag* stop)
{
    numbers = {};
    taken_ = 0;
    try {
        if (!gather(cells, mask, firstRow, firstColumn, numbers, stop)) {
            numbers = {};
            return 0;
        }
        if (numbers.cells) {
            const double squares = kernels().squares(values_.data(), taken_, numbers.mean);
            numbers.rms = std::sqrt(squares / static_cast<double>(taken_));
            numbers.median = medianNear(values_.data(), taken_, numbers.mean, numbers.rms);
        }
    } catch (const std::bad_alloc&) {
        numbers = {};
        return 0;
    }
    return 1;
}

double CellCounter::deviation(double median)
{
    for (std::size_t i = 0; i < taken_; ++i)
        values_[i] = static_cast<float>(std::fabs(double{values_[i]} - median));
    try {
        return widthOverDeviation * medianOf(values_.data(), taken_);
    } catch (const std::bad_alloc&) {
        return CellNumbers::none;
    }
}

}  // namespace pavane
