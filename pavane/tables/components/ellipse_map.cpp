#include "pavane/tables/components/component_map.h"
#include "tessel/rounding.h"

#include <algorithm>
#include <cmath>

namespace pavane
{

namespace
{

constexpr double pi = 3.141592653589793;
/// Rows of the window that follows the slices.
constexpr int windowRows = 8;
/// Slices of an ellipse and parts of a slice, per cell: many for small ones, whose edge is most of
/// them, and at least this many in all.
constexpr double cellsWellCut = 256;
constexpr double fewestCuts = 2;
constexpr double mostCuts = 8;
constexpr double fewestParts = 16;

/// The part of the map in one direction.
struct Axis {
    double first, step;
    int cells;
    /// Its ends, the outermost cells in full, as fractions -1 to 1 of centre -+ half.
    double fraction(double cell, double centre, double half) const
    {
        return std::clamp((first + cell * step - centre) / half, -1.0, 1.0);
    }
};

/// Fraction of a unit circle's area (uniform) or of a sphere's volume left of x.
double sliceShare(Profile profile, double x)
{
    if (profile == Profile::sphere)
        return 0.5 + (3 * x - x * x * x) / 4;
    return 0.5 + (x * std::sqrt(1 - x * x) + std::asin(x)) / pi;
}

/// Fraction of a slice's flux left of x, where the slice reaches from -1 to 1.
double partShare(Profile profile, double x)
{
    return profile == Profile::sphere ? sliceShare(Profile::uniform, x) : 0.5 + x / 2;
}

/// An ellipse as slices of constant q, each a run of p around `shear` times q, both from the
/// centre. q is the direction in which it spans more cells, x when `turned`.
class EllipseSlices
{
public:
    EllipseSlices(CellSink& sink, const MapGrid& grid, const ComponentShape& shape, Profile profile,
                  bool turned)
        : sink_(sink), stop_(grid.stop), profile_(profile), turned_(turned), flux_(shape.flux)
    {
        const Axis axisX{grid.x, grid.dx, grid.columns};
        const Axis axisY{grid.y, grid.dy, grid.rows};
        along_ = turned ? axisX : axisY;
        across_ = turned ? axisY : axisX;
        q_ = turned ? shape.centre.x : shape.centre.y;
        p_ = turned ? shape.centre.y : shape.centre.x;
        const double largeQ = turned ? shape.large.x : shape.large.y;
        const double largeP = turned ? shape.large.y : shape.large.x;
        const double smallQ = turned ? shape.small.x : shape.small.y;
        const double smallP = turned ? shape.small.y : shape.small.x;
        halfQ_ = std::hypot(largeQ, smallQ);
        shear_ = largeP / halfQ_ * (largeQ / halfQ_) + smallP / halfQ_ * (smallQ / halfQ_);
        halfP_ = std::abs(largeP * (smallQ / halfQ_) - smallP * (largeQ / halfQ_));
        const double size = 2 * std::abs(halfQ_ / along_.step);
        cuts_ = std::clamp(cellsWellCut / size, fewestCuts, mostCuts);
    }

    void add(double hole)
    {
        const double count =
            std::max(fewestParts, std::ceil(2 * std::abs(halfQ_ / along_.step) * cuts_));
        forParts(along_, q_, halfQ_, count, [&](double from, double to) {
            if (isStopped(stop_))
                return;
            addSlice(from, to, 1, flux_);
            const double size = std::abs(hole);
            if (size > 0)
                addSlice(std::clamp(from / size, -1.0, 1.0), std::clamp(to / size, -1.0, 1.0), size,
                         -flux_ * hole * hole);
        });
    }

private:
    /// Calls use(from, to) for those of `count` equal parts of -1 to 1 that lie on the map.
    template <typename Use>
    static void forParts(const Axis& axis, double centre, double half, double count, const Use& use)
    {
        double first = axis.fraction(-1, centre, half);
        double last = axis.fraction(axis.cells, centre, half);
        if (first > last)
            std::swap(first, last);
        const double begin = std::floor((first + 1) / 2 * count);
        const double parts = std::ceil((last + 1) / 2 * count) - begin;
        for (int i = 0; i < truncated(parts); ++i)
            use(std::min(2 * (begin + i) / count - 1, 1.0),
                std::min(2 * (begin + i + 1) / count - 1, 1.0));
    }

    /// The slice between two fractions of the ellipse `size` times as large.
    void addSlice(double from, double to, double size, double flux)
    {
        const double share = sliceShare(profile_, to) - sliceShare(profile_, from);
        if (share <= 0)
            return;
        const double middle = (from + to) / 2;
        const double q = middle * size * halfQ_;
        const double half = size * halfP_ * std::sqrt(1 - middle * middle);
        const double p = p_ + shear_ * q;
        if (!(std::abs(half / across_.step) > 1 / (mostCuts * mostCuts))) {
            put(p, q_ + q, flux * share);
            return;
        }
        const double count =
            std::max(fewestCuts, std::ceil(2 * std::abs(half / across_.step) * cuts_));
        forParts(across_, p, half, count, [&](double left, double right) {
            const double part = partShare(profile_, right) - partShare(profile_, left);
            put(p + (left + right) / 2 * half, q_ + q, flux * share * part);
        });
    }

    void put(double p, double q, double flux)
    {
        turned_ ? sink_.add(q, p, flux) : sink_.add(p, q, flux);
    }

    CellSink& sink_;
    const StopFlag* stop_;
    Profile profile_;
    bool turned_;
    double flux_;
    Axis along_{}, across_{};
    double q_, p_;
    double halfQ_, halfP_;
    double shear_;
    double cuts_;
};

}  // namespace

void addEllipse(AMatrix<float>& map, const MapGrid& grid, const ComponentShape& shape,
                Profile profile, double hole)
{
    const double cellsX = std::hypot(shape.large.x, shape.small.x) / std::abs(grid.dx);
    const double cellsY = std::hypot(shape.large.y, shape.small.y) / std::abs(grid.dy);
    if (!(std::max(cellsX, cellsY) > 0)) {
        ComponentShape point = shape;
        point.flux *= 1 - hole * hole;
        addPoint(map, grid, point);
        return;
    }
    const bool turned = cellsX > cellsY;
    CellSink sink(map, grid, turned ? grid.rows : windowRows, turned ? windowRows : grid.columns);
    EllipseSlices(sink, grid, shape, profile, turned).add(hole);
}

}  // namespace pavane
