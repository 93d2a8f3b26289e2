#pragma once

#include <string>
#include <vector>

namespace pavane
{

/// One axis of an image as its file tells it. Pixels count from 1; an unset text is empty.
struct MapAxis {
    int length = 1;
    std::string ctype;  ///< CTYPEn, blanks cut
    std::string cunit;  ///< CUNITn; "deg" is meant when empty on a celestial axis
    double crval = 0;   ///< value at the reference pixel, in the axis unit
    double crpix = 0;   ///< reference pixel, from 1, may lie outside the image
    double cdelt = 1;   ///< step per pixel, in the axis unit; of the first two as `stepsOf` says
    double crota = 0;   ///< degrees
};

/// The coordinate header of a map. Numbers that are missing, not finite, or zero where nothing can
/// be zero (a step, the size of a beam) keep the values given here. The units of celestial axes are
/// turned into degrees.
struct MapHeader {
    std::vector<MapAxis> axes;  ///< in file order; axes[0] runs along a row, axes[1] along a column
    /// Rotation and scale of the first two axes, on the sky degrees per pixel, from CD, PC or
    /// CROTA. It decides what a step is (`stepsOf`): d(axis i) = cd[i][0] * dx + cd[i][1] * dy.
    double cd[2][2] = {{1, 0}, {0, 1}};
    int hasCelestialAxes = 0;  ///< axes 1 and 2 are RA/GLON-like and DEC/GLAT-like, in any order
    std::string bunit;
    std::string object;
    std::string dateObs;  ///< DATE-OBS as written
    std::string telescope;
    std::string stokes;    ///< "I", "Q", "RR" ..., empty when not known
    double frequency = 0;  ///< Hz, 0 when not known
    double equinox = 0;    ///< years, 0 when not known
    int hasBeam = 0;       ///< bmaj, bmin, bpa are known (header or the last of its history)
    double bmaj = 0;       ///< degrees, full width at half maximum
    double bmin = 0;       ///< degrees
    double bpa = 0;        ///< degrees, north through east
    int plane = 0;         ///< which plane was read, from 0 over all further axes
    int planes = 1;        ///< how many the image has
    /// Cards of 80 characters that carry coordinates, in file order, for a mask to repeat.
    std::vector<std::string> coordinateCards;
    int longitudeAxis = 0;  ///< which of the first two axes is the longitude: 0 or 1
};

}  // namespace pavane
