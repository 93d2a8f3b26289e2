#pragma once

#include "pavane/measures/maps/moments.h"
#include "pavane/measures/profiles/MapProfile.h"
#include "platform/api.h"
#include "tessel/map_header.h"

#include <memory>
#include <string>
#include <vector>

namespace pavane
{

/// A map of a cube along a line and its axis of velocities: a row for each plane, a cell for each
/// half cell of the line. Rows are found one after the other, so that a cube of any size needs no
/// more memory than the rows of a plane that the line crosses.
class PAVANE_API PositionVelocity
{
public:
    PositionVelocity();
    PositionVelocity(const PositionVelocity&) = delete;
    PositionVelocity& operator=(const PositionVelocity&) = delete;
    ~PositionVelocity();

    /// Takes the planes and the line (cells from 0) of a cube with this header, of any plane. The
    /// values are those of MapProfile. Where both ends and all between are on the sky the samples
    /// lie at equal distances on it, about half a cell, so that the axis of the made map holds
    /// everywhere. Non-zero on success, else `error` is a line: lines that MapProfile refuses,
    /// shorter than half a cell or beyond the map, no planes, no memory.
    int begin(const CubePart& part, const MapHeader& header, const ProfileLine& line,
              std::string& error);
    int rows() const;     ///< the planes of the cube
    int columns() const;  ///< the samples along the line
    /// Axis 1 is OFFSET from the line's begin in arcsec, arcmin or deg, in pixel where there are no
    /// positions; axis 2 the velocity in km/s (VRAD, VOPT, VELO, or VOPT-F2W where equal steps are
    /// of frequency), FREQ in Hz, or PLANE, the number from 0.
    const MapHeader& header() const;
    /// Lines that tell how it came about, without the name of the cube.
    std::vector<std::string> history() const;
    /// What a user should know of the axes; "" for nothing.
    const std::string& note() const;
    /// Finds a row of `columns` values, NaN for blanks. 0 with `error` when its plane cannot be
    /// read.
    int read(int row, float* values, std::string& error);

private:
    struct Work;
    std::unique_ptr<Work> work_;
};

}  // namespace pavane
