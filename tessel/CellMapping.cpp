#include "tessel/CellMapping.h"

#include <algorithm>
#include <cmath>
#include <numbers>

namespace pavane
{

namespace
{

constexpr double degree = std::numbers::pi / 180;

/// The matrix that turns the sphere about a unit vector (Rodrigues).
void turnAbout(const double (&axis)[3], double angle, double (&matrix)[3][3])
{
    const double c = std::cos(angle), s = std::sin(angle);
    const double half = std::sin(angle / 2);
    const double less = 2 * half * half;  // 1 - c, also of a tiny angle
    for (int i = 0; i < 3; ++i)
        for (int j = 0; j < 3; ++j)
            matrix[i][j] = axis[i] * axis[j] * less + (i == j ? c : 0);
    for (int i = 0; i < 3; ++i) {
        const int j = (i + 1) % 3, k = (i + 2) % 3;
        matrix[k][j] += s * axis[i];
        matrix[j][k] -= s * axis[i];
    }
}

}  // namespace

CellMapping::CellMapping(const SkyCoordinates& from, const SkyCoordinates& to, SkyShift moved)
    : from_(&from), to_(&to), moves_(!moved.isNone())
{
    if (!moves_)
        return;
    const double l = from.referenceLongitude() * degree, b = from.referenceLatitude() * degree;
    const double way = std::hypot(moved.east, moved.north);
    const double east = moved.east / way, north = moved.north / way;
    const double toEast[3] = {-std::sin(l), std::cos(l), 0};
    const double toNorth[3] = {-std::sin(b) * std::cos(l), -std::sin(b) * std::sin(l), std::cos(b)};
    // the pole of the great circle that leads there
    double axis[3];
    for (int i = 0; i < 3; ++i)
        axis[i] = east * toNorth[i] - north * toEast[i];
    turnAbout(axis, way * degree, turn_);
}

int CellMapping::move(double& longitude, double& latitude) const
{
    const double l = longitude * degree, b = latitude * degree;
    const double v[3] = {std::cos(b) * std::cos(l), std::cos(b) * std::sin(l), std::sin(b)};
    double w[3] = {};
    for (int i = 0; i < 3; ++i)
        w[i] = turn_[i][0] * v[0] + turn_[i][1] * v[1] + turn_[i][2] * v[2];
    const double across = std::hypot(w[0], w[1]);
    longitude = across > 0 ? std::atan2(w[1], w[0]) / degree : longitude;
    latitude = std::clamp(std::atan2(w[2], across) / degree, -90.0, 90.0);
    return std::isfinite(longitude) && std::isfinite(latitude);
}

int CellMapping::map(double column, double row, double& toColumn, double& toRow) const
{
    double l = 0, b = 0;
    return from_->toSky(column, row, l, b) && (!moves_ || move(l, b)) &&
           to_->toPixel(l, b, from_->skyFrame(), toColumn, toRow);
}

int CellMapping::northOf(double column, double row, double& angle) const
{
    constexpr double step = 1e-4;  // degrees
    double l = 0, b = 0, toL = 0, toB = 0, nextL = 0, nextB = 0;
    if (!from_->toSky(column, row, l, b))
        return 0;
    const double side = b > 0 ? -step : step;  // not over a pole
    if (!convertSky(from_->skyFrame(), to_->skyFrame(), l, b, toL, toB) ||
        !convertSky(from_->skyFrame(), to_->skyFrame(), l, b + side, nextL, nextB))
        return 0;
    const double dl = std::remainder(nextL - toL, 360.0);
    const double east = dl * std::cos(toB * degree), north = nextB - toB;
    angle = std::atan2(side < 0 ? -east : east, side < 0 ? -north : north) / degree;
    return 1;
}

int showTheSame(const SkyCoordinates& first, int firstRows, int firstColumns,
                const SkyCoordinates& second, int secondRows, int secondColumns,
                SkyShift firstMoved)
{
    constexpr int parts = 32;
    const auto meets = [](const CellMapping& mapping, int rows, int columns, int toRows,
                          int toColumns) {
        for (int i = 0; i <= parts; ++i)
            for (int j = 0; j <= parts; ++j) {
                double column = 0, row = 0;
                if (mapping.map((columns - 1.0) * j / parts, (rows - 1.0) * i / parts, column,
                                row) &&
                    column >= -0.5 && row >= -0.5 && column <= toColumns - 0.5 &&
                    row <= toRows - 0.5)
                    return 1;
            }
        return 0;
    };
    return meets(CellMapping(first, second, firstMoved), firstRows, firstColumns, secondRows,
                 secondColumns) ||
           meets(CellMapping(second, first, {-firstMoved.east, -firstMoved.north}), secondRows,
                 secondColumns, firstRows, firstColumns);
}

}  // namespace pavane
