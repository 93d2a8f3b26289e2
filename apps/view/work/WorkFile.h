#pragma once

#include "apps/view/several/MapLinks.h"
#include "apps/view/several/MapList.h"
#include "pavane/axes/maps/sky/sky_grid_wish.h"
#include "pavane/axes/ranges/TMinMax.h"
#include "pavane/measures/profiles/MapProfile.h"
#include "tessel/CellMapping.h"

#include <cstdint>
#include <string>
#include <vector>

namespace pavane
{

/// A map of the work, and what is shown of it and over it; "" for no file.
struct WorkMap {
    std::string file;
    int plane = -1;
    std::string areas, model;
    /// Copies of what of them was not saved, of a crash copy alone; they need not be there.
    std::string unsavedAreas, unsavedModel;
    std::string contours;  ///< the map whose contours lie over it
    int hasView = 0;
    TMinMax view;     ///< RP, x and y pairs
    CString display;  ///< MapDisplay::styleText
    int hasRange = 0;
    double low = 0, high = 0;  ///< of the colours
    SkyShift shift;            ///< by which it is shown moved, degrees in its own frame
};

/// The curve below the map; the numbers are those of CurvePanel::Kind.
enum class WorkCurves : std::uint8_t { none, profile, spectrum, histogram };

/// A curve that was kept beside those that follow: its points, NaN is a gap.
struct WorkCurve {
    CString name, xTitle, yTitle;
    std::vector<double> x, y;
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
    int areaValues = 0;   ///< the numbers of the current area
    int surface = 0;
    WorkCurves curves = WorkCurves::none;
    ProfileLine line;  ///< no corners: none was drawn
    std::vector<WorkCurve> kept;
    std::string savedAs;  ///< of a crash copy: the work file that was open; "" for none
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
