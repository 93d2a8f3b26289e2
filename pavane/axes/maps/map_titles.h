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

/// The header line: object, frequency, date, peak and noise, as far as they are known.
PAVANE_API CString mapHeaderLine(const MapHeader& header, const MapRange& range,
                                 const MapNoise& noise);

}  // namespace pavane
