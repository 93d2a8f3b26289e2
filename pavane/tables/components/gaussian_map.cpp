#include "pavane/tables/components/component_map.h"
#include "tessel/rounding.h"

#include <algorithm>
#include <cmath>

namespace pavane
{

namespace
{

constexpr double pi = 3.141592653589793;
/// Half the width at half maximum in standard deviations: sqrt(2 ln 2).
constexpr double halfWidth = 1.1774100225154747;
/// A Gaussian ends where less than 1e-12 of it is left.
constexpr double reachSigmas = 7.5;
/// From this size on samples at the cell centres are as good as the Gaussian itself: their sum is
/// right to 2 exp(-2 pi^2).
constexpr double sampledSigma = 1;
/// Smaller ones are cut into parts, so many per cell and per standard deviation.
constexpr double cutsPerCell = 4;
constexpr double cutsPerSigma = 2;
constexpr int windowSide = 64;

/// One half axis: a unit vector and the standard deviation along it, arcseconds.
struct GaussAxis {
    GaussAxis(const APoint<double>& half, const APoint<double>& fallback)
    {
        const double length = std::hypot(half.x, half.y);
        sigma = length / halfWidth;
        unit = length > 0 ? APoint<double>{half.x / length, half.y / length} : fallback;
    }
    double sigma;
    APoint<double> unit;
};

struct CellRange {
    int first, last;
};

CellRange cellsWithin(double centre, double half, double first, double step, int cells)
{
    const double a = (centre - half - first) / step;
    const double b = (centre + half - first) / step;
    return {std::max(0, truncated(std::floor(std::min(a, b)))),
            std::min(cells - 1, truncated(std::ceil(std::max(a, b))))};
}

void sample(AMatrix<float>& map, const MapGrid& grid, const ComponentShape& shape,
            const GaussAxis& a, const GaussAxis& b)
{
    const double reachX = reachSigmas * std::hypot(a.sigma * a.unit.x, b.sigma * b.unit.x);
    const double reachY = reachSigmas * std::hypot(a.sigma * a.unit.y, b.sigma * b.unit.y);
    const CellRange columns = cellsWithin(shape.centre.x, reachX, grid.x, grid.dx, grid.columns);
    const CellRange rows = cellsWithin(shape.centre.y, reachY, grid.y, grid.dy, grid.rows);
    const double peak =
        shape.flux / (2 * pi) * (std::abs(grid.dx) / a.sigma) * (std::abs(grid.dy) / b.sigma);
    for (int r = rows.first; r <= rows.last && !isStopped(grid.stop); ++r) {
        const double y = grid.y + r * grid.dy - shape.centre.y;
        for (int c = columns.first; c <= columns.last; ++c) {
            const double x = grid.x + c * grid.dx - shape.centre.x;
            const double s = (x * a.unit.x + y * a.unit.y) / a.sigma;
            const double t = (x * b.unit.x + y * b.unit.y) / b.sigma;
            const double square = s * s + t * t;
            if (square < reachSigmas * reachSigmas)
                map(r, c) = static_cast<float>(map(r, c) + peak * std::exp(-square / 2));
        }
    }
}

struct Extent {
    double from, to;
};

/// What the map spans along a direction, in arcseconds from the centre of the component.
Extent mapAlong(const MapGrid& grid, const ComponentShape& shape, const APoint<double>& unit)
{
    const double x = (grid.x - grid.dx - shape.centre.x) * unit.x;
    const double y = (grid.y - grid.dy - shape.centre.y) * unit.y;
    const double width = (grid.columns + 1) * grid.dx * unit.x;
    const double height = (grid.rows + 1) * grid.dy * unit.y;
    return {x + y + std::min(width, 0.0) + std::min(height, 0.0),
            x + y + std::max(width, 0.0) + std::max(height, 0.0)};
}

/// Calls use(offset, share) for parts of a Gaussian along one axis, offsets from its centre between
/// the ends of `shown`, arcseconds.
template <typename Use>
void forParts(const GaussAxis& axis, double cellsPerArcsecond, Extent shown, const Use& use)
{
    if (!(axis.sigma * cellsPerArcsecond > 0)) {
        use(0.0, 1.0);
        return;
    }
    const double step = std::min(axis.sigma / cutsPerSigma, 1 / (cellsPerArcsecond * cutsPerCell));
    const double end = reachSigmas * axis.sigma;
    const double first = std::floor(std::max(shown.from, -end) / step);
    const double parts = std::ceil(std::min(shown.to, end) / step) - first;
    const double scale = std::sqrt(0.5) / axis.sigma;
    for (int i = 0; i <= truncated(parts); ++i) {
        const double offset = (first + i) * step;
        const double share =
            (std::erf((offset + step / 2) * scale) - std::erf((offset - step / 2) * scale)) / 2;
        use(offset, share);
    }
}

void spread(AMatrix<float>& map, const MapGrid& grid, const ComponentShape& shape,
            const GaussAxis& a, const GaussAxis& b)
{
    const auto cellsPerArcsecond = [&](const APoint<double>& unit) {
        return std::max(std::abs(unit.x / grid.dx), std::abs(unit.y / grid.dy));
    };
    CellSink sink(map, grid, windowSide, windowSide);
    forParts(a, cellsPerArcsecond(a.unit), mapAlong(grid, shape, a.unit),
             [&](double s, double shareA) {
                 if (isStopped(grid.stop))
                     return;
                 forParts(b, cellsPerArcsecond(b.unit), mapAlong(grid, shape, b.unit),
                          [&](double t, double shareB) {
                              sink.add(shape.centre.x + s * a.unit.x + t * b.unit.x,
                                       shape.centre.y + s * a.unit.y + t * b.unit.y,
                                       shape.flux * shareA * shareB);
                          });
             });
}

}  // namespace

void addGaussian(AMatrix<float>& map, const MapGrid& grid, const ComponentShape& shape)
{
    const GaussAxis a(shape.large, {0, 1});
    const GaussAxis b(shape.small, {a.unit.y, -a.unit.x});
    const double cell = std::max(std::abs(grid.dx), std::abs(grid.dy));
    if (std::min(a.sigma, b.sigma) >= sampledSigma * cell)
        sample(map, grid, shape, a, b);
    else
        spread(map, grid, shape, a, b);
}

}  // namespace pavane
