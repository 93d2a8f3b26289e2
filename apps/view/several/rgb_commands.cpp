// Three maps of the window as red, green and blue, as another map of it; the ranges of one.
#include "apps/view/long_work.h"
#include "apps/view/MainWindow.h"
#include "apps/view/rgb_maps.h"
#include "apps/view/several/rgb_dialog.h"
#include "pavane/axes/maps/ALevelsColorGraph.h"
#include "pavane/axes/maps/RgbImage.h"
#include "platform/message.h"
#include "tessel/paths.h"
#include "tessel/plain_text.h"
#include "tessel/value_text.h"

#include <algorithm>
#include <utility>

namespace pavane
{

namespace
{

constexpr const char* madeMapFilter = "FITS maps (*.fits)|*.fits|";
constexpr int rangeDigits = 4;

std::string rangeText(TMnMx range)
{
    return range.min < range.max
               ? valToStr(range.min, rangeDigits) + ',' + valToStr(range.max, rangeDigits)
               : std::string();
}

/// The range that was asked for; an empty one for all values.
TMnMx wantedRange(const MapLook& look, const AMatrix<float>& cells)
{
    const TMnMx range = rangeOf(look, AFloatMatrixAccess(cells));
    return range.min < range.max ? range : TMnMx{0, 0};
}

}  // namespace

/// The longest wave is red; maps of which no frequency is known stay in their order.
void MainWindow::proposeRgb(RgbChoice& choice)
{
    std::vector<int> order;
    for (int i = 0; i < maps_.count(); ++i)
        if (!documentOf(i)->picture().rgb())
            order.push_back(i);
    std::stable_sort(order.begin(), order.end(), [this](int a, int b) {
        const double f = documentOf(a)->inputs().map.header.frequency;
        const double g = documentOf(b)->inputs().map.header.frequency;
        return f > 0 && g > 0 && f < g;
    });
    choice.names = maps_.names();
    choice.rangeOf = [this](int map) {
        return rangeText(documentOf(map)->picture().graph().zRange());
    };
    if (order.empty())
        order.push_back(maps_.current());
    const std::size_t last = order.size() - 1;
    choice.maps = {order[0], order[std::min<std::size_t>(last, 1)], order[last]};
    for (std::size_t i = 0; i < rgbBands; ++i)
        choice.ranges[i] = choice.rangeOf(choice.maps[i]);
}

/// Of the picture that shows; its file stays.
void MainWindow::askRgbRanges()
{
    RgbImage& image = *map_->picture().rgb();
    RgbChoice choice;
    choice.isFixed = 1;
    for (std::size_t i = 0; i < rgbBands; ++i) {
        const RgbBand& band = image.map().bands[i];
        choice.names.push_back(band.name.empty() ? rgbNames[i] : band.name);
        choice.maps[i] = static_cast<int>(i);
        choice.ranges[i] = rangeText(image.range(i));
    }
    choice.rangeOf = [&](int map) { return choice.ranges[static_cast<std::size_t>(map)]; };
    if (!askRgb(this, choice))
        return;
    for (std::size_t i = 0; i < rgbBands; ++i) {
        const TMnMx range = wantedRange(choice.looks[i], image.map().cells[i]);
        image.setRange(i, range.min, range.max);
    }
    view().ContentChanged();
    status_.SetMessage("Other ranges show; those in the file stay");
}

void MainWindow::makeRgb()
{
    if (map_->picture().rgb())
        return askRgbRanges();
    if (maps_.count() < 2) {
        status_.SetMessage("More maps are needed: File > Add map opens them");
        return;
    }
    RgbChoice choice;
    proposeRgb(choice);
    CString name = folderOf(map_->file()) + "rgb.fits";
    if (!askRgb(this, choice) ||
        !askName(name, madeMapFilter, "Save the map of three colours", 0, "fits") ||
        !mayWrite(name, 0))
        return;
    MapOfRgb maps[rgbBands];
    const MapDocument& first = *documentOf(choice.maps[0]);
    for (std::size_t i = 0; i < rgbBands; ++i) {
        const MapDocument& map = *documentOf(choice.maps[i]);
        const FitsMap& content = map.inputs().map;
        const TMnMx range = wantedRange(choice.looks[i], content.cells);
        maps[i] = {&content.cells, &content.header, plainText(baseNameOf(map.file())),
                   range.min,      range.max,       i > 0 ? shiftAgainst(map, first) : SkyShift()};
    }
    for (int regrid = 0; regrid < 2; ++regrid) {
        std::string error;
        std::vector<std::string> notes;
        std::size_t at = 0;
        PairFault fault = PairFault::none;
        const auto work = [&](const ProgressFunction& tell) {
            RgbMap made;
            fault = combineRgb(maps, regrid, made, notes, at, error, tell);
            return fault == PairFault::none &&
                   writeRgbMap(name, made, *maps[0].header, rgbHistory(made, maps, regrid), error,
                               tell);
        };
        int done = 0;
        if (!doLongWork(this, "Making " + baseNameOf(name),
                        [&](const ProgressFunction& tell) { return done = work(tell); }))
            return;  // given up
        if (done) {
            if (AddMap(name, -1))
                status_.SetMessage("Saved in " + name +
                                   (notes.empty() ? "" : ": " + notes.front()));
            return;
        }
        if (fault != PairFault::none)
            error.insert(0, maps[at].name + ' ');
        if (fault != PairFault::cells)
            return (void)AfxMessageBox(error, MB_ICONERROR);
        if (AfxMessageBox(error +
                              ".\n\nBring the others onto the cells of the first map (bicubic)?",
                          MB_YESNO | MB_ICONQUESTION) != IDYES)
            return;
    }
}

}  // namespace pavane
