#pragma once

#include "pavane/measures/profiles/MapProfile.h"
#include "platform/api.h"

#include <string>
#include <vector>

namespace pavane
{

/// The way of a profile's line over a map, by the distance in cells from its first corner.
class PAVANE_API LinePath
{
public:
    /// Cells from one sample to the next.
    static constexpr double step = 0.5;

    /// A place of the line, and the direction in which it goes on from there (of length 1).
    struct Place {
        MapPlace at;
        double alongX = 1, alongY = 0;
    };

    /// Takes a line. Non-zero on success, else `error` is a line: corners that are no places or too
    /// far, a width that is none, a line of no length. May throw std::bad_alloc.
    int init(const ProfileLine& line, std::string& error);
    /// In cells.
    double length() const { return length_; }
    /// The first corner behind a place of the line, both by their distance; the end behind the
    /// last.
    double nextCorner(double cells) const;
    /// The place that lies so far along the line, 0 to its length; at a corner still on the part
    /// before it.
    Place at(double cells) const;
    /// What the map has there: by bilinear interpolation, of a wide line what becomes of the values
    /// across it; NaN where one of them is blank or beyond the map.
    double value(const AMatrixAccess& cells, const Place& place) const;
    /// Rows beyond which no value is asked for. The line may leave the map.
    void rows(double& first, double& last) const;

private:
    struct Part {
        MapPlace from;
        double start = 0;  ///< cells, along the whole line
        double alongX = 1, alongY = 0;
    };
    std::vector<Part> parts_;
    ProfileLine line_;
    double length_ = 0;
};

}  // namespace pavane
