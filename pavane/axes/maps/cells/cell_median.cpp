#include "pavane/axes/maps/cells/cell_median.h"

#include "pavane/axes/maps/cells/float_keys.h"
#include "pavane/axes/maps/cells/median_kernels.h"

#include <algorithm>
#include <cmath>
#include <limits>
#include <memory>
#include <new>
#include <utility>

namespace pavane
{

namespace
{

constexpr float infinity = std::numeric_limits<float>::infinity();
/// Maps up to here are searched as a whole.
constexpr std::int64_t fewCells = 65536;
/// A guess from fewer cells says nothing.
constexpr std::size_t leastSample = 1024;
/// The rank of the median in a sample of n cells scatters by sqrt(n) / 2; five times that is passed
/// once in two million maps.
constexpr double reachOfGuess = 2.5;
/// Cells that are kept during a pass: one of so many, four times what a sample lets expect.
constexpr std::int64_t cellsOfKept = 16;

/// A number from 0 to `end` - 1 without a pattern that cells could follow.
std::int64_t scattered(std::int64_t i, std::int64_t end)
{
    std::uint64_t bits = static_cast<std::uint64_t>(i) * 0x9E3779B97F4A7C15u;
    bits = (bits ^ bits >> 30) * 0xBF58476D1CE4E5B9u;
    bits = (bits ^ bits >> 27) * 0x94D049BB133111EBu;
    return static_cast<std::int64_t>((bits >> 32) * static_cast<std::uint64_t>(end) >> 32);
}

class MedianSearch
{
public:
    MedianSearch(const AMatrixAccess& cells, const double* centre, SimdPath path)
        : cells_(cells), centre_(centre), kernels_(medianKernels(path)),
          room_(roomFor(std::int64_t{cells.rows()} * cells.columns())),
          kept_(new (std::nothrow) float[static_cast<std::size_t>(room_) + margin])
    {
        if (!kept_)
            room_ = -1;  // more passes take its place
    }

    CellMedian find(std::vector<float> sample)
    {
        guess(sample);
        CellMedian median;
        float low = 0, high = 0;
        if (!pass() || finite_ < 1 || !findRank((finite_ - 1) / 2, low) ||
            !findRank(finite_ / 2, high))
            return median;
        median.count = finite_;
        // a negative zero becomes the other
        median.value = (static_cast<double>(low) + static_cast<double>(high)) / 2 + 0.0;
        return median;
    }

private:
    static constexpr std::int64_t noRank = -2;
    /// The kernel writes up to 16 floats more than it keeps.
    static constexpr int margin = MedianKernels::blockCells + 16;

    static std::int64_t roomFor(std::int64_t all)
    {
        return all <= fewCells ? all : std::max(fewCells, all / cellsOfKept);
    }

    /// The interval about the middle of the sample that should hold the median.
    void guess(std::vector<float>& sample)
    {
        low_ = -infinity;
        high_ = infinity;
        if (sample.size() < leastSample)
            return;
        if (centre_)
            for (float& value : sample)
                value = static_cast<float>(std::fabs(static_cast<double>(value) - *centre_));
        const auto middle = static_cast<std::ptrdiff_t>(sample.size() / 2);
        const auto reach = static_cast<std::ptrdiff_t>(
            reachOfGuess * std::sqrt(static_cast<double>(sample.size())));
        const auto first = sample.begin() + (middle - reach);
        const auto last = sample.begin() + (middle + reach);
        std::nth_element(sample.begin(), first, sample.end());
        std::nth_element(first + 1, last, sample.end());
        low_ = *first;
        high_ = *last;
    }

    /// Counts all cells against the interval. 0 without memory.
    int pass()
    {
        float values[MedianKernels::blockCells];
        float spare[margin];
        RowReader reader(cells_);
        finite_ = 0;
        counts_ = {};
        sortedRank_ = noRank;
        for (int r = 0; r < cells_.rows(); ++r) {
            const float* const row = reader.row(r);
            if (!row)
                return 0;
            for (int c = 0; c < cells_.columns(); c += MedianKernels::blockCells) {
                const int n = std::min(MedianKernels::blockCells, cells_.columns() - c);
                finite_ += kernels_.values(row + c, n, centre_, values);
                kernels_.part(values, (n + 15) / 16 * 16, low_, high_, counts_,
                              counts_.inside <= room_ ? kept_.get() + counts_.inside : spare);
            }
        }
        return 1;
    }

    /// Finds the value of a rank by the last pass, or by others over halves of what is left. 0
    /// without memory, and for cells that change from pass to pass, as those of work that was given
    /// up do.
    int findRank(std::int64_t rank, float& value)
    {
        std::uint32_t first = orderedKey(-infinity);
        std::uint32_t last = orderedKey(infinity);
        constexpr int mostPasses = 40;  // a float has 32 bits to halve
        for (int i = 0; i < mostPasses && rank < finite_; ++i) {
            const std::int64_t fromLow = counts_.below;
            const std::int64_t fromInside = fromLow + counts_.atLow;
            const std::int64_t fromHigh = fromInside + counts_.inside;
            if (rank >= fromInside && rank < fromHigh && counts_.inside <= room_) {
                value = keptOfRank(rank - fromInside);
                return 1;
            }
            if (rank >= fromLow && (rank < fromInside || rank >= fromHigh) &&
                rank < fromHigh + counts_.atHigh) {
                value = rank < fromInside ? low_ : high_;
                return 1;
            }
            if (rank < fromHigh)
                last = orderedKey(rank < fromLow ? low_ : high_);
            if (rank >= fromLow)
                first = orderedKey(rank < fromHigh ? low_ : high_);
            low_ = keyValue(first);
            high_ = keyValue(first + (last - first + 1) / 2);
            if (!pass())
                return 0;
        }
        return 0;
    }

    float keptOfRank(std::int64_t rank)
    {
        float* const place = kept_.get() + rank;
        float* const end = kept_.get() + counts_.inside;
        if (rank == sortedRank_ + 1)  // all that are less lie before it
            std::iter_swap(place, std::min_element(place, end));
        else
            std::nth_element(kept_.get(), place, end);
        sortedRank_ = rank;
        return *place;
    }

    const AMatrixAccess& cells_;
    const double* centre_;
    MedianKernels kernels_;
    std::int64_t room_;
    std::unique_ptr<float[]> kept_;
    float low_ = 0;
    float high_ = 0;
    IntervalCounts counts_;
    std::int64_t finite_ = 0;
    std::int64_t sortedRank_ = noRank;  ///< of what was kept, in its place
};

}  // namespace

std::vector<float> sampleCells(const AMatrixAccess& cells)
{
    std::vector<float> sample;
    const std::int64_t all = std::int64_t{cells.rows()} * cells.columns();
    if (all <= fewCells)
        return sample;
    // a cell of the sample takes longer than one of the map, and each further one brings less
    const double side = std::cbrt(static_cast<double>(all));
    const auto count = static_cast<std::int64_t>(side * side);
    const std::int64_t step = all / count;
    sample.reserve(static_cast<std::size_t>(count));
    std::int64_t row = 0, rowStart = 0;
    for (std::int64_t i = 0; i < count; ++i) {
        const std::int64_t place = i * step + scattered(i, step);
        while (place >= rowStart + cells.columns()) {
            rowStart += cells.columns();
            ++row;
        }
        const float cell = cells.cell(static_cast<int>(row), static_cast<int>(place - rowStart));
        if (std::isfinite(cell))
            sample.push_back(cell);
    }
    return sample;
}

CellMedian cellMedian(const AMatrixAccess& cells, const double* centre, std::vector<float> sample,
                      SimdPath path)
{
    return MedianSearch(cells, centre, path).find(std::move(sample));
}

}  // namespace pavane
