#include "pavane/axes/maps/cells/beam_shape.h"

#include "pavane/axes/maps/cells/fit_beam.h"

#include <algorithm>
#include <cmath>
#include <cstddef>
#include <limits>
#include <numbers>

namespace pavane
{

namespace
{

constexpr double notNumber = std::numeric_limits<double>::quiet_NaN();
/// Points of a cut, at most.
constexpr double mostPoints = 20000;

/// Where the cells of a map lie.
struct Places {
    double x, y;  ///< of the first cell
    double stepX, stepY;

    Places(const AMatrixAccess& cells, const TMinMax& centres)
        : x(centres.xMin), y(centres.yMin),
          stepX((centres.xMax - centres.xMin) / std::max(1, cells.columns() - 1)),
          stepY((centres.yMax - centres.yMin) / std::max(1, cells.rows() - 1))
    {
    }
    int areApart() const
    {
        return std::isfinite(stepX) && std::isfinite(stepY) && stepX != 0 && stepY != 0;
    }
    BeamPoint of(double value, int row, int column) const
    {
        return {value, x + column * stepX, y + row * stepY};
    }
};

/// Marks the cells of the main lobe, by going down from the peak.
void markLobe(const AMatrix<float>& map, int row, int column, AMatrix<unsigned char>& lobe)
{
    struct Cell {
        int row, column;
    };
    std::vector<Cell> edge{{row, column}};
    lobe(row, column) = 1;
    while (!edge.empty()) {
        const Cell from = edge.back();
        edge.pop_back();
        const float value = map(from.row, from.column);
        for (int r = std::max(0, from.row - 1); r <= std::min(map.rows() - 1, from.row + 1); ++r)
            for (int c = std::max(0, from.column - 1);
                 c <= std::min(map.columns() - 1, from.column + 1); ++c) {
                const float next = map(r, c);
                if (lobe(r, c) || !(next > 0) || !(next <= value))
                    continue;
                lobe(r, c) = 1;
                edge.push_back({r, c});
            }
    }
}

int isOnMap(const AMatrixAccess& cells, double row, double column)
{
    constexpr double rounding = 1e-6;
    return row >= -rounding && row <= cells.rows() - 1 + rounding && column >= -rounding &&
           column <= cells.columns() - 1 + rounding;
}

/// The value between four cells; not a number beside the map.
double valueAt(const AMatrixAccess& cells, double row, double column)
{
    if (!isOnMap(cells, row, column))
        return notNumber;
    const double inRow = std::clamp(row, 0.0, cells.rows() - 1.0);
    const double inColumn = std::clamp(column, 0.0, cells.columns() - 1.0);
    const int r = std::min(static_cast<int>(inRow), std::max(0, cells.rows() - 2));
    const int c = std::min(static_cast<int>(inColumn), std::max(0, cells.columns() - 2));
    const double down = inRow - r, across = inColumn - c;
    double sum = 0;
    // a neighbour without weight may be blank
    for (int i = 0; i < 2; ++i)
        for (int k = 0; k < 2; ++k) {
            const double weight = (i ? down : 1 - down) * (k ? across : 1 - across);
            if (weight != 0)
                sum += weight * static_cast<double>(cells.cell(r + i, c + k));
        }
    return sum;
}

/// Where the cut crosses half of the peak first, going from point `from` in steps of `step`.
double halfFrom(const BeamCut& cut, std::size_t from, int step, double half)
{
    const auto last = static_cast<std::ptrdiff_t>(cut.value.size()) - 1;
    for (auto i = static_cast<std::ptrdiff_t>(from); i + step >= 0 && i + step <= last; i += step) {
        const auto here = static_cast<std::size_t>(i), next = static_cast<std::size_t>(i + step);
        if (!std::isfinite(cut.value[next]))
            break;
        if (cut.value[next] > half)
            continue;
        const double part = (cut.value[here] - half) / (cut.value[here] - cut.value[next]);
        return cut.distance[here] + part * (cut.distance[next] - cut.distance[here]);
    }
    return notNumber;
}

}  // namespace

int beamShape(const AMatrixAccess& cells, const TMinMax& centres, BeamShape& shape)
{
    const Places places(cells, centres);
    AMatrix<float> map;
    AMatrix<unsigned char> lobe;
    if (cells.isEmpty() || !places.areApart() || !map.allocate(cells.rows(), cells.columns()) ||
        !lobe.allocate(cells.rows(), cells.columns()))
        return 0;
    lobe.fill(0);
    float greatest = 0;
    int row = -1, column = -1;
    for (int r = 0; r < map.rows(); ++r) {
        cells.copyRow(r, 0, map.columns(), map.row(r));
        for (int c = 0; c < map.columns(); ++c)
            if (std::isfinite(map(r, c)) && map(r, c) > greatest) {
                greatest = map(r, c);
                row = r;
                column = c;
            }
    }
    if (row < 0)
        return 0;
    BeamShape found;
    found.peak = places.of(static_cast<double>(greatest), row, column);
    markLobe(map, row, column, lobe);
    float farthest = 0;
    for (int r = 0; r < map.rows(); ++r)
        for (int c = 0; c < map.columns(); ++c) {
            const float value = map(r, c);
            if (lobe(r, c) || !std::isfinite(value) || !(std::fabs(value) > std::fabs(farthest)))
                continue;
            farthest = value;
            found.sideLobe = places.of(static_cast<double>(value), r, c);
            found.hasSideLobe = 1;
        }
    if (!fitBeam(cells, centres, found.fitted))
        found.fitted = {};
    shape = found;
    return 1;
}

BeamCut cutBeam(const AMatrixAccess& cells, const TMinMax& centres, const BeamPoint& peak,
                double angle)
{
    const Places places(cells, centres);
    BeamCut cut;
    cut.halfBefore = cut.halfAfter = notNumber;
    if (cells.isEmpty() || !places.areApart() || !std::isfinite(angle))
        return cut;
    const double turn = angle * std::numbers::pi / 180;
    const double x = std::sin(turn), y = std::cos(turn);
    const double reach = std::hypot(centres.xMax - centres.xMin, centres.yMax - centres.yMin);
    const double cell = std::min(std::fabs(places.stepX), std::fabs(places.stepY));
    const double step = std::max(cell / 2, 2 * reach / mostPoints);
    const int points = static_cast<int>(reach / step);
    std::size_t middle = 0;
    for (int i = -points; i <= points; ++i) {
        const double at = i * step;
        const double column = (peak.x + at * x - places.x) / places.stepX;
        const double row = (peak.y + at * y - places.y) / places.stepY;
        const double value = valueAt(cells, row, column);
        if (i == 0)
            middle = cut.value.size();
        else if (!isOnMap(cells, row, column))
            continue;
        cut.distance.push_back(at);
        cut.value.push_back(value);
    }
    cut.halfBefore = halfFrom(cut, middle, -1, peak.value / 2);
    cut.halfAfter = halfFrom(cut, middle, 1, peak.value / 2);
    return cut;
}

}  // namespace pavane
