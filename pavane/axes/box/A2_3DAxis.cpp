#include "pavane/axes/box/A2_3DAxis.h"

#include "pavane/axes/box/BoxDrawing.h"
#include "tessel/rounding.h"

#include <algorithm>
#include <cmath>

namespace pavane
{
namespace
{

int nearest(double v) { return truncated(std::floor(v + 0.5)); }

void widen(TMnMx& range, double value)
{
    // as far as floats reach, as cells do
    if (!std::isfinite(value) || value == unsetMinimum || value == unsetMaximum)
        return;
    range.min = std::min(range.min, value);
    range.max = std::max(range.max, value);
}

/// A range that can be drawn: equal ends parted by half their value, reversed ones in order.
TMnMx repaired(TMnMx range)
{
    if (range.min == unsetMinimum && range.max == unsetMaximum)
        return {0, 1};
    if (range.min == range.max) {
        const double half = range.min == 0 ? 1 : 0.5 * std::fabs(range.min);
        range.min -= half;
        range.max += half;
    }
    if (range.min > range.max)
        std::swap(range.min, range.max);
    return range;
}

}  // namespace

A2_3DAxis::A2_3DAxis(int xDirect, int yDirect, TMinMax* range, int options)
    : AB2DAxis(xDirect, yDirect, range, options), drawing_(std::make_unique<BoxDrawing>())
{
}

A2_3DAxis::A2_3DAxis(const A2_3DAxis& other)
    : AB2DAxis(other), view_(other.view_), z_(other.z_), zWish_(other.zWish_),
      floorGap_(other.floorGap_), drawing_(std::make_unique<BoxDrawing>())
{
}

A2_3DAxis& A2_3DAxis::operator=(const A2_3DAxis& other)
{
    if (this == &other)
        return *this;
    AB2DAxis::operator=(other);
    view_ = other.view_;
    z_ = other.z_;
    zWish_ = other.zWish_;
    floorGap_ = other.floorGap_;
    drawing_ = std::make_unique<BoxDrawing>();
    return *this;
}

A2_3DAxis::~A2_3DAxis() = default;

int A2_3DAxis::GetAxisType() const { return 14; }
int A2_3DAxis::countsInRange(const AGraph& graph) const { return graph.isIn3D(); }
void A2_3DAxis::SetView(double azimuth, double elevation) { view_.setView(azimuth, elevation); }
void A2_3DAxis::SetOblique(double angle, double ratio) { view_.setOblique(angle, ratio); }
void A2_3DAxis::SetBoxHeight(double share) { view_.setHeight(share); }
void A2_3DAxis::SetZoom(double factor) { view_.setZoom(factor); }
void A2_3DAxis::SetPan(double right, double down) { view_.setPan(right, down); }
void A2_3DAxis::SetBase(double width, double depth) { view_.setBase(width, depth); }

void A2_3DAxis::setView(const BoxView& view)
{
    const CRect rect = view_.rect();
    const BoxPoint size = view_.size();
    view_ = view;
    view_.setBase(size.p, size.q);
    view_.fit(rect);
}

void A2_3DAxis::SetFloorGap(double share)
{
    constexpr double most = 0.9;
    if (std::isfinite(share))
        floorGap_ = std::clamp(share, 0.0, most);
}

void A2_3DAxis::placeZ(BoxZ& z, double ground, double top) const
{
    z.ground = ground;
    z.floor = ground + floorGap_ * (top - ground);
    z.top = top;
}

int A2_3DAxis::DeleteGraph(const AGraph* graph)
{
    int i = 0;
    while (i < childs_.count() && childs_(i) != graph)
        ++i;
    if (i == childs_.count())
        return 0;
    drawing_->lines.reset();  // until the next drawing nothing is seen
    if (BoxSurface* const surface = drawing_->surfaceOf(*graph))
        *surface = BoxSurface();
    childs_.DeleteItems(i, 1);
    return 1;
}

CString A2_3DAxis::nameOfZ(int index, const CString& name) const
{
    for (int i = 0; name.empty() && i < childs_.count(); ++i)
        if (zIndexOf(*childs_(i)) == index && !childs_(i)->GetOZName().empty())
            return childs_(i)->GetOZName();
    return name;
}

CString A2_3DAxis::getNameOZ() const { return nameOfZ(0, z_.name); }

CString A2_3DAxis::shownName(int direction) const
{
    CString name = direction == 0 ? nameOX_ : nameOY_;
    for (int i = 0; name.empty() && i < childs_.count(); ++i)
        if (countsInRange(*childs_(i)))
            name = direction == 0 ? childs_(i)->GetOXName() : childs_(i)->GetOYName();
    return name;
}

BoxZ A2_3DAxis::zAxis(int) const
{
    BoxZ z = z_;
    z.name = getNameOZ();
    z.range = {range_.zMin, range_.zMax};
    placeZ(z, -0.5, 0.5);
    return z;
}

int A2_3DAxis::zIndexOf(const AGraph&) const { return 0; }

/// What the graphs of a Z take of it, where `asked` does not say it.
TMnMx A2_3DAxis::rangeOfZ(int index, const TMnMx& asked) const
{
    const bool isSet = !(asked.min >= asked.max);
    if (isSet && std::isfinite(asked.min) && std::isfinite(asked.max))
        return asked;
    TMnMx found;
    for (int i = 0; i < childs_.count(); ++i) {
        if (!countsInRange(*childs_(i)) || zIndexOf(*childs_(i)) != index)
            continue;
        TMinMax own;
        childs_(i)->getMinMax(own);
        widen(found, own.zMin);
        widen(found, own.zMax);
    }
    if (isSet && std::isfinite(asked.min))
        found.min = asked.min;
    if (isSet && std::isfinite(asked.max))
        found.max = asked.max;
    return repaired(found);
}

void A2_3DAxis::setUpParameters()
{
    const bool isReset = range_.xMin >= range_.xMax;
    const TMnMx asked = zWish_.of({range_.zMin, range_.zMax}, isReset);
    for (int i = 0; i < childs_.count(); ++i)
        if (dynamic_cast<const ASurfaceGraph*>(childs_(i))) {  // cells lie at equal distances
            xDirect_ = xDirect_ == 0 ? 1 : xDirect_;
            yDirect_ = yDirect_ == 0 ? 1 : yDirect_;
        }
    AB2DAxis::setUpParameters();
    const TMnMx z = rangeOfZ(0, asked);
    zWish_.found = z;
    range_.zMin = z.min;
    range_.zMax = z.max;
}

int A2_3DAxis::isWithoutData() const
{
    for (int i = 0; i < childs_.count(); ++i) {
        TMinMax own;
        if (!childs_(i)->isIn3D())
            continue;
        childs_(i)->getMinMax(own);
        if (own.zMin != unsetMinimum || own.zMax != unsetMaximum)
            return 0;
    }
    return childs_.count() > 0;
}

// Conversions

const BoxZ& A2_3DAxis::shownZ(int index) const { return drawing_->z[index == 1 ? 1 : 0]; }

double A2_3DAxis::placeOf(int direction, double value) const
{
    const double along = direction == 0 ? RPXtoWPX(value) : RPYtoWPY(value);
    return (direction == 0 ? xDirect_ : yDirect_) < 0 ? 1 - along : along;
}

double A2_3DAxis::heightPlace(int zIndex, double z) const
{
    for (const BoxSurface& surface : drawing_->surfaces)
        if (surface.graph && surface.z == zIndex && surface.scale.kind() != MapScaleKind::linear)
            return std::isfinite(z) ? surface.scale.position(z) : NAN;
    const TMnMx& range = shownZ(zIndex).range;
    return (z - range.min) / (range.max - range.min);
}

double A2_3DAxis::zOfPlace(int zIndex, double place) const
{
    for (const BoxSurface& surface : drawing_->surfaces)
        if (surface.graph && surface.z == zIndex && surface.scale.kind() != MapScaleKind::linear)
            return surface.scale.value(place);
    const TMnMx& range = shownZ(zIndex).range;
    return range.min + place * (range.max - range.min);
}

BoxPoint A2_3DAxis::pointOn(int zIndex, double x, double y, double z) const
{
    const BoxZ& axis = shownZ(zIndex);
    return {placeOf(0, x) - 0.5, placeOf(1, y) - 0.5,
            axis.floor + heightPlace(zIndex, z) * (axis.top - axis.floor)};
}

BoxPoint A2_3DAxis::boxPoint(const AGraph& graph, double x, double y, double z) const
{
    return pointOn(zIndexOf(graph), x, y, z);
}

CPointF A2_3DAxis::RPtoGPF(double x, double y, double z) const
{
    return view_.project(pointOn(0, x, y, z));
}

CPoint A2_3DAxis::RPtoGP(double x, double y, double z) const
{
    const CPointF at = RPtoGPF(x, y, z);
    return {nearest(at.x), nearest(at.y)};
}

double A2_3DAxis::GetDepth(double x, double y, double z) const
{
    return view_.depth(pointOn(0, x, y, z));
}

double A2_3DAxis::valueAt(int direction, double place) const
{
    const int direct = int{direction == 0 ? xDirect_ : yDirect_};
    const double along = direct < 0 ? 1 - place : place;
    const double min = direction == 0 ? range_.xMin : range_.yMin;
    const double max = direction == 0 ? range_.xMax : range_.yMax;
    if (direct != 0)
        return min + along * (max - min);
    return min * std::pow(max / min, along);
}

int A2_3DAxis::hitAt(CPoint point, int& second, BoxCell& cell) const
{
    SurfaceHit hit;
    if (!drawing_->lines || !drawing_->picture.PtInRect(point) ||
        !drawing_->lines->sight().pick({static_cast<double>(point.x), static_cast<double>(point.y)},
                                       hit))
        return 0;
    const BoxSurface& surface = drawing_->surfaces[hit.second ? 1 : 0];
    if (!surface.graph || surface.grid.mapColumns() < 1)
        return 0;
    const BoxZ& axis = shownZ(surface.z);
    const auto columns = static_cast<std::uint32_t>(surface.grid.mapColumns());
    second = surface.z;
    cell.graph = surface.graph;
    cell.row = static_cast<int>(hit.cell / columns);
    cell.column = static_cast<int>(hit.cell % columns);
    cell.x = valueAt(0, hit.at.p + 0.5);
    cell.y = valueAt(1, hit.at.q + 0.5);
    cell.z = zOfPlace(surface.z, (hit.at.s - axis.floor) / (axis.top - axis.floor));
    cell.fromBelow = hit.fromBelow;
    return 1;
}

int A2_3DAxis::GPtoCell(CPoint point, BoxCell& cell) const
{
    int second = 0;
    return hitAt(point, second, cell);
}

int A2_3DAxis::GPtoRP(CPoint point, double& x, double& y, double& z) const
{
    int second = 0;
    BoxCell cell;
    if (!hitAt(point, second, cell) || second != 0)
        return 0;
    x = cell.x;
    y = cell.y;
    z = cell.z;
    return 1;
}

}  // namespace pavane
