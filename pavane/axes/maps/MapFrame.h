#pragma once

#include "pavane/axes/maps/beam_mark.h"
#include "pavane/axes/ranges/TMinMax.h"
#include "platform/types.h"
#include "tessel/map_header.h"

namespace pavane
{

class A2DAxis;
class ABMapGraph;

/// A place in the plane of a map.
struct MapPlace {
    double x = 0, y = 0;
};

/// Where a map's cells lie: what its axes count and the values at the centres of its first and last
/// column and row. On the sky these are offsets from the reference pixel, east and north positive,
/// so a usual map has xFirst above xLast; they count arcseconds, or minutes or degrees of arc where
/// a wide field would need thousands.
struct PAVANE_API MapFrame {
    int onSky = 0;
    int rotated = 0;        ///< the sky is turned in the map: its axes are offsets along the pixels
    double arcseconds = 1;  ///< in a unit of the axes on the sky
    double turn[2][2] = {{1, 0}, {0, 1}};  ///< from east and north to offsets along the pixels
    double xFirst = 0, xLast = 0;
    double yFirst = 0, yLast = 0;
    double xStep = 1, yStep = 1;  ///< from one cell to the next, signed
    double sky[2][2] = {};        ///< arcseconds east and north of a step of a column, of a row
    double reference[2] = {};     ///< reference pixel: column and row, from 0
    int xDirection = 1;           ///< scale code of the x axis: right ascension grows to the left
    CString xTitle, yTitle;       ///< with "%s" where the prefix goes
    CString valueTitle;           ///< of colour bars: the unit, written in the same way
    MapBeam beam;  ///< in units of the axes, turned as the sky is in the map; unset without one
    int unlikeAxes =
        0;  ///< they count different things, so that no shape of cells is the right one

    /// The place, on the axes, that lies so many arcseconds east and north of the reference pixel.
    MapPlace onAxes(double east, double north) const;
    /// Arcseconds east (x) and north (y), or along longitude and latitude, from the reference pixel
    /// to a cell. Only on the sky.
    MapPlace offsetOf(double column, double row) const;
    /// The centres of the first and last cells, as graphs of maps want them; z unset.
    TMinMax centres() const;
};

/// The frame of a map of rows x columns cells. Steps that are 0 or not finite count as one pixel;
/// a map that is turned, but not on the sky, has its pixels as axes.
PAVANE_API MapFrame frameOf(const MapHeader& header, int rows, int columns);

/// Area of the beam in cells, 0 when the beam is not known.
PAVANE_API double beamCells(const MapHeader& header, const MapFrame& frame);

/// Gives the titles to an axis, and titles, beam and header line to the graph of the map in it.
PAVANE_API void describeMap(A2DAxis& axis, ABMapGraph& graph, const MapFrame& frame,
                            const CString& headerLine);

}  // namespace pavane
