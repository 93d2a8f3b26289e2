#include "pavane/trackers/area_polygons.h"

#include "pavane/trackers/area_geometry.h"
#include "tessel/rounding.h"

#include <algorithm>
#include <cmath>
#include <memory>
#include <new>

namespace pavane
{

namespace
{

using Kind = RegionNotes::Kind;

CPoint nearestCell(APoint<double> p)
{
    return {truncated(std::floor(p.x + 0.5)), truncated(std::floor(p.y + 0.5))};
}

/// The polygon of whole cells; `worst` grows to the farthest that a vertex was moved.
std::vector<CPoint> roundedOutline(const AreaShape& shape, double& worst)
{
    std::vector<CPoint> cells;
    for (const APoint<double>& p : outlineOf(shape)) {
        const CPoint cell = nearestCell(p);
        worst = std::max({worst, std::abs(p.x - cell.x), std::abs(p.y - cell.y)});
        if (cells.empty() || !(cells.back() == cell))
            cells.push_back(cell);
    }
    while (cells.size() > 1 && cells.back() == cells.front())
        cells.pop_back();
    return cells;
}

}  // namespace

int polygonsOf(const std::vector<AreaShape>& shapes, AAreaArray& areas, RegionNotes& notes)
{
    areas.Free();
    double worst = 0;
    int isCurved = 0;
    long long number = 0;
    for (const AreaShape& shape : shapes) {
        ++number;
        if (!isWhole(shape)) {
            notes.add(Kind::leftOut, "area", number, "has no size or lies too far away; left out");
            continue;
        }
        isCurved |= shape.kind == AreaShape::Kind::ellipse;
        const std::vector<CPoint> cells = roundedOutline(shape, worst);
        std::unique_ptr<APolyPoints> polygon(
            new (std::nothrow) APolyPoints(cells.data(), static_cast<int>(cells.size())));
        if (!polygon || !polygon->points || areas.Add(polygon.get()) < 0)
            return 0;
        (void)polygon.release();  // the array owns it now
    }
    if (worst > 0)
        notes.addOnce(Kind::changed,
                      "the file holds whole cells: outlines were moved by up to half a cell");
    if (isCurved)
        notes.addOnce(Kind::changed, "the file holds polygons: ellipses come back as polygons");
    return 1;
}

std::vector<AreaShape> shapesOf(const AAreaArray& areas, RegionNotes& notes)
{
    std::vector<AreaShape> shapes;
    for (int i = 0; i < areas.count(); ++i) {
        AreaShape shape;
        shape.kind = AreaShape::Kind::polygon;
        for (int k = 0; areas(i) && k < areas(i)->count; ++k) {
            const CPoint p = areas(i)->points[k];
            shape.vertices.push_back({double(p.x), double(p.y)});
        }
        if (isWhole(shape))
            shapes.push_back(std::move(shape));
        else
            notes.add(Kind::leftOut, "area", i + 1,
                      "has fewer than three vertices or lies too far away; left out");
    }
    return shapes;
}

}  // namespace pavane
