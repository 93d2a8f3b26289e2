#pragma once

#include "apps/view/several/MapLinks.h"
#include "apps/view/several/MapList.h"
#include "pavane/axes/maps/sky/sky_grid_wish.h"
#include "pavane/axes/ranges/TMinMax.h"

#include <string>
#include <vector>

namespace pavane
{

/// A map of the work, and what is shown of it and over it; "" for no file.
struct WorkMap {
    std::string file;
    int plane = -1;
    std::string areas, model;
    int hasView = 0;
    TMinMax view;     ///< RP, x and y pairs
    CString display;  ///< MapDisplay::styleText
    int hasRange = 0;
    double low = 0, high = 0;  ///< of the colours
};

/// What a window of maps shows, to be saved and opened again. A plain value; numbers count from 0.
struct Work {
    std::vector<WorkMap> maps;
    int current = 0;
    MapsShown shown = MapsShown::tabs;
    LinkBy linkBy = LinkBy::sky;
    int linked = linkZoom | linkPointer;  ///< bits of LinkPart
    SkyGridWish grid;
    std::string marks;
    int areaNumbers = 0;  ///< whether their table shows
    int areaNames = 0;    ///< on the maps
};

/// Whether a file begins as a work file does, of whatever version.
int isWorkFile(const std::string& file);
/// Reads a work file. Names of files come out as they are found from here: those in it are relative
/// to its folder. What is not understood goes to `notes`, "line 7: ...". Non-zero when there is a
/// map; else 0 and `error`, a clause without its subject.
int readWork(const std::string& file, Work& work, std::vector<std::string>& notes,
             std::string& error);
/// The text of a work file at that place.
std::string workText(const std::string& file, const Work& work);
/// Writes it whole or not at all. Non-zero on success; else 0 and one line that names the file.
int writeWork(const std::string& file, const Work& work, std::string& error);

}  // namespace pavane
