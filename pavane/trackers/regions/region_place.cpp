#include "pavane/trackers/regions/region_place.h"

#include "pavane/trackers/shapes/area_geometry.h"

#include <algorithm>
#include <cmath>
#include <numbers>
#include <utility>

namespace pavane
{

namespace
{

/// Masks are made of whole cells: a rectangle that is off by less is worth more than its polygon.
constexpr double readTolerance = 0.01;
/// What is written has to come back within 1e-6 cells.
constexpr double writeTolerance = 3e-7;
constexpr double sameSize = 1e-6;
constexpr std::size_t mostAreas = 1000000;

PlaneMap cellsToSky(const LocalSky& local)
{
    const auto& m = local.toSky;
    return {{{-m[0][0], -m[0][1]}, {m[1][0], m[1][1]}}};
}

/// Places half way between cells, where shapes on a grid of pixels often end, are not the same to
/// the last digit after a way over the sky. Of all places that the digits leave open, and that are
/// too near to matter, the half is taken: masks round it as they do in files of pixels.
double halfWithin(double cell, double tolerance)
{
    constexpr double mostTolerance = 1e-4;
    const double half = std::floor(cell) + 0.5;
    return std::abs(cell - half) <= std::min(tolerance, mostTolerance) ? half : cell;
}

/// The rectangle through four corners, when they are one to within the tolerance of reading.
int rectangleThrough(const std::vector<APoint<double>>& c, AreaShape& shape)
{
    const APoint<double> first = {(c[1].x - c[0].x + c[2].x - c[3].x) / 2,
                                  (c[1].y - c[0].y + c[2].y - c[3].y) / 2};
    const APoint<double> second = {(c[3].x - c[0].x + c[2].x - c[1].x) / 2,
                                   (c[3].y - c[0].y + c[2].y - c[1].y) / 2};
    const double bend =
        std::hypot(c[0].x - c[1].x + c[2].x - c[3].x, c[0].y - c[1].y + c[2].y - c[3].y) / 4;
    shape.kind = AreaShape::Kind::rotatedRectangle;
    shape.centre = {(c[0].x + c[1].x + c[2].x + c[3].x) / 4,
                    (c[0].y + c[1].y + c[2].y + c[3].y) / 4};
    shape.width = std::hypot(first.x, first.y);
    shape.height = std::hypot(second.x, second.y);
    shape.angle = std::atan2(first.y, first.x);
    if (!(shape.width > 0) || !(shape.height > 0))
        return 0;
    const double skew =
        std::abs(first.x * second.x + first.y * second.y) / (shape.width * shape.height);
    return bend + skew * std::max(shape.width, shape.height) / 2 <= readTolerance;
}

}  // namespace

double writtenDegrees(const AreaShape& shape, double angle)
{
    const double degrees = std::remainder(angle * 180 / std::numbers::pi, 360.0);
    const int isBox = shape.kind == AreaShape::Kind::rotatedRectangle;
    return isBox && shape.isReversed ? degrees + 720 : degrees;
}

int shapeFromSky(const SkyCoordinates& sky, const SkyFrame& frame, AreaShape& shape)
{
    LocalSky local;
    if (!sky.localSky(shape.centre.x, shape.centre.y, frame, local))
        return 0;
    const PlaneMap toCells = inverse(cellsToSky(local));
    if (shape.kind == AreaShape::Kind::ellipse) {
        mapEllipse(toCells, shape);
        return 1;
    }
    const AreaShape onSky = shape;
    const double skew = mapRectangle(toCells, shape);
    if (skew * std::max(shape.width, shape.height) / 2 <= readTolerance)
        return 1;
    AreaShape around = onSky;
    around.centre = {0, 0};
    const APoint<double> centre = onSky.centre;
    shape = asPolygon(around);
    for (APoint<double>& vertex : shape.vertices) {
        const APoint<double> offset = toCells(vertex.x, vertex.y);
        vertex = {centre.x + offset.x, centre.y + offset.y};
    }
    return 1;
}

int shapeToSky(const SkyCoordinates& sky, const SkyFrame& frame, const AreaShape& cells,
               AreaShape& onSky)
{
    LocalSky local;
    onSky = cells;
    if (cells.kind != AreaShape::Kind::polygon) {
        if (!sky.localSky(cells.centre.x, cells.centre.y, frame, local))
            return 0;
        onSky.centre = {local.ra, local.dec};
        if (cells.kind == AreaShape::Kind::ellipse) {
            mapEllipse(cellsToSky(local), onSky);
            return 1;
        }
        const double skew = mapRectangle(cellsToSky(local), onSky);
        if (skew * std::max(cells.width, cells.height) / 2 <= writeTolerance)
            return 1;
        onSky = asPolygon(cells);
    }
    for (APoint<double>& vertex : onSky.vertices) {
        const APoint<double> cell = vertex;
        if (!sky.toSky(cell.x, cell.y, frame, vertex.x, vertex.y))
            return 0;
    }
    return 1;
}

void RegionSink::leaveOut(const std::string& why)
{
    notes_.add(RegionNotes::Kind::leftOut, "line", line_, why + "; left out");
}

void RegionSink::damaged(const std::string& why)
{
    notes_.add(RegionNotes::Kind::damaged, "line", line_, why);
}

void RegionSink::changed(const std::string& how)
{
    notes_.add(RegionNotes::Kind::changed, "line", line_, how);
}

void RegionSink::setFrame(const SkyFrame* frame)
{
    frame_ = frame ? *frame : sky_ ? sky_->skyFrame() : SkyFrame();
}

void RegionSink::take(const AreaShape& shape)
{
    if (shapes_.size() >= mostAreas)
        leaveOut("there are more than a million areas");
    else if (!isWhole(shape))
        damaged("the shape has no size or lies too far away");
    else {
        AreaShape& taken = shapes_.emplace_back(shape);
        taken.isNeverClean = isExcluded_;
        taken.label = label_;
    }
}

int RegionSink::takeHalves(const RegionValue& x, const RegionValue& y, APoint<double>& cell) const
{
    // twice, and the rounding of conversions: the writer's own numbers had their last digits, too
    const double rounding = frame_ == sky_->skyFrame() ? 0 : 1e-12;
    const double dx = 2 * x.slack + rounding;
    const double dy = 2 * y.slack + rounding;
    APoint<double> beside;
    APoint<double> above;
    if (x.slack > 0 && y.slack > 0 &&
        sky_->toPixel(x.value + dx, y.value, frame_, beside.x, beside.y) &&
        sky_->toPixel(x.value, y.value - std::copysign(dy, y.value), frame_, above.x, above.y)) {
        const double across = std::abs(beside.x - cell.x) + std::abs(above.x - cell.x);
        const double along = std::abs(beside.y - cell.y) + std::abs(above.y - cell.y);
        cell = {halfWithin(cell.x, across), halfWithin(cell.y, along)};
    }
    return 1;
}

int RegionSink::point(const RegionValue& x, const RegionValue& y, APoint<double>& cell)
{
    if (x.unit != y.unit || x.unit == RegionValue::Unit::none) {
        damaged("the two coordinates of a point do not go together");
        return 0;
    }
    cell = {x.value, y.value};
    if (x.unit == RegionValue::Unit::cells)
        return 1;
    if (!sky_)
        leaveOut("the map has no sky coordinates that can be used");
    else if (!sky_->toPixel(x.value, y.value, frame_, cell.x, cell.y))
        leaveOut("the position cannot be shown by the map's projection");
    else
        return takeHalves(x, y, cell);
    return 0;
}

void RegionSink::sized(AreaShape::Kind kind, APoint<double> centre, const RegionValue& width,
                       const RegionValue& height, double angle, int isCircle)
{
    AreaShape shape;
    shape.kind = kind;
    shape.centre = centre;
    shape.width = width.value;
    shape.height = height.value;
    shape.angle = std::remainder(angle, 2 * std::numbers::pi);
    shape.isReversed = kind == AreaShape::Kind::rotatedRectangle && angle > reversedAngle;
    if (width.unit != height.unit || width.unit == RegionValue::Unit::none)
        return damaged("the sizes do not go together");
    if (!isWhole(shape))
        return damaged("the shape has no size or lies too far away");
    if (width.unit == RegionValue::Unit::degrees) {
        if (!sky_)
            return leaveOut("the map has no sky coordinates that can be used");
        if (!shapeFromSky(*sky_, frame_, shape))
            return leaveOut("the map's projection does not reach around the position");
        if (shape.kind == AreaShape::Kind::polygon)
            changed("the box is not a rectangle on the map; taken as a polygon");
    }
    // a circle does not turn with its frame: its mask would depend on where its outline begins
    if (isCircle && std::abs(shape.width - shape.height) <= sameSize * shape.width)
        shape.angle = std::remainder(angle, 2 * std::numbers::pi);
    straighten(shape);
    take(shape);
}

void RegionSink::polygon(std::vector<APoint<double>> vertices)
{
    AreaShape shape;
    shape.kind = AreaShape::Kind::polygon;
    shape.vertices = std::move(vertices);
    take(shape);
}

void RegionSink::cornerBox(const RegionValue (&corners)[4])
{
    static constexpr int order[4][2] = {{0, 1}, {2, 1}, {2, 3}, {0, 3}};
    std::vector<APoint<double>> cells(4);
    for (std::size_t i = 0; i < 4; ++i)
        if (!point(corners[order[i][0]], corners[order[i][1]], cells[i]))
            return;
    AreaShape shape;
    if (rectangleThrough(cells, shape)) {
        straighten(shape);
        return take(shape);
    }
    if (shape.width > 0 && shape.height > 0)
        changed("the box is not a rectangle on the map; taken as a polygon");
    else
        return damaged("the shape has no size or lies too far away");
    polygon(std::move(cells));
}

}  // namespace pavane
