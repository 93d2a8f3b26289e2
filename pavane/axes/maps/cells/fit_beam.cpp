#include "pavane/axes/maps/cells/fit_beam.h"

#include "pavane/axes/maps/cells/map_statistics.h"

#include <algorithm>
#include <array>
#include <cmath>
#include <cstdint>
#include <numbers>
#include <unordered_set>
#include <vector>

namespace pavane
{

namespace
{

constexpr double lobeLevel = 0.35;
constexpr std::size_t leastCells = 6;
constexpr std::size_t mostCells = 1 << 20;
constexpr int mostSteps = 200;

/// A cell of the lobe, counted from the peak, of which it has this part.
struct LobeCell {
    double x, y, value;
};

/// The cells that hang together with the peak; empty when they touch the edge or are too many.
std::vector<LobeCell> lobeOf(const AMatrixAccess& cells, const MapRange& range)
{
    const double least = lobeLevel * range.greatest;
    const std::int64_t columns = cells.columns();
    std::vector<LobeCell> lobe;
    std::vector<std::int64_t> waiting{range.peakRow * columns + range.peakColumn};
    std::unordered_set<std::int64_t> seen{waiting.front()};
    while (!waiting.empty()) {
        const std::int64_t at = waiting.back();
        waiting.pop_back();
        const int row = static_cast<int>(at / columns), column = static_cast<int>(at % columns);
        if (row < 1 || column < 1 || row > cells.rows() - 2 || column > columns - 2 ||
            lobe.size() >= mostCells)
            return {};
        lobe.push_back({static_cast<double>(column - range.peakColumn),
                        static_cast<double>(row - range.peakRow),
                        static_cast<double>(cells.cell(row, column)) / range.greatest});
        for (int r = row - 1; r <= row + 1; ++r)
            for (int c = column - 1; c <= column + 1; ++c) {
                const auto value = static_cast<double>(cells.cell(r, c));
                const std::int64_t next = r * columns + c;
                if (value > least && std::isfinite(value) && seen.insert(next).second)
                    waiting.push_back(next);
            }
    }
    return lobe;
}

/// height * exp(-(xx dx^2 + xy dx dy + yy dy^2)), dx and dy from (x, y).
struct Gaussian {
    enum { height, x, y, xx, xy, yy, size };
    std::array<double, size> is{};

    double at(const LobeCell& cell) const
    {
        const double dx = cell.x - is[x], dy = cell.y - is[y];
        return is[height] * std::exp(-(is[xx] * dx * dx + is[xy] * dx * dy + is[yy] * dy * dy));
    }
    bool isPeak() const
    {
        return is[height] > 0 && is[xx] > 0 && is[yy] > 0 && 4 * is[xx] * is[yy] > is[xy] * is[xy];
    }
};

using Equations = std::array<std::array<double, Gaussian::size + 1>, Gaussian::size>;

/// Solves symmetric equations by elimination with the greatest pivot; false for singular ones.
bool solve(Equations m, std::array<double, Gaussian::size>& solution)
{
    constexpr std::size_t size = Gaussian::size;
    for (std::size_t k = 0; k < size; ++k) {
        std::size_t best = k;
        for (std::size_t i = k + 1; i < size; ++i)
            if (std::fabs(m[i][k]) > std::fabs(m[best][k]))
                best = i;
        if (!(std::fabs(m[best][k]) > 1e-300))
            return false;
        std::swap(m[k], m[best]);
        for (std::size_t i = 0; i < size; ++i) {
            const double factor = i == k ? 0 : m[i][k] / m[k][k];
            for (std::size_t j = k; factor != 0 && j <= size; ++j)
                m[i][j] -= factor * m[k][j];
        }
    }
    for (std::size_t k = 0; k < size; ++k)
        solution[k] = m[k][size] / m[k][k];
    return true;
}

void add(Equations& m, const std::array<double, Gaussian::size>& terms, double value)
{
    for (std::size_t i = 0; i < terms.size(); ++i) {
        for (std::size_t k = 0; k < terms.size(); ++k)
            m[i][k] += terms[i] * terms[k];
        m[i][terms.size()] += terms[i] * value;
    }
}

/// Where to start: the parabola through the logarithms, strong cells counting more.
bool firstGuess(const std::vector<LobeCell>& lobe, Gaussian& guess)
{
    Equations m{};
    for (const LobeCell& c : lobe) {
        const double w = c.value;
        add(m, {w, w * c.x, w * c.y, w * c.x * c.x, w * c.x * c.y, w * c.y * c.y},
            w * std::log(c.value));
    }
    std::array<double, Gaussian::size> p;
    if (!solve(m, p))
        return false;
    const double a = -p[3], b = -p[4], c = -p[5], area = 4 * a * c - b * b;
    const double x = (2 * c * p[1] - b * p[2]) / area, y = (2 * a * p[2] - b * p[1]) / area;
    guess.is = {std::exp(p[0] + (p[1] * x + p[2] * y) / 2), x, y, a, b, c};
    return area > 0 && guess.isPeak() && std::isfinite(guess.is[Gaussian::height]);
}

/// Equations of the next step, and the sum of squares.
double equationsOf(const std::vector<LobeCell>& lobe, const Gaussian& gaussian, Equations& m)
{
    const auto& g = gaussian.is;
    m = {};
    double squares = 0;
    for (const LobeCell& c : lobe) {
        const double dx = c.x - g[Gaussian::x], dy = c.y - g[Gaussian::y];
        const double value = gaussian.at(c), missing = c.value - value;
        add(m,
            {value / g[Gaussian::height], value * (2 * g[Gaussian::xx] * dx + g[Gaussian::xy] * dy),
             value * (2 * g[Gaussian::yy] * dy + g[Gaussian::xy] * dx), -value * dx * dx,
             -value * dx * dy, -value * dy * dy},
            missing);
        squares += missing * missing;
    }
    return squares;
}

/// Levenberg and Marquardt: steps of least squares, shorter ones where these do not lead down.
void refine(const std::vector<LobeCell>& lobe, Gaussian& gaussian)
{
    Equations m, tried;
    double squares = equationsOf(lobe, gaussian, m);
    double damping = 1e-3;
    for (int i = 0; i < mostSteps && damping < 1e12; ++i) {
        Equations damped = m;
        for (std::size_t k = 0; k < damped.size(); ++k)
            damped[k][k] *= 1 + damping;
        std::array<double, Gaussian::size> step;
        Gaussian next = gaussian;
        double change = 0;
        const bool isSolved = solve(damped, step);
        for (std::size_t k = 0; isSolved && k < step.size(); ++k) {
            next.is[k] += step[k];
            change = std::max(change, std::fabs(step[k]) * std::sqrt(m[k][k]));
        }
        const double after = isSolved && next.isPeak() ? equationsOf(lobe, next, tried) : INFINITY;
        if (after <= squares) {
            gaussian = next;
            m = tried;
            squares = after;
            damping = std::max(damping / 10, 1e-12);
            if (change < 1e-13)
                return;
        } else {
            damping *= 10;
        }
    }
}

}  // namespace

int fitBeam(const AMatrixAccess& cells, const TMinMax& centres, MapBeam& beam)
{
    const MapRange range = mapRange(cells);
    if (range.isEmpty() || !(range.greatest > 0))
        return 0;
    const double stepX = (centres.xMax - centres.xMin) / (cells.columns() - 1);
    const double stepY = (centres.yMax - centres.yMin) / (cells.rows() - 1);
    if (!std::isfinite(stepX) || !std::isfinite(stepY) || stepX == 0 || stepY == 0 ||
        centres.xMin >= unsetMinimum || centres.yMin >= unsetMinimum)
        return 0;
    const std::vector<LobeCell> lobe = lobeOf(cells, range);
    Gaussian gaussian;
    if (lobe.size() < leastCells || !firstGuess(lobe, gaussian))
        return 0;
    refine(lobe, gaussian);
    // how fast it falls to the east and to the north
    const double east = gaussian.is[Gaussian::xx] / (stepX * stepX);
    const double north = gaussian.is[Gaussian::yy] / (stepY * stepY);
    const double both = gaussian.is[Gaussian::xy] / (stepX * stepY);
    const double mean = (east + north) / 2, spread = std::hypot((east - north) / 2, both / 2);
    const auto width = [](double falls) { return 2 * std::sqrt(std::numbers::ln2 / falls); };
    const MapBeam fitted{width(mean - spread), width(mean + spread),
                         // the major axis lies where it falls least
                         0.5 * std::atan2(-both, east - north) * 180 / std::numbers::pi};
    if (!(mean > spread) || !std::isfinite(fitted.major) || !(fitted.minor > 0))
        return 0;
    beam = fitted;
    if (spread < 1e-9 * mean)
        beam.angle = 0;
    else if (beam.angle >= 90)
        beam.angle -= 180;
    return 1;
}

}  // namespace pavane
