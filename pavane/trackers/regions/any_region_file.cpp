#include "pavane/trackers/regions/any_region_file.h"

#include "pavane/trackers/regions/region_crtf.h"
#include "pavane/trackers/regions/region_ds9.h"
#include "pavane/trackers/regions/region_windows.h"

#include <algorithm>

namespace pavane
{

namespace
{

using Kind = RegionNotes::Kind;

/// Why a text without an area is none that means to be.
const char* emptyFault(AreaKind kind, const std::string& text)
{
    return text.empty()                  ? "the region file is empty"
           : hasRegionHeader(kind, text) ? "the region file holds no area, and may be cut or hold "
                                           "labels alone"
                                         : "the region file holds no area, and does not begin as "
                                           "one that means to";
}

}  // namespace

int readRegionFile(const std::string& file, AreaKind kind, const SkyCoordinates* sky,
                   std::vector<AreaShape>& shapes, RegionNotes& notes, int& promised,
                   std::string& error)
{
    shapes.clear();
    notes = RegionNotes();
    promised = 0;
    std::string text;
    if (!readRegionText(file, text, error))
        return 0;
    if (kind == AreaKind::crtf && !hasRegionHeader(kind, text)) {
        error = "not a CRTF region file, which begins with #CRTF";
        return 0;
    }
    const std::size_t cut = cutLineOf(kind, text);
    const std::string_view sure = std::string_view(text).substr(0, cut);
    kind == AreaKind::crtf      ? parseCrtfRegions(sure, sky, shapes, notes)
    : kind == AreaKind::windows ? parseWindowRegions(sure, sky, shapes, notes)
                                : parseDs9Regions(sure, sky, shapes, notes);
    if (cut != std::string::npos)
        notes.add(Kind::damaged, "line", 1 + std::count(sure.begin(), sure.end(), '\n'),
                  "the file may be cut here: the line has no end");
    const int taken = static_cast<int>(shapes.size());
    const int said = promisedRegions(text);
    const int missing = said - taken - notes.leftOut - notes.damaged;
    if (missing > 0)
        notes.add(Kind::damaged, "", 0,
                  "the file promises " + std::to_string(said) + " areas and ends before the last");
    const int losses = notes.leftOut + notes.damaged;
    if (shapes.empty() && notes.damaged && !notes.leftOut && !hasRegionHeader(kind, text)) {
        error = "not a region file: ";
        error += notes.firstLoss;
        return 0;
    }
    if (shapes.empty() && !losses && !saysItHoldsNone(kind, text)) {
        error = emptyFault(kind, text);
        return 0;
    }
    promised = taken + losses + std::max(missing - 1, 0);
    return 1;
}

}  // namespace pavane
