#include "pavane/measures/areas/cell_numbers.h"

#include "pavane/axes/maps/cells/cell_median.h"
#include "pavane/axes/maps/cells/simd_path.h"

#include <algorithm>
#include <bit>
#include <cmath>
#include <cstring>
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

/// What is told of one row.
struct RowSums {
    double sum = 0, byColumn = 0;
    float least = std::numeric_limits<float>::infinity();
    float greatest = -std::numeric_limits<float>::infinity();
};

int areFinite(const float* values, int count)
{
    constexpr std::uint32_t infinite = 0x7F800000;
    std::uint32_t bad = 0;
    for (int i = 0; i < count; ++i)
        bad |= (std::bit_cast<std::uint32_t>(values[i]) & infinite) == infinite;
    return !bad;
}

/// Sums of finite values that stand in columns from `first` on, four side by side: one after
/// another each would wait for the one before it.
void addFinite(const float* values, int count, int first, RowSums& sums)
{
    using Floats = float __attribute__((vector_size(16)));
    using Doubles = double __attribute__((vector_size(32)));
    constexpr int lanes = 4;
    Doubles sum = {}, byColumn = {};
    Doubles column = {0.0, 1.0, 2.0, 3.0};
    column += static_cast<double>(first);
    Floats least = {}, greatest = {};
    least += sums.least;
    greatest += sums.greatest;
    int i = 0;
    for (; i + lanes <= count; i += lanes) {
        Floats x;
        std::memcpy(&x, values + i, sizeof x);
        const Doubles wide = __builtin_convertvector(x, Doubles);
        sum += wide;
        byColumn += wide * column;
        column += lanes;
        least = x < least ? x : least;
        greatest = x > greatest ? x : greatest;
    }
    for (int lane = 0; lane < lanes; ++lane) {
        sums.sum += sum[lane];
        sums.byColumn += byColumn[lane];
        sums.least = std::min(sums.least, least[lane]);
        sums.greatest = std::max(sums.greatest, greatest[lane]);
    }
    for (; i < count; ++i) {
        sums.sum += double{values[i]};
        sums.byColumn += double{values[i]} * (first + i);
        sums.least = std::min(sums.least, values[i]);
        sums.greatest = std::max(sums.greatest, values[i]);
    }
}

/// Appends the finite ones of `count` values to `to` and sums them, also by their column; returns
/// how many they are.
std::size_t takeFinite(const float* from, int count, int first, float* to, RowSums& sums)
{
    if (areFinite(from, count)) {
        std::copy_n(from, count, to);
        addFinite(to, count, first, sums);
        return static_cast<std::size_t>(count);
    }
    std::size_t taken = 0;
    for (int i = 0; i < count; ++i)
        if (std::isfinite(from[i])) {
            to[taken++] = from[i];
            addFinite(from + i, 1, first + i, sums);
        }
    return taken;
}

double rmsAbout(double mean, const std::vector<float>& values)
{
    constexpr std::size_t lanes = 4;
    double squares[lanes] = {};
    const std::size_t count = values.size();
    const auto square = [&](std::size_t i) {
        const double distance = double{values[i]} - mean;
        return distance * distance;
    };
    std::size_t i = 0;
    for (; i + lanes <= count; i += lanes)
        for (std::size_t lane = 0; lane < lanes; ++lane)
            squares[lane] += square(i + lane);
    for (; i < count; ++i)
        squares[0] += square(i);
    const double sum = (squares[0] + squares[1]) + (squares[2] + squares[3]);
    return std::sqrt(sum / static_cast<double>(count));
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

/// The mean of the two in the middle of values, one and the same of an odd count.
double middle(float* values, std::size_t count)
{
    const std::size_t rank = count / 2;
    select(values, count, rank);
    if (count % 2)
        return double{values[rank]};
    return (double{*std::max_element(values, values + rank)} + double{values[rank]}) / 2;
}

}  // namespace

double medianOf(float* values, std::size_t count)
{
    if (!count)
        return CellNumbers::none;
    if (count < manyValues || count > mostOfSearch)
        return middle(values, count);
    const AStridedAccess<float> all(values, 1, static_cast<int>(count),
                                    static_cast<std::int64_t>(count));
    return cellMedian(all, nullptr, sampleCells(all), bestSimdPath()).value;
}

int CellCounter::gather(const AMatrixAccess& cells, const ABitMatrix& mask, int firstRow,
                        int firstColumn, CellNumbers& numbers, const StopFlag* stop)
{
    const std::int64_t all = mask.count();
    values_.resize(static_cast<std::size_t>(all) + 1);  // one more is written, and not taken
    std::size_t taken = 0;
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
        RowSums sums;
        eachRun(mask, r, [&](int first, int end) {
            const int column = firstColumn + first;
            const int count = end - first;
            const float* from = direct ? direct + column : row_.data();
            if (!direct) {
                row_.resize(static_cast<std::size_t>(std::max(mask.columns(), 1)));
                from = row_.data();
                cells.copyRow(row, column, count, row_.data());
            }
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
                for (int c = first; c < end && place < 0; ++c)
                    if (cells.cell(row, firstColumn + c) == value)
                        place = firstColumn + c;
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
    values_.resize(taken);
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
    values_.clear();
    try {
        if (!gather(cells, mask, firstRow, firstColumn, numbers, stop)) {
            numbers = {};
            return 0;
        }
        if (numbers.cells) {
            numbers.rms = rmsAbout(numbers.mean, values_);
            numbers.median = medianOf(values_.data(), values_.size());
        }
    } catch (const std::bad_alloc&) {
        numbers = {};
        return 0;
    }
    return 1;
}

double CellCounter::deviation(double median)
{
    for (float& value : values_)
        value = static_cast<float>(std::fabs(double{value} - median));
    try {
        return widthOverDeviation * medianOf(values_.data(), values_.size());
    } catch (const std::bad_alloc&) {
        return CellNumbers::none;
    }
}

}  // namespace pavane
