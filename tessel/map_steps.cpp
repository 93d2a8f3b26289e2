#include "tessel/map_steps.h"

#include <cmath>
#include <numbers>

namespace pavane
{

namespace
{

constexpr double visibleTurn = 0.01 * std::numbers::pi / 180;

double usable(double step) { return std::isfinite(step) && step != 0 ? step : 1.0; }

}  // namespace

MapSteps stepsOf(const MapHeader& header)
{
    MapSteps steps;
    const int first = header.hasCelestialAxes ? header.longitudeAxis : 0;
    for (int j = 0; j < 2; ++j) {
        steps.sky[0][j] = header.cd[first][j];
        steps.sky[1][j] = header.cd[1 - first][j];
    }
    const double(&m)[2][2] = steps.sky;
    const double det = m[0][0] * m[1][1] - m[0][1] * m[1][0];
    steps.column = std::hypot(m[0][0], m[1][0]);
    steps.row = std::hypot(m[0][1], m[1][1]);
    const double inverse = 1 / det;
    const int holds = std::isfinite(inverse) && std::isfinite(det);
    const double across = std::hypot(m[0][1], m[1][0]);
    steps.isTurned = holds && across > std::hypot(m[0][0], m[1][1]) * std::sin(visibleTurn);
    if (!steps.isTurned) {
        steps.column = usable(std::copysign(steps.column, m[0][0]));
        steps.row = usable(std::copysign(steps.row, m[1][1]));
        steps.cellArea = std::abs(holds ? det : steps.column * steps.row);
        return steps;
    }
    steps.column = std::copysign(steps.column, det);
    steps.cellArea = std::abs(det);
    const double x = steps.column * inverse;
    const double y = steps.row * inverse;
    steps.turn[0][0] = x * m[1][1];
    steps.turn[0][1] = -x * m[0][1];
    steps.turn[1][0] = -y * m[1][0];
    steps.turn[1][1] = y * m[0][0];
    return steps;
}

}  // namespace pavane
