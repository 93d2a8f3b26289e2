#include "pavane/trackers/shapes/area_values.h"

#include "pavane/trackers/shapes/area_geometry.h"

#include <algorithm>
#include <cmath>

namespace pavane
{

namespace
{

constexpr double tolerance = 1e-6;
/// Far enough that a step has all its digits, and a power of two, so that dividing costs none.
constexpr double farCell = 1 << 20;

/// A map's transform with fractions in both directions.
struct Steps {
    APoint<double> first;  ///< value of cell 0, 0
    APoint<double> step;   ///< value of one cell

    explicit Steps(const AMnMxMCTransform& map)
        : first{map.MPXtoRPX(0), map.MPYtoRPY(0)}, step{(map.MPXtoRPX(farCell) - first.x) / farCell,
                                                        (map.MPYtoRPY(farCell) - first.y) / farCell}
    {
    }
    int isMirrored() const { return (step.x < 0) != (step.y < 0); }
    int isUsable() const
    {
        return std::isfinite(first.x) && std::isfinite(first.y) && std::isfinite(1 / step.x) &&
               std::isfinite(1 / step.y) && step.x != 0 && step.y != 0;
    }
    PlaneMap toValues() const { return {{{step.x, 0}, {0, step.y}}}; }
    APoint<double> value(APoint<double> p) const
    {
        return {first.x + p.x * step.x, first.y + p.y * step.y};
    }
    APoint<double> cell(APoint<double> p) const
    {
        return {(p.x - first.x) / step.x, (p.y - first.y) / step.y};
    }
};

ShapeValues::Kind kindOf(AreaShape::Kind kind) { return static_cast<ShapeValues::Kind>(kind); }
AreaShape::Kind kindOf(ShapeValues::Kind kind) { return static_cast<AreaShape::Kind>(kind); }
static_assert(static_cast<int>(AreaShape::Kind::rotatedRectangle) ==
              static_cast<int>(ShapeValues::Kind::rotatedRectangle));
static_assert(static_cast<int>(AreaShape::Kind::polygon) ==
              static_cast<int>(ShapeValues::Kind::polygon));

void takePoints(const std::vector<APoint<double>>& cells, const Steps& steps, ShapeValues& values)
{
    values.kind = ShapeValues::Kind::polygon;
    for (const APoint<double>& p : cells)
        values.points.push_back(steps.value(p));
}

}  // namespace

int valuesOf(const AreaShape& shape, const AMnMxMCTransform& map, ShapeValues& values)
{
    const Steps steps(map);
    if (!isWhole(shape) || !steps.isUsable())
        return 0;
    values = ShapeValues();
    values.kind = kindOf(shape.kind);
    AreaShape turned = shape;
    double off = 0;
    if (shape.kind == AreaShape::Kind::ellipse)
        mapEllipse(steps.toValues(), turned);
    else if (shape.kind == AreaShape::Kind::rotatedRectangle)
        off = mapRectangle(steps.toValues(), turned) * std::max(shape.width, shape.height) / 2;
    if (shape.kind == AreaShape::Kind::polygon || off > tolerance) {
        takePoints(outlineOf(shape), steps, values);
        return 1;
    }
    if (shape.kind == AreaShape::Kind::rectangle) {
        turned.width = shape.width * std::abs(steps.step.x);
        turned.height = shape.height * std::abs(steps.step.y);
    } else {
        values.angle = turned.angle;
    }
    const APoint<double> centre = steps.value(shape.centre);
    double x = turned.width / 2;
    double y = turned.height / 2;
    if (shape.kind == AreaShape::Kind::rectangle) {
        x = std::copysign(x, steps.step.x);
        y = -std::copysign(y, steps.step.y);
    } else if (steps.isMirrored() != (shape.isReversed != 0)) {
        y = -y;  // the outline runs the same way round on the map
    }
    values.rect = {centre.x - x, centre.y - y, centre.x + x, centre.y + y};
    return 1;
}

int shapeOf(const ShapeValues& values, const AMnMxMCTransform& map, AreaShape& shape)
{
    const Steps steps(map);
    if (!steps.isUsable())
        return 0;
    AreaShape found;
    found.kind = kindOf(values.kind);
    for (const APoint<double>& p : values.points)
        found.vertices.push_back(steps.cell(p));
    const ARect<double>& r = values.rect;
    const APoint<double> centre = {r.left + (r.right - r.left) / 2, r.top + (r.bottom - r.top) / 2};
    if (found.kind != AreaShape::Kind::polygon)
        found.centre = steps.cell(centre);
    found.width = std::abs(r.right - r.left);
    found.height = std::abs(r.bottom - r.top);
    found.angle = values.angle;
    const PlaneMap toCells = inverse(steps.toValues());
    if (found.kind == AreaShape::Kind::ellipse) {
        mapEllipse(toCells, found);
        found.isReversed = !steps.isMirrored();  // it always runs from x towards y
    } else if (found.kind == AreaShape::Kind::rectangle) {
        found.angle = 0;
        found.width /= std::abs(steps.step.x);
        found.height /= std::abs(steps.step.y);
    } else if (found.kind == AreaShape::Kind::rotatedRectangle) {
        const int runsBack = (r.right < r.left) != (r.bottom < r.top);
        found.isReversed = runsBack != steps.isMirrored();
        AreaShape around = found;
        around.isReversed = runsBack;
        around.centre = {0, 0};
        const double skew = mapRectangle(toCells, found);
        if (skew * std::max(found.width, found.height) / 2 > tolerance) {
            const APoint<double> middle = found.centre;
            found = asPolygon(around);
            for (APoint<double>& p : found.vertices) {
                const APoint<double> offset = toCells(p.x, p.y);
                p = {middle.x + offset.x, middle.y + offset.y};
            }
        }
    }
    if (!isWhole(found))
        return 0;
    shape = std::move(found);
    return 1;
}

}  // namespace pavane
