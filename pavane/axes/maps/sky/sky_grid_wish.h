#pragma once

#include "pavane/axes/maps/sky/ASkyGrid.h"

namespace pavane
{

class MapPicture;

/// What a user asks of the grid of a map.
struct SkyGridWish {
    SkyGridShown shown = SkyGridShown::none;
    int hasFrame = 0;  ///< else that of the map
    SkyFrame frame;
    SkyLabels labels = SkyLabels::usual;
};

/// Reads "lines", "ticks" or "none", then in any order, behind commas, a frame (see readSkyFrame)
/// and "sexagesimal", "degrees" or "offsets". 0, with a line in `error`, for anything else.
PAVANE_API int readSkyGridWish(const CString& text, SkyGridWish& wish, CString& error);
/// The text that is read as this.
PAVANE_API CString skyGridWishText(const SkyGridWish& wish);

/// Makes a grid, which shows nothing yet, in the axis of the picture, which owns it. `sky` has to
/// outlive the picture.
PAVANE_API ASkyGrid* addSkyGrid(MapPicture& picture, const SkyCoordinates& sky);
PAVANE_API void applySkyGrid(ASkyGrid& grid, const SkyGridWish& wish, const SkyCoordinates& sky);

}  // namespace pavane
