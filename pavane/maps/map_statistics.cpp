#include "pavane/maps/map_statistics.h"

#include "pavane/maps/float_keys.h"
#include "pavane/maps/row_kernels.h"
#include "pavane/maps/vector_types.h"

#include <algorithm>
#include <bit>
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

/// Cells whose keys are made at a time.
constexpr int blockCells = 1024;
/// The key of a cell that is not finite; no number has it.
constexpr std::uint32_t noKey = 0xFFFFFFFF;

/// Keys of `count` cells, or of their distances from `centre`.
PAVANE_INLINE_BODY void keysBody(const float* cells, int count, const double* centre,
                                 std::uint32_t* keys)
{
    if (centre) {
        const double from = *centre;
        for (int i = 0; i < count; ++i) {
            const auto value = static_cast<float>(std::fabs(static_cast<double>(cells[i]) - from));
            const std::uint32_t key = std::bit_cast<std::uint32_t>(value) | 0x80000000u;
            keys[i] = std::bit_cast<std::uint32_t>(cells[i]) << 1 < 0xFF000000u ? key : noKey;
        }
        return;
    }
    for (int i = 0; i < count; ++i) {
        const std::uint32_t bits = std::bit_cast<std::uint32_t>(cells[i]);
        const std::uint32_t negative = 0u - (bits >> 31);
        keys[i] = bits << 1 < 0xFF000000u ? bits ^ (negative | 0x80000000u) : noKey;
    }
}

/// Whether any key has this upper half.
PAVANE_INLINE_BODY int holdsBody(const std::uint32_t* keys, int count, std::uint32_t upper)
{
    std::uint32_t found = 0;
    for (int i = 0; i < count; ++i)
        found |= keys[i] >> 16 == upper ? 1u : 0u;
    return static_cast<int>(found);
}

/// The bits in which the keys differ.
PAVANE_INLINE_BODY std::uint32_t differingBody(const std::uint32_t* keys, int count)
{
    std::uint32_t bits = 0;
    for (int i = 0; i < count; ++i)
        bits |= keys[i] ^ keys[0];
    return bits;
}

struct KeyKernels {
    void (*keys)(const float* cells, int count, const double* centre, std::uint32_t* keys);
    int (*holds)(const std::uint32_t* keys, int count, std::uint32_t upper);
    std::uint32_t (*differing)(const std::uint32_t* keys, int count);
};

void keysPlain(const float* cells, int count, const double* centre, std::uint32_t* keys)
{
    keysBody(cells, count, centre, keys);
}

int holdsPlain(const std::uint32_t* keys, int count, std::uint32_t upper)
{
    return holdsBody(keys, count, upper);
}

std::uint32_t differingPlain(const std::uint32_t* keys, int count)
{
    return differingBody(keys, count);
}

#if defined(__x86_64__)
PAVANE_TARGET_AVX2 void keys256(const float* cells, int count, const double* centre,
                                std::uint32_t* keys)
{
    keysBody(cells, count, centre, keys);
}

PAVANE_TARGET_AVX2 int holds256(const std::uint32_t* keys, int count, std::uint32_t upper)
{
    return holdsBody(keys, count, upper);
}

PAVANE_TARGET_AVX2 std::uint32_t differing256(const std::uint32_t* keys, int count)
{
    return differingBody(keys, count);
}

PAVANE_TARGET_AVX512 void keys512(const float* cells, int count, const double* centre,
                                  std::uint32_t* keys)
{
    keysBody(cells, count, centre, keys);
}

PAVANE_TARGET_AVX512 int holds512(const std::uint32_t* keys, int count, std::uint32_t upper)
{
    return holdsBody(keys, count, upper);
}

PAVANE_TARGET_AVX512 std::uint32_t differing512(const std::uint32_t* keys, int count)
{
    return differingBody(keys, count);
}
#endif

KeyKernels keyKernels(SimdPath path)
{
#if defined(__x86_64__)
    if (path == SimdPath::avx512)
        return {keys512, holds512, differing512};
    if (path == SimdPath::avx2)
        return {keys256, holds256, differing256};
#endif
    static_cast<void>(path);
    return {keysPlain, holdsPlain, differingPlain};
}

/// Finds one or two neighbouring ranks of the values in two passes: first the upper half of the
/// key of each, then the lower half of those in question, of which most maps have few.
class RankSearch
{
public:
    RankSearch(const AMatrixAccess& cells, const double* centre, SimdPath path)
        : cells_(cells), centre_(centre), kernels_(keyKernels(path))
    {
    }

    std::int64_t count() const { return count_; }
    /// The mean of the values of rank (count - 1) / 2 and count / 2.
    double median()
    {
        // two tables by turns: neighbours are often alike, and would wait for each other
        std::vector<std::int64_t> upper(halfKeys);
        std::vector<std::int64_t> others(halfKeys);
        if (!forEachBlock([&](const std::uint32_t* keys, int n) {
                if (kernels_.differing(keys, n) >> 16 == 0) {
                    upper[keys[0] >> 16] += n;
                    return;
                }
                int i = 0;
                for (; i + 2 <= n; i += 2) {
                    ++upper[keys[i] >> 16];
                    ++others[keys[i + 1] >> 16];
                }
                if (i < n)
                    ++upper[keys[i] >> 16];
            }))
            return 0;
        for (std::size_t i = 0; i < halfKeys; ++i)
            upper[i] += others[i];
        upper[noKey >> 16] = 0;
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
        forEachBlock([&](const std::uint32_t* keys, int n) {
            if (!kernels_.holds(keys, n, lowHalf) && !kernels_.holds(keys, n, highHalf))
                return;
            if (kernels_.differing(keys, n) == 0) {
                (keys[0] >> 16 == lowHalf ? low : high)[keys[0] & 0xFFFF] += n;
                return;
            }
            for (int i = 0; i < n; ++i) {
                if (keys[i] >> 16 == lowHalf)
                    ++low[keys[i] & 0xFFFF];
                else if (keys[i] >> 16 == highHalf)
                    ++high[keys[i] & 0xFFFF];
            }
        });
        const float a = keyValue(lowHalf << 16 | place(low, lowRank));
        const float b =
            keyValue(highHalf << 16 | place(lowHalf == highHalf ? low : high, highRank));
        return a == b ? static_cast<double>(a)
                      : (static_cast<double>(a) + static_cast<double>(b)) / 2;
    }

private:
    static constexpr std::size_t halfKeys = 65536;

    /// Calls `take(keys, n)` for all cells, a block at a time.
    template <typename Take>
    int forEachBlock(Take take)
    {
        RowReader reader(cells_);
        std::uint32_t keys[blockCells];
        for (int r = 0; r < cells_.rows(); ++r) {
            const float* row = reader.row(r);
            if (!row)
                return 0;
            for (int c = 0; c < cells_.columns(); c += blockCells) {
                const int n = std::min(blockCells, cells_.columns() - c);
                kernels_.keys(row + c, n, centre_, keys);
                take(keys, n);
            }
        }
        return 1;
    }

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
    KeyKernels kernels_;
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

MapNoise mapNoise(const AMatrixAccess& cells, SimdPath path)
{
    MapNoise noise;
    RankSearch values(cells, nullptr, path);
    noise.median = values.median();
    noise.finiteCells = values.count();
    if (noise.finiteCells > 0)
        noise.sigma = deviationToSigma * RankSearch(cells, &noise.median, path).median();
    return noise;
}

}  // namespace pavane
