#include "pavane/measures/areas/cell_numbers.h"

#include "pavane/axes/maps/cells/float_keys.h"

#include <algorithm>
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
/// Values from which on they are dealt out by the upper half of their bits first.
constexpr std::size_t manyValues = std::size_t{1} << 15;
constexpr int binBits = 16;

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

/// Sums of one row.
struct RowSums {
    double sum = 0, byColumn = 0;
};

/// Appends the finite ones of `count` values to `to` and sums them, also by their number from
/// `first` on; returns how many they are.
std::size_t takeFinite(const float* from, int count, int first, float* to, RowSums& sums)
{
    std::size_t taken = 0;
    double sum = 0, byColumn = 0;
    for (int i = 0; i < count; ++i) {
        const int isFinite = std::isfinite(from[i]);
        const float value = isFinite ? from[i] : 0;
        to[taken] = value;
        taken += static_cast<std::size_t>(isFinite);
        sum += double{value};
        byColumn += double{value} * (first + i);
    }
    sums.sum += sum;
    sums.byColumn += byColumn;
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

/// The two in the middle of values, one and the same of an odd count.
double middle(float* values, std::size_t count)
{
    float* const place = values + count / 2;
    std::nth_element(values, place, values + count);
    if (count % 2)
        return double{*place};
    return (double{*std::max_element(values, place)} + double{*place}) / 2;
}

/// The value of a rank, found among those that share its upper bits. They are moved to the front.
float valueOfRank(float* values, std::size_t count, std::size_t rank,
                  std::vector<std::uint32_t>& bins)
{
    bins.assign(std::size_t{1} << binBits, 0);
    for (std::size_t i = 0; i < count; ++i)
        ++bins[orderedKey(values[i]) >> binBits];
    std::uint32_t bin = 0;
    while (rank >= bins[bin])
        rank -= bins[bin++];
    std::size_t found = 0;
    for (std::size_t i = 0; i < count; ++i)
        if (orderedKey(values[i]) >> binBits == bin)
            std::swap(values[found++], values[i]);
    std::nth_element(values, values + rank, values + found);
    return values[rank];
}

}  // namespace

double medianOf(float* values, std::size_t count, std::vector<std::uint32_t>& bins)
{
    if (!count)
        return CellNumbers::none;
    if (count < manyValues)
        return middle(values, count);
    const double upper = double{valueOfRank(values, count, count / 2, bins)};
    if (count % 2)
        return upper;
    return (double{valueOfRank(values, count, count / 2 - 1, bins)} + upper) / 2;
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
        RowSums sums;
        const std::size_t before = taken;
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
        // places are looked for only in the rows that have a new extreme
        float low = least, high = greatest;
        for (std::size_t i = before; i < taken; ++i) {
            low = std::min(low, values_[i]);
            high = std::max(high, values_[i]);
        }
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
            numbers.median = medianOf(values_.data(), values_.size(), bins_);
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
        return widthOverDeviation * medianOf(values_.data(), values_.size(), bins_);
    } catch (const std::bad_alloc&) {
        return CellNumbers::none;
    }
}

}  // namespace pavane
