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
void restore(AMatrix<float>& map, const MapBeam& beam, Cell at, double peak)
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

AMatrix<float> cleaned(AMatrix<float> map, const AMatrix<float>& dirtyBeam, const MapBeam& beam,
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
