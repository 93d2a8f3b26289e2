#pragma once

#include "pavane/axes/box/SurfaceSight.h"

#include <span>
#include <vector>

namespace pavane
{

/// Lines of a picture: line i has the points starts[i] to starts[i + 1] - 1 (the last one all that
/// remain), two or more each.
struct PicturePieces {
    std::vector<CPointF> points;
    std::vector<std::size_t> starts;

    std::size_t count() const { return starts.size(); }
    std::span<const CPointF> piece(std::size_t i) const
    {
        const std::size_t end = i + 1 < starts.size() ? starts[i + 1] : points.size();
        return {points.data() + starts[i], end - starts[i]};
    }
};

/// What is seen of lines in a box, as lines of the picture: grid lines of the walls, stalks,
/// contours, outlines of areas, the lattice. Where a line goes out of sight is found to a fraction
/// of a pixel; what is hidden for less than about a pixel may count as seen.
class PAVANE_API HiddenLines
{
public:
    /// The grids are not copied and have to outlive this. `step`: device pixels between two looks.
    HiddenLines(const BoxView& view, const SurfaceScene& scene, double step = 1);

    /// Appends the visible pieces of a line through `points`; a point that is not finite is a gap.
    /// What lies farther outside the rectangle of the view than its own size is left out.
    void add(std::span<const BoxPoint> points, PicturePieces& pieces) const;
    void add(const BoxPoint& from, const BoxPoint& to, PicturePieces& pieces) const;
    const SurfaceSight& sight() const { return sight_; }

private:
    class Tracer;

    BoxView view_;
    SurfaceSight sight_;
    double step_;
};

/// The line through `points` (columns and rows of the grid, with fractions) laid over a surface:
/// cut where it crosses the triangles, gaps (NaN) over holes and outside.
PAVANE_API std::vector<BoxPoint> drapeLine(const SurfaceGrid& grid, std::span<const CPointF> points,
                                           int closed = 0);
/// The same line on a level plane, as on the floor.
PAVANE_API std::vector<BoxPoint> flatLine(const SurfaceGrid& grid, std::span<const CPointF> points,
                                          double s, int closed = 0);

/// Lines of a lattice over a surface.
struct SurfaceLattice {
    std::vector<std::vector<BoxPoint>> alongX;  ///< a line for a row or for several
    std::vector<std::vector<BoxPoint>> alongY;  ///< a line for a column or for several
};

/// The lattice of a surface for a view. Neighbouring lines are at least `spacing` device pixels
/// apart on the floor, the outermost ones are the borders. A line that stands for several rows or
/// columns takes of its own and of the others that stand out between their neighbours the height
/// farthest from the floor, so that no peak is lost; on slopes it lies on the surface. Without
/// `peaks` it lies on the surface everywhere, for one that is seen itself.
PAVANE_API SurfaceLattice latticeOf(const SurfaceGrid& grid, const BoxView& view,
                                    double spacing = 4, int peaks = 1);

}  // namespace pavane
