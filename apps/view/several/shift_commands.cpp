// The shift between two maps of the window: found, shown, applied to what is compared.
#include "apps/view/long_work.h"
#include "apps/view/MainWindow.h"
#include "apps/view/paired_maps.h"
#include "apps/view/several/moved_map.h"
#include "apps/view/several/shift_dialog.h"
#include "pavane/trackers/collections/ATrackerArrayInAxis.h"
#include "platform/message.h"
#include "tessel/map_steps.h"
#include "tessel/paths.h"

#include <algorithm>
#include <cmath>

namespace pavane
{

/// Of a map over another one, as both are shown, in the frame of that.
SkyShift MainWindow::shiftAgainst(const MapDocument& map, const MapDocument& first)
{
    const SkyFrame& frame = first.sky().skyFrame();
    const SkyShift own = map.shiftIn(frame), other = first.shiftIn(frame);
    return {own.east - other.east, own.north - other.north};
}

void MainWindow::findShift()
{
    MapDocument* const second = documentOf(maps_.other());
    if (!second) {
        status_.SetMessage("A second map is needed: File > Add map opens one");
        return;
    }
    ShiftChoice choice;
    choice.first = baseNameOf(map_->file());
    choice.second = baseNameOf(second->file());
    choice.isOfAreas = areas().count() > 0;
    const FitsMap& map = map_->inputs().map;
    const MapSteps steps = stepsOf(map.header);
    choice.cell = std::min(std::fabs(steps.column), std::fabs(steps.row));
    ABitMatrix mask(map.cells.rows(), map.cells.columns());
    mask.setAll(1);
    if (choice.isOfAreas) {
        const AreaPlace at = map_->place();
        areas().FillMatrix(mask, at.columns, at.rows, at.range);
    }
    int found = 0;
    if (!doLongWork(this, "Comparing " + choice.second, [&](const ProgressFunction& tell) {
            return found = findShiftOf(map, second->inputs().map, mask, choice.found, choice.fault,
                                       tell);
        }))
        return;  // given up
    choice.wanted = found ? choice.found.shift : shiftAgainst(*second, *map_);
    if (askShift(this, choice))
        moveSecond(choice.wanted);
}

/// The map that was current before lies so far away from where its file says, seen from the current
/// one, in all that compares the two.
void MainWindow::moveSecond(SkyShift shift)
{
    MapDocument* const second = documentOf(maps_.other());
    if (!second)
        return;
    const SkyShift own = map_->shiftIn(map_->sky().skyFrame());
    if (!shift.isNone())
        shift = {shift.east + own.east, shift.north + own.north};
    if (!second->setShift(shift, map_->sky().skyFrame())) {
        (void)AfxMessageBox(baseNameOf(second->file()) +
                                " cannot be moved: it has no place on the sky of this map",
                            MB_ICONERROR);
        return;
    }
    mapMoved();
}

void MainWindow::resetShifts()
{
    for (int i = 0; i < maps_.count(); ++i)
        (void)documentOf(i)->setShift({}, documentOf(i)->sky().skyFrame());
    mapMoved();
}

int MainWindow::isAnyMoved()
{
    for (int i = 0; i < maps_.count(); ++i)
        if (const MapDocument* const map = documentOf(i); map && map->isMoved())
            return 1;
    return 0;
}

/// "x.fits is shown moved by ...", of all that are; "" for none.
std::string MainWindow::movedText()
{
    std::string text;
    for (int i = 0; i < maps_.count(); ++i)
        if (const MapDocument* const map = documentOf(i); map && map->isMoved())
            text.append(text.empty() ? "" : "; ")
                .append(baseNameOf(map->file()))
                .append(" is shown moved by ")
                .append(shiftText(map->shiftIn(map->sky().skyFrame())));
    return text;
}

/// What shows two maps shows them anew.
void MainWindow::mapMoved()
{
    for (int i = 0; i < maps_.count(); ++i) {
        MapDocument& below = *documentOf(i);
        const MapDocument* const above = documentOf(maps_.find(below.contoursOf()));
        std::string error;
        if (below.contoursOf().empty() || !above)
            continue;
        (void)below.setContours(above, options_, error);
        viewOf(i).ContentChanged();
    }
    seats_[static_cast<std::size_t>(maps_.current())]->linkedAreas.reset();
    followRange(maps_.current());
    followAreas(maps_.current());
    updateTitle();
    const std::string text = movedText();
    status_.SetMessage(text.empty() ? "No map is moved" : text);
    KeepWork();
}

}  // namespace pavane
