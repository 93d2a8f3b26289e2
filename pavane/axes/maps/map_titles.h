#pragma once

#include "pavane/axes/maps/cells/map_statistics.h"
#include "platform/types.h"
#include "tessel/map_header.h"

namespace pavane
{

/// What a map, or a page with it, is called: the object, or "map".
PAVANE_API CString mapTitle(const MapHeader& header);

/// Title of the map's values: their unit, with the marker of the prefix.
PAVANE_API CString mapValueTitle(const MapHeader& header);

/// The header line: object, plane of a cube, frequency, date, peak, noise, `note` and the position
/// of the reference pixel, as far as they are known.
PAVANE_API CString mapHeaderLine(const MapHeader& header, const MapRange& range,
                                 const MapNoise& noise, const CString& note = {});

/// Which plane of a cube a map is, by the axes behind the first two: "1.42041 GHz", "-12.5 km/s",
/// "Stokes Q"; "plane 3" where they do not tell, and nothing for an image of one plane.
PAVANE_API CString mapPlaneText(const MapHeader& header);

}  // namespace pavane
