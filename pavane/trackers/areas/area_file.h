#pragma once

#include "pavane/axes/ranges/AMnMxMCTransform.h"
#include "pavane/trackers/areas/area_mask.h"
#include "pavane/trackers/masks/LoadReport.h"
#include "pavane/trackers/regions/region_place.h"
#include "pavane/trackers/regions/RegionNotes.h"
#include "platform/api.h"
#include "tessel/SkyCoordinates.h"

#include <string>
#include <vector>

namespace pavane
{

/// The map that areas lie on.
struct PAVANE_API AreaPlace {
    TMinMax range;  ///< values at the centres of its first and last cells (RP)
    int rows = 0;
    int columns = 0;
    const SkyCoordinates* sky = nullptr;  ///< null, or not set, when the map is not on the sky
    int skyRegions = 0;                   ///< region files are written in positions on the sky

    AMnMxMCTransform transform() const { return {range, rows, columns}; }
    RegionSystem system() const
    {
        return skyRegions && sky && sky->isSet() ? RegionSystem::sky : RegionSystem::image;
    }
};

/// What a file could not give or cannot take, line by line.
struct PAVANE_API AreaNotes {
    int promised = 0;  ///< areas in the file
    int read = 0;      ///< of these
    std::vector<std::string> lines;
    /// Of the lines the first about something that is missing; empty when nothing is, and the
    /// others tell only what is taken in another way.
    std::string loss;

    /// "3 of 5 areas can be used: line 2: annulus is not a shape of areas"
    std::string lossText() const;
};

/// The notes of readers and writers as lines, with how many more there were.
PAVANE_API void takeNotes(const RegionNotes& from, AreaNotes& to);
PAVANE_API void takeReport(const LoadReport& from, AreaNotes& to);

/// Reads a file of areas of any kind as shapes in cells; what is in the file decides, not its name.
/// Files of the library's own kind hold data values and are read only with the rows and columns of
/// their `place`. Non-zero when it is an area file, even if not all of it could be read; else 0, no
/// areas, and one line in `error` that names the file.
PAVANE_API int readAreaFile(const std::string& file, const AreaPlace& place, AreaList& areas,
                            AreaNotes& notes, std::string& error);

/// Writes areas in the form of the name's ending: .cma, .reg, .crtf, .win, .areas, whole or not at
/// all.
/// `notes` tells what the file cannot hold; with a loss nothing is written unless `partial`. 0 and
/// one line in `error` that names the file, for another ending too.
PAVANE_API int writeAreaFile(const std::string& file, const AreaPlace& place, const AreaList& areas,
                             int partial, AreaNotes& notes, std::string& error);

}  // namespace pavane
