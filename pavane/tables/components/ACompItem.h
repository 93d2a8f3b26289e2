#pragma once

#include "pavane/axes/ranges/TMinMax.h"
#include "platform/api.h"
#include "tessel/AFile.h"
#include "tessel/AMatrix.h"

#include <complex>
#include <cstdint>

namespace pavane
{

/// Kinds of brightness components; any other number counts as a point.
enum ComponentKind : std::int32_t {
    pointComponent = 1,
    gaussianComponent = 2,
    diskComponent = 3,
    thinRingComponent = 4,
    sphereComponent = 5,
    stripComponent = 6,
    wideRingComponent = 7
};

/// One brightness component of a source model. It is centred at `Distance` arcseconds from the
/// centre of the map in the direction `Angle` (degrees, north through east). Its large axis has the
/// position angle `Inclination`, the small one is the ratio times as long; of a Gaussian these are
/// widths at half maximum, of all other kinds full sizes.
/// Deliberate: the strip, a line without width, lies at right angles to that, along (cos, -sin) of
/// the inclination in (east, north); stored models are read so.
class PAVANE_API ACompItem
{
public:
    /// Characters of a text line that count, and bytes that any line of `Store` fits into.
    static constexpr int lineSize = 128;

    ACompItem() = default;
    explicit ACompItem(const char* line) { (void)Load(line); }

    /// The kind, one of ComponentKind.
    std::int32_t type = pointComponent;

    /// In the flux units of the data; the visibility at (0, 0) of every kind but the wide ring.
    double& PeakFlux() { return peakFlux_; }
    double PeakFlux() const { return peakFlux_; }
    /// Arcseconds.
    double& LargeAxis() { return largeAxis_; }
    double LargeAxis() const { return largeAxis_; }
    /// Small axis over large axis.
    double& AxisRatio() { return axisRatio_; }
    double AxisRatio() const { return axisRatio_; }
    /// Degrees.
    double& Inclination() { return inclination_; }
    double Inclination() const { return inclination_; }
    /// Degrees.
    double& Angle() { return angle_; }
    double Angle() const { return angle_; }
    /// Arcseconds.
    double& Distance() { return distance_; }
    double Distance() const { return distance_; }
    /// Thickness of the wide ring as a fraction of its radius.
    double& Width() { return width_; }
    double Width() const { return width_; }

    /// Reads the eight fields from numbers separated by blanks, in the order type, peak flux, large
    /// axis, axis ratio, inclination, angle, distance, width. Reading ends at the first text that
    /// is no number, or after 128 characters; the fields not reached keep their values. Returns how
    /// many were read.
    int Load(const char* line);
    /// Writes them back with six significant digits and ends the text with a zero byte. `buffer`
    /// has lineSize bytes. Returns the length of the text.
    int Store(char* buffer) const;
    /// The binary record of 60 bytes: type (int32), then the seven doubles in the order above.
    /// Non-zero on success; a failed Load changes nothing.
    int Load(AFile& file);
    int Store(AFile& file) const;

    /// Complex visibility at (u, v), in wavelengths. Where the formula of the kind divides by zero
    /// (no baseline, no axis, no width) its limit is returned.
    std::complex<double> VfromUV(double u, double v) const;

    /// Adds the flux of the component to the cells of `map`, in flux units per cell. The centres of
    /// the first and last column and row lie at the ends of `range`: x is the offset to the east
    /// and y to the north in arcseconds, and either may fall with the index. What lies on the map,
    /// cells in full, adds up to the visibility at (0, 0); a component much smaller than a cell is
    /// shared by the four cells around it so that its position is kept. Components with fields that
    /// are not finite, and ranges that are empty or unset, add nothing.
    void ToMap(AMatrix<float>& map, const TMinMax& range) const;

private:
    std::int32_t fill_ = 0;  // keeps stored memory free of stray bytes
    double peakFlux_ = 1.0;
    double largeAxis_ = 0;
    double axisRatio_ = 1.0;
    double inclination_ = 0;
    double angle_ = 0;
    double distance_ = 0;
    double width_ = 0.5;
};

static_assert(sizeof(ACompItem) == 64);

}  // namespace pavane
