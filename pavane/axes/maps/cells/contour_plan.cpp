#include "pavane/axes/maps/cells/contour_plan.h"

#include "pavane/axes/maps/cells/level_kernels.h"

#include <algorithm>
#include <limits>
#include <numeric>

namespace pavane
{

namespace
{

std::int64_t tracingBytes(std::int64_t crossings)
{
    return (crossings / crossingBlock + 1) * crossingBlock * crossingBytes;
}

/// Counts, as a sum to be run over the levels, the crossings between cells of two rows of levels.
void addCrossings(const unsigned char* a, const unsigned char* b, int count,
                  std::vector<std::int64_t>& steps)
{
    for (int i = 0; i < count; ++i) {
        if (a[i] == b[i] || a[i] == blankLevel || b[i] == blankLevel)
            continue;
        ++steps[std::min(a[i], b[i])];
        --steps[std::max(a[i], b[i])];
    }
}

}  // namespace

int countCrossings(const AMatrixAccess& cells, const std::vector<double>& levels, SimdPath path,
                   std::vector<std::int64_t>& crossings)
{
    std::vector<float> thresholds;
    for (const double level : levels)
        thresholds.push_back(contourThreshold(level));
    std::vector<std::int64_t> steps(levels.size() + 1);
    const int columns = cells.columns();
    std::vector<unsigned char> rows[2];
    for (auto& row : rows)
        row.resize(static_cast<std::size_t>(columns));
    RowReader reader(cells);
    for (int r = 0; r < cells.rows(); ++r) {
        const float* const values = reader.row(r);
        if (!values)
            return 0;
        unsigned char* const here = rows[r % 2].data();
        countLevels(values, columns, thresholds.data(), static_cast<int>(thresholds.size()), here,
                    path);
        addCrossings(here, here + 1, columns - 1, steps);
        if (r > 0)
            addCrossings(here, rows[(r + 1) % 2].data(), columns, steps);
    }
    crossings.resize(levels.size());
    std::partial_sum(steps.begin(), steps.end() - 1, crossings.begin());
    return 1;
}

ContourPlan planContours(const std::vector<std::int64_t>& crossings, std::int64_t mostOfLevel,
                         std::int64_t bytes)
{
    std::vector<std::size_t> order(crossings.size());
    std::iota(order.begin(), order.end(), 0);
    std::stable_sort(order.begin(), order.end(),
                     [&](std::size_t a, std::size_t b) { return crossings[a] < crossings[b]; });
    ContourPlan plan;
    std::vector<char> chosen(crossings.size());
    for (const std::size_t i : order) {
        const std::int64_t points = plan.mostPoints + crossings[i];
        if (crossings[i] > mostOfLevel || points > std::numeric_limits<int>::max() ||
            points * pointBytes + tracingBytes(crossings[i]) > bytes)
            break;
        plan.mostPoints = points;
        chosen[i] = 1;
    }
    const std::int64_t room = bytes - plan.mostPoints * pointBytes;
    std::int64_t band = room;
    for (std::size_t i = 0; i < chosen.size(); ++i) {
        if (!chosen[i])
            continue;
        band += tracingBytes(crossings[i]);
        if (band > room) {
            plan.bands.emplace_back();
            band = tracingBytes(crossings[i]);
        }
        plan.bands.back().push_back(static_cast<int>(i));
    }
    return plan;
}

}  // namespace pavane
