#include "apps/simulate/clean.h"

#include <algorithm>
#include <cmath>
#include <map>
#include <numbers>
#include <utility>

namespace pavane
{

namespace
{

/// Sources are looked for in the middle of the map: this part of a side is left out at each end.
constexpr int borderPart = 16;

struct Cell {
    int row = 0, column = 0;
};

Cell strongest(const AMatrix<float>& map)
{
    const int border = map.rows() / borderPart;
    Cell best{border, border};
    float greatest = -1;
    for (int r = border; r < map.rows() - border; ++r)
        for (int c = border; c < map.columns() - border; ++c)
            if (const float size = std::fabs(map(r, c)); size > greatest) {
                greatest = size;
                best = {r, c};
            }
    return best;
}

/// Takes `flux` times the beam, centred on `at`, off the map.
void takeOff(AMatrix<float>& map, const AMatrix<float>& beam, Cell at, float flux)
{
    const int shiftRow = beam.rows() / 2 - at.row;
    const int shiftColumn = beam.columns() / 2 - at.column;
    for (int r = 0; r < map.rows(); ++r) {
        const float* const from = beam.row(r + shiftRow) + shiftColumn;
        float* const to = map.row(r);
        for (int c = 0; c < map.columns(); ++c)
            to[c] -= flux * from[c];
    }
}

/// Adds a Gaussian of the beam's shape and the given peak.
void restore(AMatrix<float>& map, const CleanBeam& beam, Cell at, double peak)
{
    const double angle = beam.angle * std::numbers::pi / 180;
    const int reach = static_cast<int>(3 * beam.major) + 1;
    for (int r = std::max(at.row - reach, 0); r <= std::min(at.row + reach, map.rows() - 1); ++r)
        for (int c = std::max(at.column - reach, 0);
             c <= std::min(at.column + reach, map.columns() - 1); ++c) {
            const double north = r - at.row;
            const double east = at.column - c;
            const double along = east * std::sin(angle) + north * std::cos(angle);
            const double across = east * std::cos(angle) - north * std::sin(angle);
            const double square = along * along / (beam.major * beam.major) +
                                  across * across / (beam.minor * beam.minor);
            map(r, c) += static_cast<float>(peak * std::exp(-4 * std::numbers::ln2 * square));
        }
}

}  // namespace

CleanBeam fitBeam(const AMatrix<float>& beam)
{
    // -ln(beam) = a e^2 + b e n + c n^2 with e east and n north; least squares by normal equations
    const int middleRow = beam.rows() / 2;
    const int middleColumn = beam.columns() / 2;
    double m[3][4] = {};
    constexpr int reach = 40;
    for (int r = std::max(middleRow - reach, 0); r < std::min(middleRow + reach, beam.rows()); ++r)
        for (int c = std::max(middleColumn - reach, 0);
             c < std::min(middleColumn + reach, beam.columns()); ++c) {
            if (beam(r, c) < 0.5f)
                continue;
            const double e = middleColumn - c;
            const double n = r - middleRow;
            const double terms[4] = {e * e, e * n, n * n, -std::log(double{beam(r, c)})};
            for (int i = 0; i < 3; ++i)
                for (int k = 0; k < 4; ++k)
                    m[i][k] += terms[i] * terms[k];
        }
    for (int i = 0; i < 3; ++i)
        for (int row = 0; row < 3; ++row) {
            if (row == i || m[i][i] == 0)
                continue;
            const double factor = m[row][i] / m[i][i];
            for (int k = 0; k < 4; ++k)
                m[row][k] -= factor * m[i][k];
        }
    const auto solved = [&](int i) { return m[i][i] != 0 ? m[i][3] / m[i][i] : 0.0; };
    const double a = solved(0);
    const double b = solved(1);
    const double c = solved(2);
    const double mean = (a + c) / 2;
    const double spread = std::hypot((a - c) / 2, b / 2);
    const auto width = [](double curvature) {
        return 2 * std::sqrt(std::numbers::ln2 / std::max(curvature, 1e-12));
    };
    // the major axis lies where the curvature is least
    const double angle = 0.5 * std::atan2(-b, a - c) * 180 / std::numbers::pi;
    return {width(mean - spread), width(mean + spread), a == c && b == 0 ? 0.0 : angle};
}

AMatrix<float> cleaned(AMatrix<float> map, const AMatrix<float>& dirtyBeam, const CleanBeam& beam,
                       int iterations, double gain, double least)
{
    std::map<std::pair<int, int>, double> fluxes;
    for (int i = 0; i < iterations; ++i) {
        const Cell at = strongest(map);
        const float value = map(at.row, at.column);
        if (std::fabs(value) < least)
            break;
        const float flux = value * static_cast<float>(gain);
        takeOff(map, dirtyBeam, at, flux);
        fluxes[{at.row, at.column}] += static_cast<double>(flux);
    }
    for (const auto& [cell, flux] : fluxes)
        restore(map, beam, {cell.first, cell.second}, flux);
    return map;
}

}  // namespace pavane
