#pragma once

#include "pavane/trackers/regions/region_values.h"
#include "pavane/trackers/regions/RegionNotes.h"
#include "pavane/trackers/shapes/AreaShape.h"
#include "platform/api.h"
#include "tessel/SkyCoordinates.h"

#include <string>
#include <vector>

namespace pavane
{

/// What positions in a region file count in.
enum class RegionSystem {
    image,  ///< pixels of the map
    sky     ///< positions on the sky, in the map's frame where the format has a name for it
};

/// Sizes and angles of shapes on the sky hold in the plane that touches the sky at the shape's
/// centre, angles run from west towards north; polygons are converted vertex by vertex.

/// Turned rectangles say which way round their outline runs by their angle: above this one, which
/// other programs do not write, it is reversed. Radians; writers add two turns.
inline constexpr double reversedAngle = 3 * 3.141592653589793;
/// The angle as region files have it, in degrees: -180 to 180, or two turns more.
double writtenDegrees(const AreaShape& shape, double angle);

/// Turns a shape whose centre is in cells and whose sizes and angle are on the sky (degrees,
/// radians from the frame's west) into cells. A rectangle whose corners would be off by more than
/// 0.01 cells becomes a polygon. 0 when there is no sky at its centre.
int shapeFromSky(const SkyCoordinates& sky, const SkyFrame& frame, AreaShape& shape);

/// The shape with its centre or vertices in (longitude, latitude) degrees of a frame, its sizes in
/// degrees and its angle from west towards north. A rectangle that is none on the sky, by more than
/// 3e-7 cells at its corners, becomes a polygon. 0 when a point of it has no position.
int shapeToSky(const SkyCoordinates& sky, const SkyFrame& frame, const AreaShape& cells,
               AreaShape& onSky);

/// Collects the shapes of a region file: places each on the map and notes what is not taken.
class RegionSink
{
public:
    /// `sky` may be null or not set: positions on the sky are then left out.
    RegionSink(const SkyCoordinates* sky, std::vector<AreaShape>& shapes, RegionNotes& notes)
        : sky_(sky && sky->isSet() ? sky : nullptr), shapes_(shapes), notes_(notes)
    {
        setFrame(nullptr);
    }

    void setLine(long long line) { line_ = line; }
    /// Whether the shapes that come are excluded ones, which become never-clean areas.
    void setExcluded(int on) { isExcluded_ = on; }
    /// What the shapes that come are called and their colour.
    void setLabel(const AreaLabel& label) { label_ = label; }
    void leaveOut(const std::string& why);
    void damaged(const std::string& why);
    void changed(const std::string& how);
    RegionNotes& notes() { return notes_; }
    const SkyCoordinates* sky() const { return sky_; }

    /// A point in cells from two values of one unit. 0, and noted, when it cannot be placed.
    int point(const RegionValue& x, const RegionValue& y, APoint<double>& cell);
    /// A rectangle, turned rectangle or ellipse with its centre in cells, sizes of one unit and the
    /// angle in radians, counter-clockwise from +x or from west. A circle keeps it in cells. What
    /// does not fit is noted.
    void sized(AreaShape::Kind kind, APoint<double> centre, const RegionValue& width,
               const RegionValue& height, double angle, int isCircle = 0);
    /// A polygon in cells.
    void polygon(std::vector<APoint<double>> vertices);
    /// A box given by the corners (x0, y0) and (x1, y1), its sides along the axes of their unit.
    void cornerBox(const RegionValue (&corners)[4]);
    /// What positions and angles on the sky are in from here on; at first, and with null, the frame
    /// of the map.
    void setFrame(const SkyFrame* frame);

private:
    /// Puts what is half a cell but for the digits of the file on the half. 1.
    int takeHalves(const RegionValue& x, const RegionValue& y, APoint<double>& cell) const;
    void take(const AreaShape& shape);
    const SkyCoordinates* sky_;
    std::vector<AreaShape>& shapes_;
    RegionNotes& notes_;
    SkyFrame frame_;
    long long line_ = 0;
    int isExcluded_ = 0;
    AreaLabel label_;
};

}  // namespace pavane
