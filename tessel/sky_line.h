#pragma once

#include "tessel/sky_grid.h"

#include <functional>
#include <vector>

namespace pavane
{

/// How far the sides of a line are, in steps, which a cut of the projection keeps apart; and how
/// far apart they then lie at least, in parts of the rectangle.
inline constexpr double cutSide = 1e-6;
inline constexpr double farSides = 1e-3;

/// A curve of cells over a parameter as polylines inside a rectangle: halved until it bends by less
/// than the tolerance, ended where it has no point or jumps. Private to tessel.
class SkyLineTracer
{
public:
    /// `place` gives the cell at a parameter; 0 where there is none.
    using Place = std::function<int(double, CellPoint&)>;
    SkyLineTracer(const CellRectangle& rectangle, double tolerance, Place place);
    void trace(double from, double to, std::vector<std::vector<CellPoint>>& pieces);

private:
    struct Point {
        double t = 0;
        int isThere = 0;
        CellPoint cell;
    };
    Point at(double t);
    void between(const Point& a, const Point& b, int depth);
    int comesNear(const Point& a, const Point& b) const;
    void add(CellPoint a, CellPoint b);

    CellRectangle rectangle_;
    double tolerance_;
    double size_;
    Place place_;
    int places_ = 0;  ///< computed so far
    std::vector<std::vector<CellPoint>>* pieces_ = nullptr;
};

/// The border between the cells for which `isInside` holds and the others in a rectangle, as
/// polylines.
std::vector<std::vector<CellPoint>>
traceBorder(const CellRectangle& rectangle, const std::function<int(const CellPoint&)>& isInside);

}  // namespace pavane
