#pragma once

#include "tessel/CellMapping.h"
#include "tessel/map_header.h"

namespace pavane
{

/// The header of a map that lies `moved` farther east and north, in the frame `in`: its reference
/// position goes along a great circle, everything else stays. Of a shift that is small beside the
/// sky. 0 for a map that `sky`, its place, does not know, or a frame that it cannot be seen in.
int moveMap(const SkyCoordinates& sky, const SkyFrame& in, SkyShift moved, MapHeader& header);

/// How far the reference position of `moved` lies from that of `own`, of the same frame, as seen in
/// the frame `in`; none where one of them is not set.
SkyShift shiftOf(const SkyCoordinates& own, const SkyCoordinates& moved, const SkyFrame& in);

}  // namespace pavane
