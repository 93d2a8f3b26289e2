#pragma once

#include "pavane/axes/ranges/TMinMax.h"
#include "tessel/SkyCoordinates.h"

#include <string>
#include <vector>

namespace pavane
{

class AAreaArray;
class AFile;
class ARPTrackerArray;

/// The map that areas lie on.
struct AreaPlace {
    TMinMax range;  ///< values at the centres of its first and last cells (RP)
    int rows = 0;
    int columns = 0;
    const SkyCoordinates* sky = nullptr;  ///< null, or not set, when the map is not on the sky
    int skyRegions = 0;                   ///< region files are written in positions on the sky
};

/// What a file could not give or cannot take, line by line.
struct AreaNotes {
    int promised = 0;  ///< areas in the file
    int read = 0;      ///< of these
    std::vector<std::string> lines;
    /// Of the lines the first about something that is missing; empty when nothing is, and the
    /// others tell only what is taken in another way.
    std::string loss;

    /// "3 of 5 areas can be used: line 2: annulus is not a shape of areas"
    std::string lossText() const;
};

/// Reads an area file of any kind into an empty collection. What is in the file decides, not its
/// name. Non-zero when it is an area file, even if not all of it could be read; else 0 and one line
/// in `error` that names the file. Without an area and without a loss the file says itself that it
/// holds none. A polygon that is open can only be the last area (ReopenLast).
int openAreas(const std::string& file, const AreaPlace& place, ARPTrackerArray& areas,
              AreaNotes& notes, std::string& error);

/// The same for polygons of whole cells, kept as such; only for a file of that kind.
int openCellAreas(const std::string& file, AAreaArray& areas, AreaNotes& notes, std::string& error);

/// Writes the collection's own form; 0 when not all of it was written.
int storeAreas(const ARPTrackerArray& areas, AFile& file);

/// The areas as they would be if a drag that runs were cancelled, and the polygon that is being
/// drawn as one that is open: a copy that loses no work.
int storeAllAreas(const ARPTrackerArray& areas, AFile& file);

/// What would be lost by saving the areas under this name.
AreaNotes lossesOfSaving(const std::string& file, const AreaPlace& place,
                         const ARPTrackerArray& areas);

/// Saves in the form of the name's ending: .cma, .reg, .crtf, else the collection's own. Whole or
/// not at all; non-zero on success, else 0 and one line in `error` that names the file.
int saveAreas(const std::string& file, const AreaPlace& place, const ARPTrackerArray& areas,
              std::string& error);

}  // namespace pavane
