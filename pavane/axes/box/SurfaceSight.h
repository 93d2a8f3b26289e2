#pragma once

#include "pavane/axes/box/SurfaceGrid.h"

namespace pavane
{

/// A place that is seen in a box.
struct SurfaceHit {
    BoxPoint at;
    int second = 0;           ///< 1: on the second surface
    int column = 0, row = 0;  ///< of the nearest centre in its grid
    std::uint32_t cell = 0;   ///< of the map, see SurfaceGrid::cell
    int fromBelow = 0;        ///< its underside is seen
};

/// Lines of sight through the surfaces of a box, exact: the surface is met where it is, whatever
/// the pixels are. Blocks of cells that a line passes wholly above or below are passed over.
class PAVANE_API SurfaceSight
{
public:
    /// The grids are not copied and have to outlive this.
    SurfaceSight(const BoxView& view, const SurfaceScene& scene);

    /// Whether a surface, a skirt or a floor that hides stands between a point and the eye. A point
    /// that lies on one of them is not hidden by that very place.
    int isHidden(const BoxPoint& point) const;
    /// The point of a surface seen at a place of the picture; 0 when none is, or when a skirt or a
    /// floor hides it.
    int pick(const CPointF& at, SurfaceHit& hit) const;

private:
    /// A line of sight and the part of it that counts, in steps.
    struct Ray {
        BoxPoint from, step;
        double first, last;
    };
    enum class Kind { nothing, surface, skirt, floor };
    struct Meeting {
        Kind kind = Kind::nothing;
        double at = 0;  ///< in steps
        int fromBelow = 0;
    };
    /// Steps of lines of sight in columns, rows and heights of a surface, and what these are
    /// divided into; 0 for what they do not cross.
    struct Steps {
        double column = 0, row = 0, s = 0;
        double perColumn = 0, perRow = 0, perSlant = 0, perS = 0;
        double ahead = 0;  ///< so far beyond a border one looks which square comes next
    };
    class Crossing;
    static Steps stepsOf(const SceneSurface& surface, const BoxPoint& step);
    static Meeting meet(const SceneSurface& surface, const Ray& ray, const Steps& steps);
    Ray rayThrough(const CPointF& at) const;

    BoxView view_;
    SurfaceScene scene_;
    BoxPoint sight_;
    Steps toEye_[2];  ///< of the lines that most is asked of
};

}  // namespace pavane
