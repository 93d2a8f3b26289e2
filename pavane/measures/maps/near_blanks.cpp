#include "pavane/measures/maps/near_blanks.h"

#include <algorithm>
#include <cmath>
#include <new>
#include <vector>

namespace pavane
{

namespace
{

/// For each cell of a column the rows to the nearest blank one, `most` at the greatest; the edges
/// count as blank.
void fillDistances(const AMatrix<float>& cells, int most, AMatrix<int>& distances)
{
    const int rows = cells.rows(), columns = cells.columns();
    for (int r = 0; r < rows; ++r)
        for (int c = 0; c < columns; ++c)
            distances(r, c) = !std::isfinite(cells(r, c)) ? 0
                              : r                         ? std::min(distances(r - 1, c) + 1, most)
                                                          : std::min(1, most);
    for (int r = rows - 1; r >= 0; --r)
        for (int c = 0; c < columns; ++c)
            distances(r, c) = std::min(distances(r, c), r + 1 < rows ? distances(r + 1, c) + 1 : 1);
}

}  // namespace

std::int64_t cellsNearBlanks(const AMatrix<float>& cells, double column, double row, double reach)
{
    const int rows = cells.rows(), columns = cells.columns();
    const auto cellsOf = [](double length, int most) {
        return length < most ? static_cast<int>(std::floor(length)) : most;
    };
    // more than any distance inside
    const int most = cellsOf(reach / row, rows) + 1;
    AMatrix<int> distances(rows, columns);
    if (!distances.rows())
        return -1;
    std::int64_t near = 0;
    try {
        fillDistances(cells, most, distances);
        // how many columns away a blank cell so many rows off may be
        std::vector<int> across(static_cast<std::size_t>(most) + 1, -1);
        for (int d = 0; d < most; ++d)
            across[static_cast<std::size_t>(d)] = cellsOf(
                std::sqrt(std::max(reach * reach - d * row * d * row, 0.0)) / column, columns);
        std::vector<int> change(static_cast<std::size_t>(columns) + 1);
        const int edge = across[0];
        for (int r = 0; r < rows; ++r) {
            std::fill(change.begin(), change.end(), 0);
            const auto mark = [&](int first, int last) {
                ++change[static_cast<std::size_t>(std::clamp(first, 0, columns))];
                --change[static_cast<std::size_t>(std::clamp(last + 1, 0, columns))];
            };
            mark(0, edge - 1);
            mark(columns - edge, columns - 1);
            for (int c = 0; c < columns; ++c) {
                const int reached = across[static_cast<std::size_t>(distances(r, c))];
                if (reached >= 0)
                    mark(c - reached, c + reached);
            }
            int covered = 0;
            for (int c = 0; c < columns; ++c) {
                covered += change[static_cast<std::size_t>(c)];
                near += covered > 0 && std::isfinite(cells(r, c));
            }
        }
    } catch (const std::bad_alloc&) {
        return -1;
    }
    return near;
}

}  // namespace pavane
