#include "apps/view/batch_output.h"
#include "apps/view/data_batch.h"
#include "apps/view/figure.h"
#include "apps/view/inputs.h"
#include "apps/view/made_maps.h"
#include "apps/view/numbers.h"
#include "apps/view/options.h"
#include "apps/view/paired_maps.h"
#include "apps/view/print_batch.h"
#include "apps/view/printed_planes.h"
#include "apps/view/printed_table.h"
#include "apps/view/profiles/fit_batch.h"
#include "apps/view/profiles/map_tables.h"
#include "apps/view/rgb_maps.h"
#include "apps/view/same_file.h"
#include "apps/view/samp/samp_child.h"
#include "apps/view/SurfacePicture.h"
#include "apps/view/table_export.h"
#include "apps/view/visibility_table.h"
#include "apps/view/window_program.h"
#include "pavane/axes/maps/map_titles.h"
#include "pavane/images/palette_choice.h"
#include "tessel/plain_text.h"
#include "tessel/uvfits/AUVXFile.h"

#include <csignal>
#include <cstdio>
#include <memory>
#include <new>

using namespace pavane;

namespace
{

enum ExitStatus { done = 0, wrongUse = 1, badInput = 2 };

int complain(const std::string& error)
{
    std::fprintf(stderr, "pavane-view: %s\n", plainText(error).c_str());
    return badInput;
}

int refuse(const std::string& error)
{
    (void)complain(error);
    std::fprintf(stderr, "%s\n", usageLine(viewProgram()).c_str());
    return wrongUse;
}

/// What was asked for and makes no sense for a file; "" for nothing.
std::string misfit(const ViewOptions& options, const std::string& file, int isData)
{
    if (isData && !options.onlyOfMaps.empty())
        return options.onlyOfMaps + " goes with a map; " + file + " holds visibilities";
    for (const TableWish& wish : options.tables)
        if (isData && (wish.table == areaTable || isMeasuredTable(wish.table)))
            return "--table " + wish.table + " goes with a map; " + file + " holds visibilities";
    if (isData || file.empty())
        return {};
    const char* const ofData = options.wantsTable(visibilityTable) ? "--table visibilities"
                               : options.plot.hasColour            ? "--colour-by"
                               : options.plot.seconds > 0          ? "--average"
                                                                   : "";
    if (*ofData)
        return std::string(ofData) + " goes with a file of visibilities; " + file + " holds none";
    if (!options.times.isAll())
        return "--times goes with a file of visibilities; " + file + " holds none";
    return {};
}

int writeNumbers(const ViewOptions& options, const ViewInputs& inputs, std::string text,
                 std::string& error)
{
    const int nothingElse = !options.wantsPicture() && options.mask.empty() &&
                            options.visibilities.empty() && options.tables.empty() &&
                            text.empty() && !options.print.wanted() && !options.profile.wanted() &&
                            !options.profile.hasFit;
    if (options.stats || nothingElse)
        text += statisticsText(inputs);
    if (!options.visibilities.empty())
        text += visibilitiesText(inputs.model, inputs.uv);
    return printText(text, error);
}

int drawSurface(char** argv, const ViewOptions& options, const ViewInputs& inputs,
                std::string& error)
{
    SurfacePicture surface;
    surface.show(inputs);
    if (!options.surface.other.empty() && !surface.addSecond(options.surface.other, error))
        return 0;
    surface.applyOptions(options);
    surface.setAreas(inputs.areas);
    const auto newJob = [&] {
        PictureJob picture{mapTitle(inputs.map.header), options.width, options.height, 1,
                           [&surface](CDC& dc, const CRect& rect) { surface.draw(dc, rect); }};
        return BatchJob{std::move(picture), usualCaption(inputs.map.header), {}};
    };
    if (!writePictures(argv, options, newJob, error))
        return 0;
    printNotes(surface.notes());
    return 1;
}

int drawMap(char** argv, const ViewOptions& options, const ViewInputs& inputs,
            const AComponents& components, const MapTables& measured, std::string& error)
{
    std::vector<std::string> notes;
    std::unique_ptr<PrintedPlanes> planes;
    if (options.print.hasPlanes()) {
        planes = std::make_unique<PrintedPlanes>(options, inputs);
        if (!planes->open(error))
            return 0;
    }
    if (options.surface.wanted)
        return drawSurface(argv, options, inputs, error);
    const auto newJob = [&] {
        const auto figure = std::make_shared<InputsFigure>(options, inputs);
        PictureJob picture{mapTitle(inputs.map.header), options.width, options.height, 1,
                           [&notes, figure](CDC& dc, const CRect& rect) {
                               figure->draw(dc, rect);
                               notes = figure->notes();
                           }};
        BatchJob job{std::move(picture), usualCaption(inputs.map.header), {}};
        if (options.wantsPrintedTable())
            job.newWindow = [&] {
                return newPrintedTable(options.tables.back(), nullptr, &components, &measured);
            };
        else if (planes)
            job.newWindow = [&] { return planes->newWindow(); };
        return job;
    };
    if (!writePictures(argv, options, newJob, error))
        return 0;
    for (const std::string& note : notes)
        std::fprintf(stderr, "pavane-view: note: %s\n", note.c_str());
    return 1;
}

/// What was measured and goes into no table.
int printMeasured(const ViewOptions& options, const ViewInputs& inputs, const MapTables& measured,
                  std::string& error)
{
    if (options.profile.wanted() && !options.wantsTable(profileTableName) &&
        !writeTextFile(
            "-", [&](std::ostream& stream) { return measured.profile.writeTsv(stream); }, error))
        return 0;
    return !options.profile.hasFit || printText(fitText(inputs, measured.fits), error);
}

/// What draws the map that was made.
ViewOptions pictureOfMade(const ViewOptions& options)
{
    ViewOptions picture = options;
    picture.map = options.made.out;
    picture.plane = -1;
    picture.made = {};
    picture.profile = {};
    picture.print = {};
    picture.overlay = {};
    return picture;
}

int runBatch(char** argv, const ViewOptions& options, std::string& error)
{
    if (options.made.wanted())
        return (!options.wantsPicture() || choosePalette(options.palette, error)) &&
               writeMadeMaps(options, error) &&
               (!options.wantsPicture() || runBatch(argv, pictureOfMade(options), error));
    ViewInputs inputs;
    AComponents components;
    std::vector<std::string> notes;
    if (!choosePalette(options.palette, error) || !readInputs(options, inputs, notes, error))
        return 0;
    MapTables measured;
    if (!fillMapTables(options, inputs, measured, notes, error))
        return 0;
    const int hasTables = writeTables(options, nullptr, components, &measured, notes, error);
    printNotes(notes);
    if (!hasTables)
        return 0;
    if (!options.mask.empty() && !writeMask(options, inputs.mask, inputs.map.header, error))
        return 0;
    std::string text;
    if (inputs.rgb && !writeRgb(options, inputs, text, error))
        return 0;
    if (!options.made.findShift.empty() &&
        !findShiftText(options, inputs.map, inputs.mask, text, error))
        return 0;
    if (!options.profile.residual.empty() && !writeResidual(options, inputs, measured.fits, error))
        return 0;
    if ((options.wantsPicture() || options.print.wanted()) &&
        !drawMap(argv, options, inputs, components, measured, error))
        return 0;
    return printMeasured(options, inputs, measured, error) &&
           writeNumbers(options, inputs, text, error);
}

}  // namespace

int main(int argc, char** argv)
{
    // beyond a limit of file size writing fails and is reported, instead of ending the program
    std::signal(SIGXFSZ, SIG_IGN);
    if (const std::vector<std::string> words(argv + 1, argv + argc); isSampChild(words))
        return runSampChild(words);  // beside a window, which has started it
    ViewOptions options;
    std::string error;
    if (!parseOptions(std::vector<std::string>(argv + 1, argv + argc), options, error))
        return refuse(error);
    if (options.help || options.version)
        return printText(options.help ? helpText(viewProgram()) : versionLine(viewProgram()), error)
                   ? done
                   : badInput;
    error = outputClash(options);
    if (!error.empty())
        return refuse(error);
    try {
        const int isData = !options.map.empty() && holdsVisibilities(options.map);
        error = misfit(options, options.map, isData);
        for (const std::string& file : options.more)
            if (error.empty())
                error = misfit(options, file, holdsVisibilities(file));
        if (!error.empty())
            return refuse(error);
        if (options.batch && isData)
            return runDataBatch(argv, options, error) ? done : complain(error);
        if (options.batch)
            return runBatch(argv, options, error) ? done : complain(error);
        if (!choosePalette(options.palette, error) || !runWindow(argv, options, error))
            return complain(error);
        return done;
    } catch (const std::bad_alloc&) {
        return complain("there is not enough memory");
    }
}
