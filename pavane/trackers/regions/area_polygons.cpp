#include "pavane/trackers/regions/area_polygons.h"

#include "pavane/trackers/masks/outline_cells.h"
#include "pavane/trackers/shapes/area_geometry.h"

#include <algorithm>
#include <cmath>
#include <memory>
#include <new>

namespace pavane
{

namespace
{

using Kind = RegionNotes::Kind;

constexpr const char* neverCleanLost =
    "is never cleaned, which the file cannot say; left out, so that its cells are cleaned";

/// Cells as values, so that a shape is rounded as an area on a map is.
MapCells unitMap() { return {2, 2, {0, 1, 0, 1, 0, 1}}; }

AArray<APoint<double>> outlineForMask(const AreaShape& shape)
{
    int count = 0;
    if (shape.kind == AreaShape::Kind::ellipse)
        count = ellipsePointsForMask({0, 0, shape.width, shape.height}, shape.angle, unitMap());
    const std::vector<APoint<double>> points = outlineOf(shape, count);
    AArray<APoint<double>> outline;
    if (outline.GrowBy(static_cast<int>(points.size())).count() == static_cast<int>(points.size()))
        std::copy(points.begin(), points.end(), outline.lpArray());
    return outline;
}

/// Where masks find a cell again: they cut values towards zero, so what lies before the first cell
/// counts half a cell less.
double placeOf(int cell) { return cell < 0 ? cell - 0.5 : cell; }

/// A direction in steps of a cell to each side.
CPoint towards(CPoint a, CPoint b)
{
    return {(b.x > a.x) - (b.x < a.x), (b.y > a.y) - (b.y < a.y)};
}

/// Off the centre of a cell, still in it. Before the first cell there is no room beside the centre.
double besideCentre(int cell, int outwards)
{
    constexpr double reach = 0.4;
    return placeOf(cell) + (cell < 0 ? 0 : reach * std::clamp(outwards, -1, 1));
}

/// Outlines that are not of so few vertices have one, not two, at the end of a line of cells: their
/// number stays what it was.
constexpr std::size_t mostWithEnds = 600;

int isOnCells(const AreaShape& shape)
{
    const auto isWholeNumber = [](double v) { return v == std::floor(v); };
    const std::vector<APoint<double>> outline = outlineOf(shape);
    return std::all_of(outline.begin(), outline.end(), [&](const APoint<double>& p) {
        return isWholeNumber(p.x) && isWholeNumber(p.y);
    });
}

}  // namespace

int cellsOf(const AreaShape& shape, AArray<CPoint>& cells)
{
    return cellsOf(outlineForMask(shape), unitMap(), cells);
}

int appendPolygon(const AArray<CPoint>& cells, AAreaArray& areas)
{
    std::vector<CPoint> corners;
    for (int k = 0; k < cells.count(); ++k)
        if (corners.empty() || corners.back() != cells(k))
            corners.push_back(cells(k));
    std::unique_ptr<APolyPoints> polygon(
        new (std::nothrow) APolyPoints(corners.data(), static_cast<int>(corners.size())));
    if (!polygon || areas.Add(polygon.get()) < 0)
        return 0;
    (void)polygon.release();  // the array owns it now
    return 1;
}

int polygonsOf(const std::vector<AreaShape>& shapes, AAreaArray& areas, RegionNotes& notes)
{
    areas.Free();
    int isRounded = 0;
    int isCurved = 0;
    long long number = 0;
    for (const AreaShape& shape : shapes) {
        ++number;
        if (shape.isNeverClean) {
            notes.add(Kind::leftOut, "area", number, neverCleanLost);
            continue;
        }
        if (!isWhole(shape)) {
            notes.add(Kind::leftOut, "area", number, "has no size or lies too far away; left out");
            continue;
        }
        if (!shape.label.isEmpty())
            notes.addOnce(Kind::changed, "the file holds no names and no colours of areas");
        isCurved |= shape.kind == AreaShape::Kind::ellipse;
        isRounded = isRounded || !isOnCells(shape);
        AArray<CPoint> cells;
        if (!cellsOf(shape, cells) || !appendPolygon(cells, areas))
            return 0;
    }
    if (isRounded)
        notes.addOnce(Kind::changed,
                      "the file holds whole cells: outlines were moved by up to half a cell");
    if (isCurved)
        notes.addOnce(Kind::changed, "the file holds polygons: ellipses come back as polygons");
    return 1;
}

AreaShape shapeOf(const MaskOutline& outline)
{
    AreaShape shape;
    shape.kind = AreaShape::Kind::polygon;
    shape.isNeverClean = outline.isHole;
    const std::vector<CPoint>& cells = outline.cells;
    const std::size_t n = cells.size();
    const auto put = [&](CPoint cell, CPoint outwards) {
        shape.vertices.push_back(
            {besideCentre(cell.x, outwards.x), besideCentre(cell.y, outwards.y)});
    };
    if (n == 1)
        for (const CPoint corner : {CPoint(-1, -1), CPoint(1, -1), CPoint(1, 1), CPoint(-1, 1)})
            put(cells[0], corner);
    for (std::size_t i = 0; n > 1 && i < n; ++i) {
        const CPoint came = towards(cells[(i + n - 1) % n], cells[i]);
        const CPoint goes = towards(cells[i], cells[(i + 1) % n]);
        // the outside is on the left of the way
        const CPoint left = {came.y, -came.x};
        const CPoint nextLeft = {goes.y, -goes.x};
        const int turnsBack = came.x == -goes.x && came.y == -goes.y;
        if (turnsBack && n <= mostWithEnds) {
            put(cells[i], {left.x + came.x, left.y + came.y});
            put(cells[i], {nextLeft.x + came.x, nextLeft.y + came.y});
        } else {
            put(cells[i], turnsBack ? came : CPoint(left.x + nextLeft.x, left.y + nextLeft.y));
        }
    }
    return shape;
}

std::vector<AreaShape> shapesOf(const std::vector<MaskOutline>& outlines)
{
    std::vector<AreaShape> shapes;
    shapes.reserve(outlines.size());
    for (const MaskOutline& outline : outlines)
        shapes.push_back(shapeOf(outline));
    return shapes;
}

std::vector<AreaShape> shapesOf(const AAreaArray& areas, RegionNotes& notes)
{
    std::vector<AreaShape> shapes;
    for (int i = 0; i < areas.count(); ++i) {
        AreaShape shape;
        shape.kind = AreaShape::Kind::polygon;
        const int count = areas(i) ? areas(i)->count : 0;
        if (count == 1 || count == 2)
            shape = shapeOf(MaskOutline{{areas(i)->points, areas(i)->points + count}});
        for (int k = 0; count > 2 && k < count; ++k) {
            const CPoint p = areas(i)->points[k];
            shape.vertices.push_back({placeOf(p.x), placeOf(p.y)});
        }
        if (isWhole(shape))
            shapes.push_back(std::move(shape));
        else
            notes.add(Kind::leftOut, "area", i + 1, "has no vertex or lies too far away; left out");
    }
    return shapes;
}

}  // namespace pavane
