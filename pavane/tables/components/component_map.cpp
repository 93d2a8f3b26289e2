#include "pavane/tables/components/component_map.h"

#include <algorithm>
#include <cmath>

namespace pavane
{

namespace
{

constexpr double pi = 3.141592653589793;
constexpr double radiansPerDegree = pi / 180;
/// Side of the window in which curves and small components collect.
constexpr int windowSide = 64;
/// A curve is cut until half a piece is shorter than this, in cells.
constexpr double shortReach = 0.125;
/// Pieces that a curve starts with, and how often these are halved at most.
constexpr int firstPieces = 64;
constexpr int mostHalvings = 48;

/// Length of a vector on the map, in the cells of the direction where it is longer.
double lengthInCells(const MapGrid& grid, const APoint<double>& v)
{
    return std::max(std::abs(v.x / grid.dx), std::abs(v.y / grid.dy));
}

bool mayTouch(double first, double step, int cells, double at, double reach)
{
    const double cell = (at - first) / step;
    return cell + reach >= -0.5 && cell - reach <= cells - 0.5;
}

/// Spreads flux along a curve: `place(t)` for t from `from` to `to`, where a step of t moves by no
/// more than `speed` arcseconds. Pieces that miss the map are left out whole, so that a curve far
/// larger than the map costs no more than what shows of it.
template <typename Place>
class CurveSpreader
{
public:
    CurveSpreader(CellSink& sink, const MapGrid& grid, double speed, const Place& place)
        : sink_(sink), grid_(grid), speedX_(std::abs(speed / grid.dx)),
          speedY_(std::abs(speed / grid.dy)), place_(place)
    {
    }
    void spread(double from, double to, double flux, int halvings)
    {
        if (isStopped(grid_.stop))
            return;
        const double half = (to - from) / 2;
        const APoint<double> p = place_(from + half);
        if (!mayTouch(grid_.x, grid_.dx, grid_.columns, p.x, speedX_ * half) ||
            !mayTouch(grid_.y, grid_.dy, grid_.rows, p.y, speedY_ * half))
            return;
        if (std::max(speedX_, speedY_) * half < shortReach || halvings == 0) {
            sink_.add(p.x, p.y, flux);
            return;
        }
        spread(from, from + half, flux / 2, halvings - 1);
        spread(from + half, to, flux / 2, halvings - 1);
    }

private:
    CellSink& sink_;
    const MapGrid& grid_;
    double speedX_, speedY_;
    const Place& place_;
};

template <typename Place>
void spreadCurve(AMatrix<float>& map, const MapGrid& grid, double length, double speed, double flux,
                 const Place& place)
{
    CellSink sink(map, grid, windowSide, windowSide);
    CurveSpreader<Place> spreader(sink, grid, speed, place);
    const double piece = length / firstPieces;
    for (int i = 0; i < firstPieces; ++i)
        spreader.spread(i * piece, (i + 1) * piece, flux / firstPieces, mostHalvings);
}

}  // namespace

ComponentShape::ComponentShape(const ACompItem& item) : flux(item.PeakFlux())
{
    const double angle = item.Angle() * radiansPerDegree;
    const double turn = item.Inclination() * radiansPerDegree;
    const double half = item.LargeAxis() / 2;
    const double across = item.type == stripComponent ? half : half * item.AxisRatio();
    centre = {item.Distance() * std::sin(angle), item.Distance() * std::cos(angle)};
    large = {half * std::sin(turn), half * std::cos(turn)};
    small = {across * std::cos(turn), -across * std::sin(turn)};
}

double cellsSpanned(const MapGrid& grid, const ComponentShape& shape)
{
    const APoint<double> offset{shape.centre.x - grid.x, shape.centre.y - grid.y};
    return lengthInCells(grid, shape.large) + lengthInCells(grid, shape.small) +
           lengthInCells(grid, offset);
}

void addPoint(AMatrix<float>& map, const MapGrid& grid, const ComponentShape& shape)
{
    CellSink(map, grid, 2, 2).add(shape.centre.x, shape.centre.y, shape.flux);
}

void addThinRing(AMatrix<float>& map, const MapGrid& grid, const ComponentShape& shape)
{
    const double speed = std::max(std::hypot(shape.large.x, shape.large.y),
                                  std::hypot(shape.small.x, shape.small.y));
    spreadCurve(map, grid, 2 * pi, speed, shape.flux, [&](double t) {
        const double c = std::cos(t);
        const double s = std::sin(t);
        return APoint<double>{shape.centre.x + c * shape.large.x + s * shape.small.x,
                              shape.centre.y + c * shape.large.y + s * shape.small.y};
    });
}

void addStrip(AMatrix<float>& map, const MapGrid& grid, const ComponentShape& shape)
{
    const double speed = std::hypot(shape.small.x, shape.small.y);
    spreadCurve(map, grid, 2, speed, shape.flux, [&](double t) {
        return APoint<double>{shape.centre.x + (t - 1) * shape.small.x,
                              shape.centre.y + (t - 1) * shape.small.y};
    });
}

void addWideRing(AMatrix<float>& map, const MapGrid& grid, const ComponentShape& shape,
                 double width)
{
    const double cells =
        std::max(lengthInCells(grid, shape.large), lengthInCells(grid, shape.small));
    if (std::abs(width) * cells >= 1) {
        ComponentShape filled = shape;
        filled.flux = shape.flux / width;
        addEllipse(map, grid, filled, Profile::uniform, 1 - width);
        return;
    }
    // thinner than a cell: thin rings at the nodes of Gauss's rule, which is exact for the flux
    constexpr double nodes[] = {-0.7745966692414834, 0, 0.7745966692414834};  // sqrt(3/5)
    constexpr double weights[] = {5.0 / 9, 8.0 / 9, 5.0 / 9};
    for (int i = 0; i < 3; ++i) {
        const double radius = 1 - width / 2 * (1 + nodes[i]);
        ComponentShape ring = shape;
        ring.flux *= weights[i] * radius;
        ring.large = {radius * shape.large.x, radius * shape.large.y};
        ring.small = {radius * shape.small.x, radius * shape.small.y};
        addThinRing(map, grid, ring);
    }
}

}  // namespace pavane
