#include "pavane/trackers/shapes/shape_handles.h"

#include <algorithm>
#include <cmath>

namespace pavane
{

namespace
{

using Kind = ShapeValues::Kind;

constexpr int turningHandle = 8;
constexpr int firstMiddle = 4;

/// Which edge of each direction a handle sits on: -1 left or top, 1 right or bottom, 0 between.
struct HandleSides {
    int x;
    int y;
};
constexpr HandleSides sides[] = {{-1, -1}, {1, -1}, {1, 1}, {-1, 1},
                                 {0, -1},  {1, 0},  {0, 1}, {-1, 0}};

APoint<double> turned(double x, double y, double angle)
{
    return {x * std::cos(angle) - y * std::sin(angle), x * std::sin(angle) + y * std::cos(angle)};
}

int tableIndex(const ShapeValues& shape, int handle)
{
    return shape.kind == Kind::ellipse ? handle + firstMiddle : handle;
}

APoint<double> halfSize(const ShapeValues& shape)
{
    return {(shape.rect.right - shape.rect.left) / 2, (shape.rect.bottom - shape.rect.top) / 2};
}

/// The end of the direction that a handle drags grows by `by`, the other end stays.
void dragEdge(double& low, double& high, int side, double by)
{
    if (side < 0)
        low += by;
    else if (side > 0)
        high += by;
}

int keepsSide(double before, double after)
{
    return before > 0 ? after > 0 : before < 0 ? after < 0 : 1;
}

int turnHandle(ShapeValues& shape, APoint<double> offset)
{
    const APoint<double> centre = shapeCentre(shape);
    const APoint<double> handle = handlePoint(shape, handleCount(shape) - 1);
    const double x = handle.x + offset.x - centre.x;
    const double y = handle.y + offset.y - centre.y;
    if (x == 0 && y == 0)
        return 0;
    const double flip = shape.rect.right < shape.rect.left ? -1 : 1;
    shape.angle = std::atan2(y * flip, x * flip);
    return 1;
}

}  // namespace

int handleCount(const ShapeValues& shape)
{
    switch (shape.kind) {
    case Kind::rectangle:
        return 8;
    case Kind::rotatedRectangle:
        return 9;
    case Kind::ellipse:
        return 5;
    case Kind::polygon:
        return static_cast<int>(shape.points.size());
    }
    return 0;
}

APoint<double> handlePoint(const ShapeValues& shape, int handle)
{
    if (shape.kind == Kind::polygon)
        return shape.points[static_cast<std::size_t>(handle)];
    const int index = tableIndex(shape, handle);
    const APoint<double> half = halfSize(shape);
    const APoint<double> centre = shapeCentre(shape);
    const APoint<double> arm =
        index == turningHandle
            ? turned(half.x / 2, 0, shape.angle)
            : turned(half.x * sides[index].x, half.y * sides[index].y, shape.angle);
    return {centre.x + arm.x, centre.y + arm.y};
}

int moveHandle(ShapeValues& shape, int handle, APoint<double> offset)
{
    if (handle < 0 || handle >= handleCount(shape))
        return 0;
    ShapeValues next = shape;
    if (shape.kind == Kind::polygon) {
        auto& point = next.points[static_cast<std::size_t>(handle)];
        point = {point.x + offset.x, point.y + offset.y};
    } else if (tableIndex(shape, handle) == turningHandle) {
        if (!turnHandle(next, offset))
            return 0;
    } else {
        const HandleSides side = sides[tableIndex(shape, handle)];
        const APoint<double> own = turned(offset.x, offset.y, -shape.angle);
        dragEdge(next.rect.left, next.rect.right, side.x, own.x);
        dragEdge(next.rect.top, next.rect.bottom, side.y, own.y);
        const APoint<double> before = halfSize(shape);
        const APoint<double> after = halfSize(next);
        if (!keepsSide(before.x, after.x) || !keepsSide(before.y, after.y))
            return 0;
        if (shape.angle != 0) {
            // the centre moved in the turned frame; the rectangle is turned about the new one
            const APoint<double> was = shapeCentre(shape);
            const APoint<double> is = shapeCentre(next);
            const APoint<double> arm = turned(is.x - was.x, is.y - was.y, shape.angle);
            const APoint<double> centre{was.x + arm.x, was.y + arm.y};
            next.rect = {centre.x - after.x, centre.y - after.y, centre.x + after.x,
                         centre.y + after.y};
        }
    }
    if (!isFinite(next))
        return 0;
    shape = next;
    return 1;
}

void moveShape(ShapeValues& shape, APoint<double> offset)
{
    shape.rect = {shape.rect.left + offset.x, shape.rect.top + offset.y,
                  shape.rect.right + offset.x, shape.rect.bottom + offset.y};
    for (APoint<double>& point : shape.points)
        point = {point.x + offset.x, point.y + offset.y};
}

ARect<double> shapeBox(const ShapeValues& shape)
{
    if (shape.kind == Kind::polygon) {
        if (shape.points.empty())
            return {};
        const APoint<double> first = shape.points.front();
        ARect<double> box{first.x, first.y, first.x, first.y};
        for (const APoint<double>& p : shape.points)
            box = {std::min(box.left, p.x), std::min(box.top, p.y), std::max(box.right, p.x),
                   std::max(box.bottom, p.y)};
        return box;
    }
    const APoint<double> half = halfSize(shape);
    const APoint<double> centre = shapeCentre(shape);
    const double c = std::cos(shape.angle);
    const double s = std::sin(shape.angle);
    double x = std::abs(half.x * c) + std::abs(half.y * s);
    double y = std::abs(half.x * s) + std::abs(half.y * c);
    if (shape.kind == Kind::ellipse) {
        x = std::hypot(half.x * c, half.y * s);
        y = std::hypot(half.x * s, half.y * c);
    }
    return {centre.x - x, centre.y - y, centre.x + x, centre.y + y};
}

APoint<double> shapeCentre(const ShapeValues& shape)
{
    if (shape.kind != Kind::polygon)
        return {(shape.rect.left + shape.rect.right) / 2, (shape.rect.top + shape.rect.bottom) / 2};
    APoint<double> sum;
    for (const APoint<double>& p : shape.points)
        sum = {sum.x + p.x, sum.y + p.y};
    const double n = std::max(1.0, static_cast<double>(shape.points.size()));
    return {sum.x / n, sum.y / n};
}

int isFinite(const ShapeValues& shape)
{
    const auto finite = [](const APoint<double>& p) {
        return std::isfinite(p.x) && std::isfinite(p.y);
    };
    if (shape.kind == Kind::polygon)
        return !shape.points.empty() &&
               std::all_of(shape.points.begin(), shape.points.end(), finite);
    return finite({shape.rect.left, shape.rect.top}) &&
           finite({shape.rect.right, shape.rect.bottom}) && std::isfinite(shape.angle);
}

}  // namespace pavane
