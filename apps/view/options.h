#pragma once

#include "apps/options/program_text.h"
#include "apps/view/made_map_options.h"
#include "apps/view/overlay_options.h"
#include "apps/view/plot_options.h"
#include "apps/view/print_options.h"
#include "apps/view/profiles/profile_options.h"
#include "apps/view/rgb_options.h"
#include "pavane/axes/maps/MapLook.h"
#include "pavane/axes/maps/sky/sky_grid_wish.h"
#include "tessel/uvfits/UvTimes.h"

#include <algorithm>
#include <string>
#include <vector>

namespace pavane
{

/// A table to be written: its name, and a file, or "-" for standard output; "" when it is printed.
struct TableWish {
    std::string table, file;
};

/// The name of the table of a map's components, beside those of an observation (uvTableLook).
inline constexpr const char* componentTable = "components";

/// The name of the table of the numbers of areas on a map.
inline constexpr const char* areaTable = "areas";

/// --surface: the map in a box, seen from there, with another map above it unless the name is "".
struct SurfaceWish {
    int wanted = 0;
    double azimuth = 0, elevation = 0;  ///< degrees
    std::string other;
};

/// The command line of pavane-view, checked.
struct ViewOptions : MapLook {
    std::string map;
    std::vector<std::string> more;  ///< further files: maps share a window
    int batch = 0;
    int help = 0;
    int version = 0;
    int plane = -1;             ///< from 0; -1: the only one
    std::string png, pdf, svg;  ///< pictures to write, empty for none
    int width = 1000;           ///< pixels of 96 per inch
    int height = 900;
    int hasSize = 0;  ///< one was asked for
    SurfaceWish surface;
    SkyGridWish skyGrid;
    int hasSkyGrid = 0;   ///< one was asked for
    int hasScale = 0;     ///< one was asked for
    std::string palette;  ///< empty: the default one
    UvTimes times;        ///< of a data file: what is plotted and listed
    PlotWish plot;        ///< of a data file
    std::string areas, mask, model, visibilities;
    std::string marks;  ///< a list of names and positions; "" for none
    int partial = 0;    ///< areas or marks of which some are lost are taken
    int areaNames = 0;  ///< areas have their names in pictures
    int stats = 0;
    std::vector<TableWish> tables;
    std::string emptyArea;  ///< name or number of the area whose noise counts; "": the map's
    PrintWish print;
    MadeMapWish made;
    ProfileWish profile;
    OverlayWish overlay;
    RgbWish rgb;
    std::string onlyOfMaps;  ///< the first option given that data files know nothing of, or ""

    int wantsPicture() const { return !png.empty() || !pdf.empty() || !svg.empty(); }
    int wantsTable(const std::string& name) const
    {
        return std::any_of(tables.begin(), tables.end(),
                           [&](const TableWish& wish) { return wish.table == name; });
    }
    /// Whether a table is what is printed.
    int wantsPrintedTable() const
    {
        return print.wanted() && !tables.empty() && tables.back().file.empty();
    }
    int wantsPrintedPicture() const { return print.wanted() && !wantsPrintedTable(); }
};

/// What users read of the program and its options, from the table that reads them.
ProgramText viewProgram();

/// Reads the arguments behind the program's name. Non-zero on success; else 0 and `error` says in
/// one line what is wrong with them.
int parseOptions(const std::vector<std::string>& arguments, ViewOptions& options,
                 std::string& error);

}  // namespace pavane
