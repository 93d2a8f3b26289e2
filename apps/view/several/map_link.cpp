#include "apps/view/several/map_link.h"

#include "pavane/axes/ranges/RangeView.h"
#include "pavane/trackers/regions/region_place.h"
#include "pavane/trackers/shapes/area_geometry.h"

#include <algorithm>
#include <cmath>

namespace pavane
{

namespace
{

/// The middle and the lengths of a range, in cells of a map.
struct CellView {
    double column = 0, row = 0;
    double columns = 0, rows = 0;
};

CellView cellsOf(const MapFrame& frame, const TMinMax& range)
{
    return {((range.xMin + range.xMax) / 2 - frame.xFirst) / frame.xStep,
            ((range.yMin + range.yMax) / 2 - frame.yFirst) / frame.yStep,
            (range.xMax - range.xMin) / std::fabs(frame.xStep),
            (range.yMax - range.yMin) / std::fabs(frame.yStep)};
}

TMinMax rangeOf(const MapFrame& frame, const CellView& view)
{
    const double x = frame.xFirst + view.column * frame.xStep;
    const double y = frame.yFirst + view.row * frame.yStep;
    const double width = view.columns * std::fabs(frame.xStep) / 2;
    const double height = view.rows * std::fabs(frame.yStep) / 2;
    return {x - width, x + width, y - height, y + height};
}

int shapeOnSky(const LinkedMap& from, const LinkedMap& to, AreaShape& shape)
{
    const SkyFrame& frame = to.sky->skyFrame();
    AreaShape onSky;
    if (!shapeToSky(*from.sky, frame, shape, onSky))
        return 0;
    if (onSky.kind == AreaShape::Kind::polygon) {
        for (APoint<double>& vertex : onSky.vertices) {
            const APoint<double> position = vertex;
            if (!to.sky->toPixel(position.x, position.y, frame, vertex.x, vertex.y))
                return 0;
        }
    } else {
        const APoint<double> position = onSky.centre;
        if (!to.sky->toPixel(position.x, position.y, frame, onSky.centre.x, onSky.centre.y) ||
            !shapeFromSky(*to.sky, frame, onSky))
            return 0;
        straighten(onSky);
    }
    shape = onSky;
    return 1;
}

}  // namespace

LinkBy linkBetween(LinkBy wanted, const LinkedMap& a, const LinkedMap& b)
{
    if (a.frame->unlikeAxes || b.frame->unlikeAxes)
        return LinkBy::nothing;  // a cell of a map of velocities is nowhere on another one
    return wanted == LinkBy::sky && !(a.hasSky() && b.hasSky()) ? LinkBy::cell : wanted;
}

int linkedCell(LinkBy by, const LinkedMap& from, const LinkedMap& to, double& column, double& row)
{
    if (by != LinkBy::sky)
        return by == LinkBy::cell;
    const SkyFrame& frame = to.sky->skyFrame();
    double longitude = 0;
    double latitude = 0;
    return from.sky->toSky(column, row, frame, longitude, latitude) &&
           to.sky->toPixel(longitude, latitude, column, row);
}

int linkedRange(LinkBy by, const LinkedMap& from, const LinkedMap& to, const TMinMax& shown,
                TMinMax& range)
{
    if (by == LinkBy::nothing)
        return 0;
    CellView view = cellsOf(*from.frame, shown);
    if (by == LinkBy::sky) {
        LocalSky here;
        LocalSky there;
        if (!from.sky->localSky(view.column, view.row, here) ||
            !linkedCell(by, from, to, view.column, view.row) ||
            !to.sky->localSky(view.column, view.row, there))
            return 0;
        view.columns *= here.columnScale / there.columnScale;
        view.rows *= here.rowScale / there.rowScale;
    }
    const TMinMax wanted = withPairs(shown, rangeOf(*to.frame, view));
    if (!isShowable(wanted))
        return 0;
    range = wanted;
    return 1;
}

int linkedShapes(LinkBy by, const LinkedMap& from, const LinkedMap& to,
                 const std::vector<AreaShape>& shapes, std::vector<AreaShape>& there)
{
    there.clear();
    if (by == LinkBy::nothing)
        return 0;
    there.reserve(shapes.size());
    for (const AreaShape& shape : shapes) {
        AreaShape other = shape;
        if ((by == LinkBy::cell || shapeOnSky(from, to, other)) && isWhole(other))
            there.push_back(std::move(other));
    }
    return static_cast<int>(shapes.size() - there.size());
}

int sameShapes(const std::vector<AreaShape>& a, const std::vector<AreaShape>& b)
{
    const auto samePoint = [](const APoint<double>& p, const APoint<double>& q) {
        return p.x == q.x && p.y == q.y;
    };
    const auto same = [&](const AreaShape& p, const AreaShape& q) {
        return p.kind == q.kind && samePoint(p.centre, q.centre) && p.width == q.width &&
               p.height == q.height && p.angle == q.angle && p.isReversed == q.isReversed &&
               p.isNeverClean == q.isNeverClean && p.label == q.label &&
               std::equal(p.vertices.begin(), p.vertices.end(), q.vertices.begin(),
                          q.vertices.end(), samePoint);
    };
    return std::equal(a.begin(), a.end(), b.begin(), b.end(), same);
}

}  // namespace pavane
