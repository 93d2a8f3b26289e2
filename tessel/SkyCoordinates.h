#pragma once

#include "tessel/api.h"
#include "tessel/map_header.h"
#include "tessel/sky_frame.h"

#include <memory>
#include <string>

namespace pavane
{

/// A map's cells and the sky near one point, as a linear relation. Sky offsets lie in the plane
/// that touches the sky at the point, in degrees.
struct LocalSky {
    double ra = 0;   ///< degrees, of the point; the longitude in frames that have one
    double dec = 0;  ///< degrees, of the point; the latitude
    /// (east, north) = toSky * (columns, rows), all of them offsets from the point.
    double toSky[2][2] = {{-1, 0}, {0, 1}};
    double columnScale = 1;       ///< degrees along a step of one column
    double rowScale = 1;          ///< degrees along a step of one row
    double rowPositionAngle = 0;  ///< direction of growing rows, radians from north through east
    int handedness = 1;           ///< 1 when east lies left of north, as on the sky; else -1
};

/// Where the cells of a map lie on the sky. Cells (MP) count from 0 and may have fractions: whole
/// numbers are pixel centres, cell (row r, column c) is FITS pixel (c + 1, r + 1). Positions are
/// right ascension and declination, or longitude and latitude, in degrees, in the map's own frame
/// or in one that is named. Conversions follow the FITS papers on world coordinates (Calabretta and
/// Greisen 2002), done by WCSLIB, and those between frames are `convertSky`'s.
class PAVANE_API SkyCoordinates
{
public:
    using Frame = SkyFrame::System;

    SkyCoordinates();
    SkyCoordinates(const SkyCoordinates&) = delete;
    SkyCoordinates& operator=(const SkyCoordinates&) = delete;
    ~SkyCoordinates();

    /// Takes the place of a map from its header. Non-zero on success; else 0, nothing is set, and
    /// `error` says in one line why: no celestial axes, no reference position, a frame that cannot
    /// be converted, an unknown projection or numbers that place nothing. The frame is what the
    /// axes, RADESYS (RADECSYS) and EQUINOX (EPOCH) say: without RADESYS an equinox before 1984
    /// means FK4, any other FK5, none ICRS; without an equinox FK4 is at 1950, all others at 2000.
    int init(const MapHeader& header, std::string& error);
    int isSet() const { return wcs_ != nullptr; }
    Frame frame() const { return frame_.system; }
    const SkyFrame& skyFrame() const { return frame_; }
    /// The position of the reference pixel (CRVAL), degrees in the map's frame.
    double referenceLongitude() const { return reference_[0]; }
    double referenceLatitude() const { return reference_[1]; }

    /// The plane of the projection: (x, y) = toPlane * (column - at reference pixel, row - the
    /// same), in degrees from the reference position, x towards growing longitude, y towards
    /// growing latitude. 0 when nothing is set.
    int plane(double (&toPlane)[2][2], double& column, double& row) const;

    /// Position of a place on the map, right ascension 0 to below 360. 0 when it lies beyond the
    /// projected sky or nothing is set; the results are left alone then.
    int toSky(double column, double row, double& ra, double& dec) const;
    /// The place of a position. 0 when the projection does not show it.
    int toPixel(double ra, double dec, double& column, double& row) const;
    /// Columns and rows from a position to the same one a turn on, of a cylindrical map (CYP, CEA,
    /// CAR, MER) that reaches beyond 180 degrees of its reference, and of cubes (TSC, CSC, QSC):
    /// `toPixel` gives the place that is nearest to the middle of the map, `toSky` knows all. 0 for
    /// every other map.
    int turn(double& columns, double& rows) const;
    /// The linear relation near a place, by central differences. 0 as in `toSky`.
    int localSky(double column, double row, LocalSky& local) const;

    // The same for positions in another frame.
    int toSky(double column, double row, const SkyFrame& in, double& longitude,
              double& latitude) const;
    int toPixel(double longitude, double latitude, const SkyFrame& in, double& column,
                double& row) const;
    int localSky(double column, double row, const SkyFrame& in, LocalSky& local) const;

private:
    struct Wcs;
    std::unique_ptr<Wcs> wcs_;
    SkyFrame frame_;
    double reference_[2] = {};
    double turn_[2] = {};        ///< cells; 0 for none
    double middle_[2] = {};      ///< of a map with a turn
    double differenceStep_ = 1;  ///< cells, for `localSky`
};

}  // namespace pavane
