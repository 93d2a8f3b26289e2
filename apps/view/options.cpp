#include "apps/view/options.h"

#include "apps/options/option_table.h"
#include "apps/view/visibility_table.h"
#include "pavane/dialogs/values/time_texts.h"
#include "pavane/tables/uvdata/uv_columns.h"
#include "tessel/value_text.h"

#include <algorithm>
#include <cmath>
#include <string_view>

namespace pavane
{

namespace
{

constexpr int leastSize = 64;
constexpr int greatestSize = 16384;

int readSize(const std::string& text, ViewOptions& options, std::string& error)
{
    const std::size_t cross = text.find('x');
    int width = 0;
    int height = 0;
    if (cross == std::string::npos || !stoval(std::string_view(text).substr(0, cross), width) ||
        !stoval(std::string_view(text).substr(cross + 1), height)) {
        error = "--size wants WIDTHxHEIGHT in pixels, not '" + text + "'";
        return 0;
    }
    const auto fits = [](int size) { return size >= leastSize && size <= greatestSize; };
    if (!fits(width) || !fits(height)) {
        error = "--size wants " + std::to_string(leastSize) + " to " +
                std::to_string(greatestSize) + " pixels a side, not '" + text + "'";
        return 0;
    }
    options.width = width;
    options.height = height;
    options.hasSize = 1;
    return 1;
}

int readRange(const std::string& text, ViewOptions& options, std::string& error)
{
    return readColourRange("--range", text, options, error);
}

int readContrast(const std::string& text, ViewOptions& options, std::string& error)
{
    const std::string_view all = text;
    const std::size_t first = std::min(all.find(','), all.size());
    const std::size_t second = std::min(all.find(',', first + 1), all.size());
    const int hasGamma = second < all.size();
    if (first == all.size() || !stoval(all.substr(0, first), options.play.contrast) ||
        !stoval(all.substr(first + 1, second - first - 1), options.play.bias) ||
        (hasGamma && !stoval(all.substr(second + 1), options.play.gamma)) ||
        !options.play.isUsable()) {
        error =
            "--contrast wants CONTRAST,BIAS or CONTRAST,BIAS,GAMMA with a gamma above 0, not '" +
            text + "'";
        return 0;
    }
    return 1;
}

int readSurface(const std::string& text, ViewOptions& options, std::string& error)
{
    constexpr double right = 90;
    SurfaceWish& wish = options.surface;
    const std::size_t comma = text.find(',');
    const std::size_t end = comma == std::string::npos ? comma : text.find(',', comma + 1);
    wish.other = end == std::string::npos ? "" : text.substr(end + 1);
    const std::string_view view = std::string_view(text).substr(0, end);
    if (comma == std::string::npos || !stoval(view.substr(0, comma), wish.azimuth) ||
        !stoval(view.substr(comma + 1), wish.elevation) || !std::isfinite(wish.azimuth) ||
        !(wish.elevation >= 0 && wish.elevation <= right) ||
        (end != std::string::npos && wish.other.empty())) {
        error = "--surface wants AZIMUTH,ELEVATION in degrees, the elevation 0 to 90, and perhaps "
                "behind a comma another map, not '" +
                text + "'";
        return 0;
    }
    wish.wanted = 1;
    return 1;
}

int readScale(const std::string& text, ViewOptions& options, std::string& error)
{
    static constexpr std::string_view names[] = {"linear", "sqrt", "log", "equal"};
    const auto found = std::find(std::begin(names), std::end(names), text);
    if (found == std::end(names)) {
        error = "--scale knows linear, sqrt, log and equal, not '" + text + "'";
        return 0;
    }
    options.scale = static_cast<MapScaleKind>(found - std::begin(names));
    options.hasScale = 1;
    return 1;
}

int readAspect(const std::string& text, ViewOptions& options, std::string& error)
{
    if (text != "free" && text != "equal") {
        error = "--aspect knows equal and free, not '" + text + "'";
        return 0;
    }
    options.freeAspect = text == "free";
    return 1;
}

int readSkyGrid(const std::string& text, ViewOptions& options, std::string& error)
{
    if (readSkyGridWish(text, options.skyGrid, error))
        return options.hasSkyGrid = 1;
    error.insert(0, "--sky-grid ");
    return 0;
}

int readPlane(const std::string& text, ViewOptions& options, std::string& error)
{
    if (!stoval(text, options.plane) || options.plane < 0) {
        error = "--plane wants a number from 0, not '" + text + "'";
        return 0;
    }
    return 1;
}

int readLevels(const std::string& text, ViewOptions& options, std::string& error)
{
    if (parseLevels(text, options.levels, error))
        return 1;
    error.insert(0, "--levels ");
    return 0;
}

int readTimes(const std::string& text, ViewOptions& options, std::string& error)
{
    TimeRange range;
    if (!readTimeRange(text, range, error)) {
        error = "--times: " + error;
        return 0;
    }
    options.times = UvTimes::ofSeconds(range.start, range.stop);
    return 1;
}

int readTableName(const std::string& text, ViewOptions& options, std::string& error)
{
    std::string names;
    for (const UvTable table : uvTables)
        names += std::string(uvTableLook(table).name) + ", ";
    UvTable found = UvTable::telescopes;
    if (!uvTableOf(text, found) && text != visibilityTable && text != componentTable &&
        text != areaTable && !isMeasuredTable(text)) {
        error = "--table knows " + names + visibilityTable + ", " + componentTable + ", " +
                areaTable + ", " + profileTableName + ", " + spectrumTableName + ", " +
                histogramTableName + ", " + fitTableName + ", not '" + text + "'";
        return 0;
    }
    if (!options.tables.empty() && options.tables.back().file.empty()) {
        error = "--table " + options.tables.back().table + " wants a --tsv of its own behind it";
        return 0;
    }
    options.tables.push_back({text, ""});
    return 1;
}

int readTableFile(const std::string& text, ViewOptions& options, std::string& error)
{
    if (options.tables.empty() || !options.tables.back().file.empty()) {
        error = "--tsv goes behind the --table that it is for";
        return 0;
    }
    options.tables.back().file = text;
    return 1;
}

template <std::string ViewOptions::*text>
int keep(const std::string& value, ViewOptions& options, std::string&)
{
    options.*text = value;
    return 1;
}

template <int ViewOptions::*flag>
int set(const std::string&, ViewOptions& options, std::string&)
{
    options.*flag = 1;
    return 1;
}

enum Traits { everywhere, onlyInBatch, aboutProgram };

/// What makes no sense for a file of visibilities.
constexpr std::string_view mapOptions[] = {
    "--areas",   "--marks",  "--plane",    "--levels",     "--scale",      "--range",
    "--palette", "--aspect", "--mask",     "--area-names", "--partial",    "--visibilities",
    "--planes",  "--grid",   "--contrast", "--surface",    "--empty-area", "--sky-grid",
    "--moment",  "--smooth", "--out",      "--errors",     "--clip",       "--profile",
    "--across",  "--fit",    "--residual", "--pv"};

OptionTable<ViewOptions> newTable()
{
    OptionTable<ViewOptions> table = {
        {{"--areas", "", "F",
          "areas: .areas, polygons of matrix cells (.cma), region files (.reg, .crtf, .win); the "
          "content "
          "decides, not the name. A file that holds none stands for the whole map"},
         keep<&ViewOptions::areas>},
        {{"--plane", "", "N", "which plane of a cube, from 0"}, readPlane},
        {{"--levels", "", "UNIT:LIST",
          "contours; UNIT peak (per cent of the peak), sigma (multiples of the noise) or abs (unit "
          "of the map); a list that ends with \"...\" goes on in the same ratio up to the peak, as "
          "peak:-1,1,2,4,...; none: no contour"},
         readLevels},
        {{"--scale", "", "S", "colours spread linear, sqrt, log or equal (histogram-equalised)",
          "linear sqrt log equal"},
         readScale},
        {{"--range", "", "LO,HI",
          "values of the first and the last colour; p:0.5,99.5: per cent of the cells that lie "
          "below "
          "them"},
         readRange},
        {{"--contrast", "", "C,B[,G]",
          "contrast of the colours, the place 0 to 1 among the values that gets the middle one "
          "(bias), and a gamma; 1,0.5,1 leaves them as they are, a contrast below 0 turns them"},
         readContrast},
        {{"--palette", "", "NAME", "another palette: a name as shipped, or a file with a / in it",
          "defpal diverging grey heat"},
         keep<&ViewOptions::palette>},
        {{"--aspect", "", "free",
          "let cells be oblong to fill the size, as those of a map of very few rows or columns "
          "are; equal: square cells",
          "free equal"},
         readAspect},
        {{"--sky-grid", "", "WHAT[,FRAME]",
          "lines of longitude and latitude with their labels, their ticks alone, or none; in the "
          "frame of the map or in ICRS, FK5, FK4, galactic or ecliptic ones, and behind another "
          "comma sexagesimal, degrees or offsets",
          "lines ticks none"},
         readSkyGrid},
        {{"--surface", "", "AZ,EL[,OTHER.fits]",
          "draw the map as a surface seen from this azimuth and elevation (degrees), another map "
          "above it, a cube with the same plane; --scale, --contrast, --levels and a --range in "
          "per "
          "cent are for both, each with its own cells, a --range in values for the first"},
         readSurface,
         onlyInBatch},
        {{"--times", "", "START,STOP",
          "of a data file only what lies in these times: clock texts since 0h of its reference "
          "day, days in front (1/02:00:00), or seconds; one of them may be missing"},
         readTimes,
         everywhere},
        {{"--batch", "", "", "write files and print numbers"},
         set<&ViewOptions::batch>,
         onlyInBatch},
        {{"--png", "", "F", "write the map, or the plot of a data file, as a picture"},
         keep<&ViewOptions::png>,
         onlyInBatch},
        {{"--pdf", "", "F", "write it as a page"}, keep<&ViewOptions::pdf>, onlyInBatch},
        {{"--svg", "", "F", "write it as a vector picture"}, keep<&ViewOptions::svg>, onlyInBatch},
        {{"--size", "", "WxH",
          "their size in pixels of 96 per inch, 64 to 16384 a side (1000x900)"},
         readSize,
         onlyInBatch},
        {{"--mask", "", "OUT.fits",
          "write the mask of the areas: the map's pixels and coordinates, 0 and 1"},
         keep<&ViewOptions::mask>,
         onlyInBatch},
        {{"--area-names", "", "", "write the names of the areas on the map"},
         set<&ViewOptions::areaNames>},
        {{"--partial", "", "",
          "of a file of areas or marks that cannot be used whole take what can be; without it that "
          "is bad input"},
         set<&ViewOptions::partial>,
         onlyInBatch},
        {{"--model", "", "F.txt",
          "components: their outlines are drawn over the map, in the window beside a table of "
          "them; "
          "their amplitudes over the plot of a data file"},
         keep<&ViewOptions::model>},
        {{"--marks", "", "F.csv",
          "names and positions, a line each: crosses with their names over the map; columns may be "
          "named in the first line (name, ra, dec; glon, glat; x, y in pixels ...)"},
         keep<&ViewOptions::marks>},
        {{"--visibilities", "", "UV.csv",
          "print u,v,re,im of the model for each line u,v (wavelengths); needs no map"},
         keep<&ViewOptions::visibilities>,
         onlyInBatch},
        {{"--stats", "", "",
          "print peak, its place, noise, cells and flux in the mask; of a data file counts and "
          "ranges"},
         set<&ViewOptions::stats>,
         onlyInBatch},
        {{"--table", "", "NAME",
          "write a table as its window exports it: telescopes, baselines, sources, stokes, "
          "frequencies or scans of a data file, its visibilities as --plot uvdist or coverage and "
          "--average show them, components of a map, the numbers of its areas "
          "(those of --areas; of several --planes one after another), a --profile, the spectrum of "
          "each area, or of the map, through a cube, the histogram of these cells, a --fit; may be "
          "repeated, each with its --tsv; the last one without is what --print prints",
          "telescopes baselines sources stokes frequencies scans visibilities components areas "
          "profile spectrum "
          "histogram fit"},
         readTableName,
         onlyInBatch,
         1},
        {{"--empty-area", "", "NAME",
          "an area without a source, by its name or its number from 1: its noise is that of the "
          "errors in the table of areas and of fits, in place of the map's"},
         keep<&ViewOptions::emptyArea>,
         onlyInBatch},
        {{"--tsv", "", "F", "where the table before it goes; -: standard output"},
         readTableFile,
         onlyInBatch,
         1},
    };
    addPlotOptions(table);
    addMadeMapOptions(table, onlyInBatch);
    addOverlayOptions(table, onlyInBatch);
    addRgbOptions(table, onlyInBatch);
    addProfileOptions(table, onlyInBatch);
    addPrintOptions(table, onlyInBatch);
    table.insert(
        table.end(),
        {
            {{"--help", "-h", "", "print this"}, set<&ViewOptions::help>, aboutProgram},
            {{"--version", "", "", "print the version"}, set<&ViewOptions::version>, aboutProgram},
        });
    return table;
}

const OptionTable<ViewOptions>& optionTable()
{
    static const OptionTable<ViewOptions> table = newTable();
    return table;
}

/// Non-zero for what is made of a map.
int needsMap(const ViewOptions& options)
{
    return options.visibilities.empty() || options.wantsPicture() || options.stats ||
           !options.areas.empty() || options.plane >= 0 || !options.tables.empty() ||
           options.print.wanted();
}

/// What a surface cannot show, and would leave out without a word.
int checkSurface(const ViewOptions& options, std::string& error)
{
    if (!options.surface.wanted)
        return 1;
    if (!options.wantsPicture() && !options.print.wanted())
        error = "--surface goes with a picture: --png, --pdf, --svg or --print";
    else if (options.print.hasPlanes() || options.print.gridRows > 0)
        error = "--surface draws one plane: choose it with --plane, not --planes and --grid";
    else if (options.wantsPrintedTable())
        error = "--surface prints a picture, not a table: give --table a --tsv";
    else if (options.skyGrid.shown != SkyGridShown::none)
        error = "--surface has no --sky-grid";
    else if (!options.model.empty() && options.visibilities.empty() && options.tables.empty())
        error = "--surface draws no components of a --model";
    else if (!options.marks.empty())
        error = "--surface draws no --marks";
    return error.empty();
}

int checkTogether(const ViewOptions& options, const GivenArguments<ViewOptions>& given,
                  std::string& error)
{
    const auto only = std::find_if(given.options.begin(), given.options.end(),
                                   [](const auto* o) { return o->traits == onlyInBatch; });
    if (options.batch && given.operands.size() > 1 && !options.rgb.wanted)
        error = "one file at a time: '" + given.operands[1] + "' is a second one";
    else if (!options.batch && only != given.options.end())
        error = std::string((*only)->name) + " goes with --batch; the window asks for it";
    else if (given.operands.size() > 1 && (!options.areas.empty() || !options.model.empty() ||
                                           !options.marks.empty() || options.plane >= 0))
        error = "--areas, --marks, --model and --plane go with one map, not with several files";
    else if (options.map.empty() && !options.batch &&
             (!options.areas.empty() || !options.model.empty() || !options.marks.empty() ||
              options.plane >= 0))
        error = "--areas, --marks, --model and --plane go with a map";
    else if (!options.mask.empty() && options.areas.empty())
        error = "--mask needs the areas that it is made of: --areas FILE";
    else if (options.areaNames && options.areas.empty())
        error = "--area-names goes with areas: --areas FILE";
    else if (options.partial && options.areas.empty() && options.marks.empty())
        error = "--partial goes with areas or marks: --areas FILE, --marks FILE";
    else if (!options.emptyArea.empty() &&
             (options.areas.empty() || (!options.wantsTable(areaTable) && !options.profile.hasFit)))
        error = "--empty-area goes with areas, and the table of them or a fit: --areas FILE "
                "--table areas";
    else if (!options.visibilities.empty() && options.model.empty())
        error = "--visibilities needs the model that they are computed from: --model FILE";
    else if (!options.tables.empty() && options.tables.back().file.empty() &&
             !options.print.wanted())
        error = "--table " + options.tables.back().table + " wants a --tsv FILE behind it";
    else if (options.batch && options.map.empty() && needsMap(options))
        error = "no map is named";
    return error.empty() && checkPlotOptions(options, error) &&
           checkMadeMapOptions(options, given, error) && checkPrintOptions(options, given, error) &&
           checkSurface(options, error) && checkOverlayOptions(options, error) &&
           checkRgbOptions(options, given, error) && checkProfileOptions(options, error);
}

}  // namespace

ProgramText viewProgram()
{
    return {"pavane-view",
            "mark areas on a radio map, draw it, and write masks for a CLEAN; plot visibilities",
            {"[FILE ...] [OPTIONS]", "MAP.fits --batch [OPTIONS]", "DATA.uvfits --batch [OPTIONS]"},
            {"Opens the map, a FITS image, in a window, where areas are marked with the mouse or "
             "the keys (F1 there tells how). Several maps share a window, each file of "
             "visibilities gets one; a file of areas goes onto the first map, and alone asks for "
             "its map.",
             "With --batch there is no window: all input is read and checked, then files are "
             "written, each whole or not at all, and numbers are printed. No output may be an "
             "input or another output.",
             "A file of visibilities (UVFITS) is known by its content. Its window has the tables "
             "of the observation, whose marks choose what is plotted beside them. Without marks "
             "these are the parallel hands, or I, of all channels. Options of areas, planes, "
             "contours and colours make no sense for it."},
            {{"In the window and without it", textsOf(optionTable(), everywhere)},
             {"Without a window", textsOf(optionTable(), onlyInBatch)},
             {"About the program", textsOf(optionTable(), aboutProgram)}},
            {"done", "wrong use",
             "bad input, areas that cannot be used, an output that could not be written, or no "
             "display"},
            {{"~/.config/pavane-view/pavane-view.ini",
              "the window's place, the last maps, palette, scale and levels"},
             {"~/.config/pavane-view/autosave-*.areas",
              "areas that are not saved, offered when their map is opened next"}},
            {{"The mask of the areas that were marked in the window:",
              "pavane-view map.fits --batch --areas jet.areas --mask mask.fits"},
             {"A figure with contours from 1 per cent of the peak on:",
              "pavane-view map.fits --batch --pdf map.pdf --levels peak:-1,1,2,4,..."},
             {"The map as a surface, its polarised intensity above it:",
              "pavane-view i.fits --batch --pdf surface.pdf --surface 30,35,p.fits"},
             {"The same on paper, without a word below it:",
              "pavane-view map.fits --batch --printer office --paper A4 --caption ''"}},
            "pavane-simulate"};
}

int parseOptions(const std::vector<std::string>& arguments, ViewOptions& options,
                 std::string& error)
{
    options = ViewOptions();
    error.clear();
    GivenArguments<ViewOptions> given;
    if (!readArguments(arguments, optionTable(), options, given, error))
        return 0;
    if (!given.operands.empty()) {
        options.map = given.operands.front();
        options.more.assign(given.operands.begin() + 1, given.operands.end());
    }
    if (options.rgb.wanted && options.made.kind == MadeMapWish::Kind::regrid)
        options.made.kind = MadeMapWish::Kind::none;  // what is brought over are its maps
    for (const auto* option : given.options)
        if (options.onlyOfMaps.empty() &&
            (std::count(std::begin(mapOptions), std::end(mapOptions), option->name) ||
             isMadeMapOption(option->name) || isOverlayOption(option->name) ||
             isRgbOption(option->name)))
            options.onlyOfMaps = option->name;
    if (!options.help && !options.version && !checkTogether(options, given, error))
        return 0;
    if (options.print.hasPlanes())
        options.plane = options.print.firstPlane;  // for what is made of one plane beside
    else if (options.plane < 0 && isOfAllPlanes(options))
        options.plane = 0;
    return 1;
}

}  // namespace pavane
