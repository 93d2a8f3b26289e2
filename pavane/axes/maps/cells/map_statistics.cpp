#include "pavane/axes/maps/cells/map_statistics.h"

#include "pavane/axes/maps/cells/cell_median.h"
#include "pavane/axes/maps/cells/row_kernels.h"

#include <algorithm>
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
    const std::vector<float> sample = sampleCells(cells);
    const CellMedian median = cellMedian(cells, nullptr, sample, path);
    noise.median = median.value;
    noise.finiteCells = median.count;
    if (median.count > 0)
        noise.sigma = deviationToSigma * cellMedian(cells, &median.value, sample, path).value;
    return noise;
}

}  // namespace pavane
