#include "pavane/maps/map_statistics.h"

#include "pavane/maps/float_keys.h"
#include "pavane/maps/row_kernels.h"

#include <algorithm>
#include <cmath>
#include <limits>
#include <vector>

namespace pavane
{

namespace
{

constexpr int lanes = 16;
constexpr float infinity = std::numeric_limits<float>::infinity();
/// From the median absolute deviation to the standard deviation of a normal distribution.
constexpr double deviationToSigma = 1.4826;

/// Calls `take(value)` for every finite cell; with `centre`, for its distance from there.
template <typename Take>
int forEachCell(const AMatrixAccess& cells, const double* centre, Take take)
{
    RowReader reader(cells);
    for (int r = 0; r < cells.rows(); ++r) {
        const float* row = reader.row(r);
        if (!row)
            return 0;
        for (int c = 0; c < cells.columns(); ++c) {
            if (!std::isfinite(row[c]))
                continue;
            take(centre ? static_cast<float>(std::fabs(static_cast<double>(row[c]) - *centre))
                        : row[c]);
        }
    }
    return 1;
}

/// Finds one or two neighbouring ranks of the values in two passes: first the upper half of the
/// key of each, then its lower half.
class RankSearch
{
public:
    RankSearch(const AMatrixAccess& cells, const double* centre) : cells_(cells), centre_(centre) {}

    std::int64_t count() const { return count_; }
    /// The mean of the values of rank (count - 1) / 2 and count / 2.
    double median()
    {
        std::vector<std::int64_t> upper(halfKeys);
        if (!forEachCell(cells_, centre_, [&](float v) { ++upper[orderedKey(v) >> 16]; }))
            return 0;
        for (const std::int64_t n : upper)
            count_ += n;
        if (count_ < 1)
            return 0;
        std::int64_t lowRank = (count_ - 1) / 2;
        std::int64_t highRank = count_ / 2;
        const std::uint32_t lowHalf = place(upper, lowRank);
        const std::uint32_t highHalf = place(upper, highRank);
        std::vector<std::int64_t> low(halfKeys);
        std::vector<std::int64_t> high(lowHalf == highHalf ? 0 : halfKeys);
        forEachCell(cells_, centre_, [&](float v) {
            const std::uint32_t key = orderedKey(v);
            if (key >> 16 == lowHalf)
                ++low[key & 0xFFFF];
            else if (key >> 16 == highHalf)
                ++high[key & 0xFFFF];
        });
        const float a = keyValue(lowHalf << 16 | place(low, lowRank));
        const float b =
            keyValue(highHalf << 16 | place(lowHalf == highHalf ? low : high, highRank));
        return a == b ? static_cast<double>(a)
                      : (static_cast<double>(a) + static_cast<double>(b)) / 2;
    }

private:
    static constexpr std::size_t halfKeys = 65536;

    /// Where the counts pass `rank`, which becomes the rank among the values counted there.
    static std::uint32_t place(const std::vector<std::int64_t>& counts, std::int64_t& rank)
    {
        std::uint32_t i = 0;
        while (i + 1 < halfKeys && rank >= counts[i])
            rank -= counts[i++];
        return i;
    }

    const AMatrixAccess& cells_;
    const double* centre_;
    std::int64_t count_ = 0;
};

int columnOf(const AMatrixAccess& cells, int row, float value)
{
    RowReader reader(cells);
    const float* found = reader.row(row);
    for (int c = 0; found && c < cells.columns(); ++c)
        if (found[c] == value)
            return c;
    return -1;
}

}  // namespace

MapRange mapRange(const AMatrixAccess& cells, SimdPath path)
{
    const RowKernels& kernels = rowKernels(path);
    RowReader reader(cells);
    float least[lanes];
    float best = -infinity;
    std::fill_n(least, lanes, infinity);
    MapRange range;
    for (int r = 0; r < cells.rows() && cells.columns() > 0; ++r) {
        const float* row = reader.row(r);
        if (!row)
            return {};
        float greatest[lanes];
        std::fill_n(greatest, lanes, -infinity);
        kernels.range(row, cells.columns(), least, greatest);
        const float most = *std::max_element(greatest, greatest + lanes);
        if (most > best) {
            best = most;
            range.peakRow = r;
        }
    }
    if (range.peakRow < 0)
        return {};
    range.peakColumn = columnOf(cells, range.peakRow, best);
    range.least = static_cast<double>(*std::min_element(least, least + lanes));
    range.greatest = static_cast<double>(best);
    return range;
}

MapNoise mapNoise(const AMatrixAccess& cells)
{
    MapNoise noise;
    RankSearch values(cells, nullptr);
    noise.median = values.median();
    noise.finiteCells = values.count();
    if (noise.finiteCells > 0)
        noise.sigma = deviationToSigma * RankSearch(cells, &noise.median).median();
    return noise;
}

}  // namespace pavane
