#include "pavane/trackers/shapes/area_geometry.h"

#include "tessel/rounding.h"

#include <algorithm>
#include <cmath>
#include <numbers>

namespace pavane
{

namespace
{

constexpr double farthest = 1e9;
constexpr double straightTolerance = 2e-7;
constexpr int fewestEllipsePoints = 16;
constexpr int mostEllipsePoints = 65536;
constexpr int pointsPerCell = 8;

int isPlace(APoint<double> p) { return std::abs(p.x) <= farthest && std::abs(p.y) <= farthest; }

/// The sides, or axes, of a turned shape: full lengths as vectors.
struct Sides {
    APoint<double> first;
    APoint<double> second;
};

Sides sidesOf(const PlaneMap& map, const AreaShape& shape)
{
    const double c = std::cos(shape.angle);
    const double s = std::sin(shape.angle);
    return {map(shape.width * c, shape.width * s), map(-shape.height * s, shape.height * c)};
}

double dot(APoint<double> a, APoint<double> b) { return a.x * b.x + a.y * b.y; }

void takeSides(const Sides& sides, AreaShape& shape)
{
    shape.width = std::hypot(sides.first.x, sides.first.y);
    shape.height = std::hypot(sides.second.x, sides.second.y);
    shape.angle = std::atan2(sides.first.y, sides.first.x);
}

std::vector<APoint<double>> ellipseOutline(const AreaShape& shape, int count)
{
    const Sides sides = sidesOf({}, shape);
    const double side = shape.isReversed ? 0.5 : -0.5;
    std::vector<APoint<double>> points(static_cast<std::size_t>(count));
    for (int i = 0; i < count; ++i) {
        const double along = std::cos(i * 2 * std::numbers::pi / count) / 2;
        const double across = std::sin(i * 2 * std::numbers::pi / count) * side;
        points[static_cast<std::size_t>(i)] = {
            shape.centre.x + along * sides.first.x + across * sides.second.x,
            shape.centre.y + along * sides.first.y + across * sides.second.y};
    }
    return points;
}

}  // namespace

PlaneMap inverse(const PlaneMap& map)
{
    const auto& m = map.m;
    const double det = m[0][0] * m[1][1] - m[0][1] * m[1][0];
    return {{{m[1][1] / det, -m[0][1] / det}, {-m[1][0] / det, m[0][0] / det}}};
}

int isWhole(const AreaShape& shape)
{
    if (shape.kind == AreaShape::Kind::polygon)
        return shape.vertices.size() >= 3 &&
               std::all_of(shape.vertices.begin(), shape.vertices.end(), isPlace);
    return isPlace(shape.centre) && shape.width > 0 && shape.width <= farthest &&
           shape.height > 0 && shape.height <= farthest && std::abs(shape.angle) <= farthest;
}

std::vector<APoint<double>> outlineOf(const AreaShape& shape, int ellipsePoints)
{
    if (shape.kind == AreaShape::Kind::polygon)
        return shape.vertices;
    if (shape.kind == AreaShape::Kind::ellipse) {
        const int usual =
            std::clamp(truncated(pointsPerCell * std::max(shape.width, shape.height) / 2),
                       fewestEllipsePoints, mostEllipsePoints);
        return ellipseOutline(shape, ellipsePoints < 3 ? usual : ellipsePoints);
    }
    Sides sides = {{shape.width, 0}, {0, shape.height}};
    if (shape.kind == AreaShape::Kind::rotatedRectangle)
        sides = sidesOf({}, shape);
    std::vector<APoint<double>> points;
    for (const auto& [u, v] : {std::pair{-0.5, -0.5}, {0.5, -0.5}, {0.5, 0.5}, {-0.5, 0.5}})
        points.push_back({shape.centre.x + u * sides.first.x + v * sides.second.x,
                          shape.centre.y + u * sides.first.y + v * sides.second.y});
    if (shape.isReversed)
        std::swap(points[1], points[3]);
    return points;
}

double mapRectangle(const PlaneMap& map, AreaShape& shape)
{
    if (shape.kind == AreaShape::Kind::rectangle)
        shape.angle = 0;
    const Sides sides = sidesOf(map, shape);
    takeSides(sides, shape);
    shape.kind = AreaShape::Kind::rotatedRectangle;
    return std::abs(dot(sides.first, sides.second)) / (shape.width * shape.height);
}

void mapEllipse(const PlaneMap& map, AreaShape& shape)
{
    Sides sides = sidesOf(map, shape);
    // conjugate semi-diameters to axes: the turn along the ellipse that makes them perpendicular
    const double mixed = 2 * dot(sides.first, sides.second);
    const double difference = dot(sides.first, sides.first) - dot(sides.second, sides.second);
    double t = std::atan2(mixed, difference) / 2;
    if (t > std::numbers::pi / 4)
        t -= std::numbers::pi / 2;  // the smaller turn, so that width stays width
    else if (t < -std::numbers::pi / 4)
        t += std::numbers::pi / 2;
    // a circle that stays one has any axes: keep those it has
    if (std::hypot(mixed, difference) < 1e-10 * dot(sides.first, sides.first))
        t = 0;
    const double c = std::cos(t);
    const double s = std::sin(t);
    const Sides old = sides;
    sides.first = {c * old.first.x + s * old.second.x, c * old.first.y + s * old.second.y};
    sides.second = {c * old.second.x - s * old.first.x, c * old.second.y - s * old.first.y};
    takeSides(sides, shape);
}

void straighten(AreaShape& shape)
{
    if (shape.kind != AreaShape::Kind::rotatedRectangle)
        return;
    const double quarter = std::numbers::pi / 2;
    const double quarters = std::floor(shape.angle / quarter + 0.5);
    const double off = std::abs(shape.angle - quarters * quarter);
    if (off * std::max(shape.width, shape.height) / 2 > straightTolerance)
        return;
    if (std::fmod(quarters, 2) != 0)
        std::swap(shape.width, shape.height);
    shape.angle = 0;
    shape.kind = AreaShape::Kind::rectangle;
}

AreaShape asPolygon(const AreaShape& shape)
{
    AreaShape polygon;
    polygon.kind = AreaShape::Kind::polygon;
    polygon.vertices = outlineOf(shape);
    return polygon;
}

}  // namespace pavane
