#pragma once

#include "tessel/api.h"
#include "tessel/map_header.h"

#include <memory>
#include <string>

namespace pavane
{

/// A map's cells and the sky near one point, as a linear relation. Sky offsets lie in the plane
/// that touches the sky at the point, in degrees.
struct LocalSky {
    double ra = 0;   ///< degrees, of the point
    double dec = 0;  ///< degrees, of the point
    /// (east, north) = toSky * (columns, rows), all of them offsets from the point.
    double toSky[2][2] = {{-1, 0}, {0, 1}};
    double columnScale = 1;       ///< degrees along a step of one column
    double rowScale = 1;          ///< degrees along a step of one row
    double rowPositionAngle = 0;  ///< direction of growing rows, radians from north through east
    int handedness = 1;           ///< 1 when east lies left of north, as on the sky; else -1
};

/// Where the cells of a map lie on the sky. Cells (MP) count from 0 and may have fractions: whole
/// numbers are pixel centres, cell (row r, column c) is FITS pixel (c + 1, r + 1). Positions are
/// right ascension and declination in degrees, in the map's own frame. Conversions follow the FITS
/// papers on world coordinates (Calabretta and Greisen 2002), done by WCSLIB.
class PAVANE_API SkyCoordinates
{
public:
    /// The frames that are told apart by name. Deliberate: positions are never converted between
    /// them. They differ by some 0.02 arcsec, less than the positions of headers that say J2000 and
    /// mean the radio frame; a conversion would move areas by many cells of a VLBI map.
    enum class Frame { fk5, icrs };

    SkyCoordinates();
    SkyCoordinates(const SkyCoordinates&) = delete;
    SkyCoordinates& operator=(const SkyCoordinates&) = delete;
    ~SkyCoordinates();

    /// Takes the place of a map from its header. Non-zero on success; else 0, nothing is set, and
    /// `error` says in one line why: no celestial axes, no reference position, a frame other than
    /// FK5 at 2000.0 and ICRS, an unknown projection or numbers that place nothing. Without RADESYS
    /// an EQUINOX (or EPOCH) before 1984 means FK4, any other FK5, none ICRS.
    int init(const MapHeader& header, std::string& error);
    int isSet() const { return wcs_ != nullptr; }
    Frame frame() const { return frame_; }

    /// Position of a place on the map, right ascension 0 to below 360. 0 when it lies beyond the
    /// projected sky or nothing is set; the results are left alone then.
    int toSky(double column, double row, double& ra, double& dec) const;
    /// The place of a position. 0 when the projection does not show it.
    int toPixel(double ra, double dec, double& column, double& row) const;
    /// The linear relation near a place, by central differences. 0 as in `toSky`.
    int localSky(double column, double row, LocalSky& local) const;

private:
    struct Wcs;
    std::unique_ptr<Wcs> wcs_;
    Frame frame_ = Frame::icrs;
    double differenceStep_ = 1;  ///< cells, for `localSky`
};

}  // namespace pavane
