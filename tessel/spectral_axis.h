#pragma once

#include "tessel/api.h"
#include "tessel/map_header.h"

#include <vector>

namespace pavane
{

/// The axis of frequency or velocity of a cube.
class PAVANE_API SpectralAxis
{
public:
    /// What values are: velocities in km/s, or frequencies in Hz where no rest frequency is known.
    enum class Kind { none, hertz, velocity };

    SpectralAxis() = default;
    /// The first such axis of an image. Axes of frequency become velocities by the rest frequency
    /// (RESTFRQ or RESTFREQ), in the radio convention unless VELREF is 1 to 255, which means the
    /// optical one. VELO, VRAD, VOPT and ZOPT are linear as they stand; FELO (and VOPT-F2W) is an
    /// optical velocity whose steps are of frequency (Greisen and others 2006). Others are none.
    static SpectralAxis of(const MapHeader& header);

    Kind kind() const { return kind_; }
    const char* unit() const { return kind_ == Kind::velocity ? "km/s" : "Hz"; }
    /// Which axis of the image it is, from 0; -1 for none.
    int axis() const { return axis_; }
    /// "radio", "optical", or "" where that does not matter.
    const char* convention() const { return convention_; }
    /// Non-zero where values have equal steps.
    int isLinear() const { return form_ == Form::linear || form_ == Form::radio; }
    /// The value at a pixel, which counts from 0 and may have a fraction; not finite where there is
    /// none.
    double value(double pixel) const;
    /// How wide the pixel is there, 0 or above.
    double width(double pixel) const;

private:
    enum class Form { linear, radio, optical, felo };
    Kind kind_ = Kind::none;
    Form form_ = Form::linear;
    const char* convention_ = "";
    int axis_ = -1;
    double at_ = 0;                ///< reference pixel, from 0
    double start_ = 0, step_ = 1;  ///< at it: Hz of forms of frequency, else the unit of values
    double rest_ = 0;              ///< Hz
};

/// The pixel, from 0, of a plane along each axis of an image; 0 on the first two.
PAVANE_API std::vector<int> pixelsOfPlane(const MapHeader& header, int plane);

}  // namespace pavane
