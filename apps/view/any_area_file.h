#pragma once

#include "pavane/trackers/areas/area_file.h"

#include <string>
#include <vector>

namespace pavane
{

class AAreaArray;
class AFile;
class ARPTrackerArray;

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

/// The names and colours of the areas, in their order.
std::vector<AreaLabel> labelsOf(const ARPTrackerArray& areas);

/// What would be lost by saving the areas under this name.
AreaNotes lossesOfSaving(const std::string& file, const AreaPlace& place,
                         const ARPTrackerArray& areas);

/// Saves in the form of the name's ending: .cma, .reg, .crtf, .win, else the collection's own.
/// Whole or not at all; non-zero on success, else 0 and one line in `error` that names the file.
int saveAreas(const std::string& file, const AreaPlace& place, const ARPTrackerArray& areas,
              std::string& error);

}  // namespace pavane
