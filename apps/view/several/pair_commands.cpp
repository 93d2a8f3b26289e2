// Difference, ratio and spectral index of the current map and the one before, as another map of the
// window.
#include "apps/view/long_work.h"
#include "apps/view/MainWindow.h"
#include "apps/view/paired_maps.h"
#include "pavane/measures/maps/smooth_map.h"
#include "platform/message.h"
#include "tessel/made_map.h"
#include "tessel/paths.h"
#include "tessel/value_text.h"

#include <utility>

namespace pavane
{

namespace
{

constexpr const char* madeMapFilter = "FITS maps (*.fits)|*.fits|";
constexpr double masPerDegree = 3600e3;
constexpr int fewDigits = 4;

const char* nameOf(MapPair pair)
{
    return pair == MapPair::difference ? "difference" : pair == MapPair::ratio ? "ratio" : "index";
}

SkyBeam beamOf(const MapHeader& header) { return {header.bmaj, header.bmin, header.bpa}; }

std::string beamText(const SkyBeam& beam)
{
    return valToStr(beam.major * masPerDegree, fewDigits) + " x " +
           valToStr(beam.minor * masPerDegree, fewDigits) + " mas";
}

/// The smallest beam that both maps can have.
SkyBeam commonBeamOf(const FitsMap& first, const FitsMap& second)
{
    return commonBeam(beamOf(first.header), beamOf(second.header));
}

/// Convolves a map to a beam unless it has that; `done` gets a line of history.
int convolve(FitsMap& map, const SkyBeam& beam, const std::string& name,
             std::vector<std::string>& done, std::string& error, const ProgressFunction& progress)
{
    if (areSameBeams(beamOf(map.header), beam))
        return 1;
    SmoothedMap smoothed;
    if (!smoothMap(map.cells, map.header, beam, smoothed, error, progress))
        return 0;
    map.cells = std::move(smoothed.cells);
    map.header = std::move(smoothed.header);
    done.push_back("pavane: " + name + " was convolved to the beam " + beamText(beam));
    return 1;
}

/// What is to be done to two maps so that they go together, as the user agreed to it.
struct PairHelp {
    int convolves = 0;
    int regrids = 0;
};

/// 0 when there is no help for the fault, or the user wants none.
int agreesToHelp(PairFault fault, const std::string& error, const FitsMap& first,
                 const FitsMap& second, PairHelp& help)
{
    const int isBeams = fault == PairFault::beams && !help.convolves;
    const int isCells = fault == PairFault::cells && !help.regrids;
    const std::string offer =
        isBeams   ? ".\n\nConvolve to the beam " + beamText(commonBeamOf(first, second)) + " first?"
        : isCells ? ".\n\nBring it onto the cells of the first map (bicubic)?"
                  : "";
    if (offer.empty())
        return (void)AfxMessageBox(error, MB_ICONERROR), 0;
    if (AfxMessageBox(error + offer, MB_YESNO | MB_ICONQUESTION) != IDYES)
        return 0;
    help.convolves |= isBeams;
    help.regrids |= isCells;
    return 1;
}

}  // namespace

void MainWindow::makePair(MapPair pair)
{
    const MapDocument* const second = documentOf(maps_.other());
    if (!second) {
        status_.SetMessage("A second map is needed: File > Add map opens one");
        return;
    }
    const std::string ofBoth = baseNameOf(map_->file()) + " and " + baseNameOf(second->file());
    CString name = folderOf(map_->file()) + nameOf(pair) + ".fits";
    if (!askName(name, madeMapFilter, "Save the " + std::string(nameOf(pair)) + " of " + ofBoth, 0,
                 "fits") ||
        !mayWrite(name, 0))
        return;
    ViewOptions options;
    options.map = map_->file();
    options.made.kind = MadeMapWish::Kind::pair;
    options.made.pair = pair;
    options.made.other = second->file();
    options.made.shift = shiftAgainst(*second, *map_);
    PairHelp help;
    PairFault fault = PairFault::none;
    do {
        FitsMap a;
        FitsMap b;
        MadeMap made;
        MadeTold told;
        std::string error;
        const auto work = [&](const ProgressFunction& tell) {
            std::vector<std::string> convolved;
            a = map_->inputs().map;
            b = second->inputs().map;
            fault = PairFault::memory;
            error = "needs more memory than there is";
            if (a.cells.rows() == 0 || b.cells.rows() == 0)
                return 0;
            options.made.regrid = help.regrids;
            if (help.convolves) {
                const SkyBeam beam = commonBeamOf(a, b);
                if (!convolve(a, beam, baseNameOf(options.map), convolved, error, tell) ||
                    !convolve(b, beam, baseNameOf(options.made.other), convolved, error, tell))
                    return 0;
            }
            fault = pairMaps(options, a, b, made, told, error, tell);
            if (fault != PairFault::none)
                return 0;
            made.history.insert(made.history.end(), convolved.begin(), convolved.end());
            return writeMadeMap(name, made.cells, made.header, made.history, error, tell);
        };
        int done = 0;
        if (!doLongWork(this, "Making " + baseNameOf(name),
                        [&](const ProgressFunction& tell) { return done = work(tell); }))
            return;  // given up
        if (done) {
            if (AddMap(name, -1))
                status_.SetMessage("Saved in " + name +
                                   (told.notes.empty() ? "" : ": " + told.notes.front()));
            return;
        }
        if (fault != PairFault::none)
            error = baseNameOf(options.made.other) + ' ' + error;
        if (!agreesToHelp(fault, error, a, b, help))
            return;
    } while (true);
}

}  // namespace pavane
