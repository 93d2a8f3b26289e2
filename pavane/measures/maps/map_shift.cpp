#include "pavane/measures/maps/map_shift.h"

#include "pavane/measures/maps/bicubic.h"
#include "pavane/measures/maps/cell_gaussian.h"
#include "tessel/map_steps.h"

#include <algorithm>
#include <array>
#include <cmath>
#include <new>
#include <numbers>
#include <utility>
#include <vector>

namespace pavane
{

namespace
{

constexpr int leastCells = 16;
/// The search for whole cells looks at no more cells than this.
constexpr std::size_t mostLooked = 40000;
constexpr int mostSteps = 60;
constexpr double converged = 1e-4;  // cells

struct Cell {
    int row, column;
};

/// Column, row, scale, constant.
constexpr std::size_t unknowns = 4;
using Values = std::array<double, unknowns>;
using Square = std::array<Values, unknowns>;

/// The inverse by Gauss and Jordan with pivots; 0 for a matrix without.
int invert(Square m, Square& inverse)
{
    for (std::size_t i = 0; i < unknowns; ++i)
        for (std::size_t j = 0; j < unknowns; ++j)
            inverse[i][j] = i == j;
    for (std::size_t i = 0; i < unknowns; ++i) {
        std::size_t pivot = i;
        for (std::size_t k = i + 1; k < unknowns; ++k)
            if (std::fabs(m[k][i]) > std::fabs(m[pivot][i]))
                pivot = k;
        if (!(std::fabs(m[pivot][i]) > 0))
            return 0;
        std::swap(m[i], m[pivot]);
        std::swap(inverse[i], inverse[pivot]);
        const double whole = m[i][i];
        for (std::size_t j = 0; j < unknowns; ++j) {
            m[i][j] /= whole;
            inverse[i][j] /= whole;
        }
        for (std::size_t k = 0; k < unknowns; ++k) {
            const double part = k == i ? 0 : m[k][i];
            for (std::size_t j = 0; j < unknowns; ++j) {
                m[k][j] -= part * m[i][j];
                inverse[k][j] -= part * inverse[i][j];
            }
        }
    }
    return 1;
}

class ShiftFinder
{
public:
    ShiftFinder(const AMatrix<float>& first, const AMatrix<float>& second, const ABitMatrix& mask,
                int reach)
        : first_(first), second_(second), reach_(std::max(reach, 1))
    {
        for (int r = 0; r < first.rows(); ++r)
            for (int c = 0; c < first.columns(); ++c)
                if (mask.get(r, c) && std::isfinite(first(r, c)))
                    cells_.push_back({r, c});
    }
    const std::vector<Cell>& cells() const { return cells_; }
    int search(const ProgressFunction& progress);
    int fit(const ProgressFunction& progress);
    int covariance(const CellGaussian* noise, double noiseCells, double (&c)[2][2]) const;

    Values at{0, 0, 1, 0};
    double best = -2;
    std::int64_t compared = 0;

private:
    double correlation(int columns, int rows, std::size_t stride) const;
    int rowOf(const Cell& cell, Values& slopes, double& value) const;
    int normal(Square& squares, Values& sides, double& left) const;

    const AMatrix<float>& first_;
    const AMatrix<float>& second_;
    int reach_;
    std::vector<Cell> cells_;
    double scatter_ = 0;  ///< of what is left, squared
};

/// Of the cells that both maps have there; -2 for less than half of them.
double ShiftFinder::correlation(int columns, int rows, std::size_t stride) const
{
    double n = 0, a = 0, b = 0, aa = 0, bb = 0, ab = 0;
    // differences from some value keep digits of maps far from 0
    const double offset = static_cast<double>(first_(cells_[0].row, cells_[0].column));
    for (std::size_t i = 0; i < cells_.size(); i += stride) {
        const int r = cells_[i].row + rows, c = cells_[i].column + columns;
        if (r < 0 || c < 0 || r >= second_.rows() || c >= second_.columns() ||
            !std::isfinite(second_(r, c)))
            continue;
        const double x = static_cast<double>(first_(cells_[i].row, cells_[i].column)) - offset;
        const double y = static_cast<double>(second_(r, c)) - offset;
        n += 1;
        a += x;
        b += y;
        aa += x * x;
        bb += y * y;
        ab += x * y;
    }
    const double spread = (aa - a * a / n) * (bb - b * b / n);
    if (2 * n * static_cast<double>(stride) < static_cast<double>(cells_.size()) || !(spread > 0))
        return -2;
    return (ab - a * b / n) / std::sqrt(spread);
}

/// The whole cells of the best correlation.
int ShiftFinder::search(const ProgressFunction& progress)
{
    const std::size_t stride = std::max<std::size_t>(cells_.size() / mostLooked, 1);
    int column = 0, row = 0;
    int step = 1;
    while (reach_ / step > 8)
        step *= 2;
    const auto look = [&](int c, int r, std::size_t by) {
        if (std::abs(c) > reach_ || std::abs(r) > reach_)
            return;
        if (const double now = correlation(c, r, by); now > best) {
            best = now;
            column = c;
            row = r;
        }
    };
    for (int r = -reach_ / step; r <= reach_ / step; ++r) {
        if (progress && !progress(0.5 * (r * step + reach_) / (2 * reach_ + 1)))
            return 0;
        for (int c = -reach_ / step; c <= reach_ / step; ++c)
            look(c * step, r * step, stride);
    }
    for (best = -2; step > 0; step /= 2) {
        best = correlation(column, row, 1);
        for (int before = column - 1, above = row; before != column || above != row;) {
            before = column;
            above = row;
            for (int r = -1; r <= 1; ++r)
                for (int c = -1; c <= 1; ++c)
                    look(before + c * step, above + r * step, 1);
        }
    }
    at[0] = column;
    at[1] = row;
    return 1;
}

/// What first = constant + scale second says of a cell; 0 where the second map has none.
int ShiftFinder::rowOf(const Cell& cell, Values& slopes, double& value) const
{
    constexpr double h = 0.25;
    const double x = cell.column + at[0], y = cell.row + at[1];
    const auto second = [this](double column, double row) {
        return static_cast<double>(bicubicAt(second_, column, row));
    };
    const double there = second(x, y);
    slopes = {at[2] * (second(x + h, y) - second(x - h, y)) / (2 * h),
              at[2] * (second(x, y + h) - second(x, y - h)) / (2 * h), there, 1};
    value = static_cast<double>(first_(cell.row, cell.column)) - at[2] * there - at[3];
    return std::isfinite(value + slopes[0] + slopes[1]);
}

int ShiftFinder::normal(Square& squares, Values& sides, double& left) const
{
    squares = {};
    sides = {};
    left = 0;
    int used = 0;
    Values s;
    double value = 0;
    for (const Cell& cell : cells_) {
        if (!rowOf(cell, s, value))
            continue;
        ++used;
        left += value * value;
        for (std::size_t i = 0; i < unknowns; ++i) {
            sides[i] += s[i] * value;
            for (std::size_t j = 0; j < unknowns; ++j)
                squares[i][j] += s[i] * s[j];
        }
    }
    return used;
}

int ShiftFinder::fit(const ProgressFunction& progress)
{
    const Values start = at;
    for (int step = 0; step < mostSteps; ++step) {
        if (progress && !progress(0.5 + 0.4 * step / mostSteps))
            return 0;
        Square squares, inverse;
        Values sides;
        double left = 0;
        const int used = normal(squares, sides, left);
        if (used < leastCells || !invert(squares, inverse))
            return 0;
        double way = 0;
        for (std::size_t i = 0; i < unknowns; ++i) {
            double change = 0;
            for (std::size_t j = 0; j < unknowns; ++j)
                change += inverse[i][j] * sides[j];
            if (i < 2) {
                change = std::clamp(change, -1.0, 1.0);
                way = std::max(way, std::fabs(change));
            }
            at[i] += change;
        }
        if (!(std::fabs(at[0] - start[0]) <= 3 && std::fabs(at[1] - start[1]) <= 3))
            return 0;
        compared = used;
        scatter_ = left / (used - static_cast<double>(unknowns));
        if (way < converged && step > 0)
            return 1;
    }
    return 0;
}

/// The covariance of column and row, in cells. 0 without memory.
int ShiftFinder::covariance(const CellGaussian* noise, double noiseCells, double (&c)[2][2]) const
{
    Square squares, inverse, middle{};
    Values sides;
    double left = 0;
    (void)normal(squares, sides, left);
    if (!invert(squares, inverse))
        return 0;
    if (!noise)
        middle = squares;
    else {
        int top = first_.rows(), bottom = 0, leftmost = first_.columns(), right = 0;
        for (const Cell& cell : cells_) {
            top = std::min(top, cell.row);
            bottom = std::max(bottom, cell.row);
            leftmost = std::min(leftmost, cell.column);
            right = std::max(right, cell.column);
        }
        std::array<AMatrix<float>, unknowns> slopes;
        for (AMatrix<float>& map : slopes) {
            map = AMatrix<float>(bottom - top + 1, right - leftmost + 1);
            if (!map.rows())
                return 0;
            map.fill(0);
        }
        Values s;
        double value = 0;
        for (const Cell& cell : cells_)
            if (rowOf(cell, s, value))
                for (std::size_t i = 0; i < unknowns; ++i)
                    slopes[i](cell.row - top, cell.column - leftmost) = static_cast<float>(s[i]);
        std::string error;
        for (std::size_t i = 0; i < unknowns; ++i) {
            AMatrix<float> spread = slopes[i];
            if (!spread.rows() || !convolve(spread, *noise, error, {}))
                return 0;
            const auto count = std::int64_t{spread.rows()} * spread.columns();
            for (std::size_t j = 0; j < unknowns; ++j)
                for (std::int64_t k = 0; k < count; ++k)
                    middle[i][j] += noiseCells * static_cast<double>(spread.data()[k]) *
                                    static_cast<double>(slopes[j].data()[k]);
        }
    }
    for (std::size_t i = 0; i < 2; ++i)
        for (std::size_t j = 0; j < 2; ++j) {
            c[i][j] = 0;
            for (std::size_t k = 0; k < unknowns; ++k)
                for (std::size_t m = 0; m < unknowns; ++m)
                    c[i][j] += inverse[i][k] * middle[k][m] * inverse[m][j] * scatter_;
        }
    return 1;
}

int find(ShiftFinder& finder, const MapHeader& header, MapShift& found, std::string& error,
         const ProgressFunction& progress)
{
    if (finder.cells().size() < leastCells) {
        error = "has fewer than " + std::to_string(leastCells) + " cells to compare";
        return 0;
    }
    int goesOn = 1;
    const auto tell = [&](double part) { return goesOn = !progress || progress(part); };
    if (!finder.search(tell) || finder.best < -1) {
        error = goesOn ? "has less than half of the cells that are compared, or they are all "
                         "equal: areas choose cells that both maps have"
                       : "the work was given up";
        return 0;
    }
    if (!finder.fit(tell)) {
        error = goesOn ? "cannot be laid on the other map: nothing in the cells that are compared "
                         "fixes the shift"
                       : "the work was given up";
        return 0;
    }
    const MapSteps steps = stepsOf(header);
    const SkyBeam beam{header.bmaj, header.bmin, header.bpa};
    // noise of beams is correlated over root 2 of their width
    CellGaussian noise = cellGaussianOf(beam, steps);
    noise = {2 * noise.xx, 2 * noise.xy, 2 * noise.yy};
    const double noiseCells =
        2 * std::numbers::pi / (4 * std::numbers::ln2) * beam.major * beam.minor / steps.cellArea;
    double c[2][2] = {};
    if (!finder.covariance(header.hasBeam ? &noise : nullptr, noiseCells, c)) {
        error = "there is no memory for its cells";
        return 0;
    }
    const double(&m)[2][2] = steps.sky;
    const auto errorOf = [&](int k) {
        return std::sqrt(m[k][0] * m[k][0] * c[0][0] + 2 * m[k][0] * m[k][1] * c[0][1] +
                         m[k][1] * m[k][1] * c[1][1]);
    };
    // what lies so far in the second map has to go back
    found.shift = {-(m[0][0] * finder.at[0] + m[0][1] * finder.at[1]),
                   -(m[1][0] * finder.at[0] + m[1][1] * finder.at[1])};
    found.error = {errorOf(0), errorOf(1)};
    found.correlation = finder.best;
    found.scale = finder.at[2];
    found.cells = finder.compared;
    return 1;
}

}  // namespace

int findMapShift(const AMatrix<float>& first, const AMatrix<float>& second, const ABitMatrix& mask,
                 const MapHeader& header, int reach, MapShift& found, std::string& error,
                 const ProgressFunction& progress)
{
    found = MapShift();
    if (!header.hasCelestialAxes) {
        error = "does not lie on the sky";
        return 0;
    }
    if (second.rows() != first.rows() || second.columns() != first.columns() ||
        mask.rows() != first.rows() || mask.columns() != first.columns()) {
        error = "has other cells than the map that it is compared with";
        return 0;
    }
    try {
        ShiftFinder finder(first, second, mask, reach);
        return find(finder, header, found, error, progress);
    } catch (const std::bad_alloc&) {
        error = "there is no memory for its cells";
        return 0;
    }
}

}  // namespace pavane
