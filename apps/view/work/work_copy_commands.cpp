// What the window shows as a value, and the copy of it that comes back after a crash.
#include "apps/view/MainWindow.h"
#include "pavane/axes/dialogs/show_map_display.h"
#include "pavane/axes/maps/MapLook.h"
#include "pavane/trackers/collections/ATrackerArrayInAxis.h"
#include "tessel/paths.h"

#include <utility>

namespace pavane
{

/// What the window shows now. Areas and components that are in no file are of it only as a copy:
/// then with the files where what is not saved of them is kept.
Work MainWindow::workNow(int asCopy)
{
    Work work;
    work.current = maps_.current();
    work.shown = maps_.shown();
    work.linkBy = links_.by();
    work.linked = 0;
    for (const LinkPart part : {linkZoom, linkPointer, linkColours, linkAreas})
        work.linked |= links_.wants(part) ? part : 0;
    work.grid = options_.skyGrid;
    work.marks = marksFile_;
    work.areaNumbers = areaNumbers_.isShown();
    work.areaNames = view().GetAreaNames();
    work.areaValues = showTable_;
    work.surface = surface_.isShown();
    work.curves = static_cast<WorkCurves>(curves_.kind());
    work.line = curves_.line().line();
    for (int i = 0; i < curves_.kept(); ++i) {
        const MeasuredCurve& kept = curves_.keptCurve(i);
        work.kept.push_back({kept.name, kept.xTitle, kept.yTitle, kept.x, kept.y});
    }
    if (asCopy)
        work.savedAs = workFile_;
    for (int i = 0; i < maps_.count(); ++i) {
        const MapDocument& document = *documentOf(i);
        MapWindow& window = viewOf(i);
        const AreaSession& session = sessionOf(i);
        WorkMap map;
        map.file = document.file();
        map.plane =
            document.planes() > 1 && !documentOf(i)->picture().rgb() ? document.plane() : -1;
        map.areas = session.file().empty() ? session.source() : session.file();
        map.contours = document.contoursOf();
        if (document.isMoved())
            map.shift = document.shiftIn(document.sky().skyFrame());
        if (asCopy)
            map.unsavedAreas = session.autosave().file();
        if (model_.session().isOpen() && modelMap_ == i) {
            map.model = model_.session().source();
            if (asCopy && model_.session().isModified())
                map.unsavedModel = workCopy_.modelFile();
        }
        map.hasView = window.IsRangeZoomed();
        if (map.hasView)
            map.view = window.GetPlot()->getMinMax();
        MapDisplay display = shownDisplay(window);
        if (!map.contours.empty())
            display.contours.levels = levelsOf(options_.levels, documentOf(i)->picture().graph());
        map.display = display.styleText();
        map.hasRange = display.colours.range.min < display.colours.range.max;
        map.low = display.colours.range.min;
        map.high = display.colours.range.max;
        work.maps.push_back(std::move(map));
    }
    return work;
}

void MainWindow::KeepWork()
{
    if (!map_ || isWorkShown_ || choosing_)
        return;
    int isUnsaved = model_.session().isModified();
    for (int i = 0; i < maps_.count(); ++i)
        isUnsaved |= sessionOf(i).hasCopy();
    int isKept = 1;
    if (!model_.session().isModified())
        workCopy_.removeModel();
    else if (isModelOld_)
        isKept = workCopy_.keepModel(model_.session().components().list());
    isModelOld_ = isModelOld_ && !isKept;
    isKept = workCopy_.keep(workNow(1), isUnsaved) && isKept;
    if (isKept || copyFailed_)
        return;
    copyFailed_ = 1;  // said once; the next change tries again
    status_.SetMessage("The copy of the work cannot be written: " + workCopy_.file());
}

/// Brings back areas that were not saved, for the current map. Their copy goes once this session
/// has its own. 0 when they cannot be read.
int MainWindow::bringAreasBack(const std::string& copy)
{
    ATrackerArrayInAxis read;
    AreaNotes notes;
    std::string error;
    if (!openAreas(copy, place(), read, notes, error) || !giveAreas(read, "Bring areas back"))
        return 0;
    areas().history().markUnsaved();
    areas().FillAreasCB(&view());
    view().FollowAreas();
    writeCopy();
    return 1;
}

int MainWindow::RestoreWork(const LeftWork& left)
{
    if (map_ || !showWork(left.work, "the last session"))
        return 0;
    workFile_ = left.work.savedAs;
    workCopy_.beginUnsaved();
    KeepWork();
    LeftWork done = left;
    for (WorkMap& map : done.work.maps) {
        // only what this session has a copy of now; that may have the name of the old one
        const int i = maps_.find(map.file);
        if (i < 0 || !sessionOf(i).hasCopy() || sessionOf(i).autosave().file() == map.unsavedAreas)
            map.unsavedAreas.clear();
        if (!model_.session().isModified() || map.unsavedModel == workCopy_.modelFile())
            map.unsavedModel.clear();
    }
    if (workCopy_.isThere())
        removeLeftWork(done, 1);
    status_.SetMessage("The work of the last session is back: " + countText(maps_.count(), "map"));
    return 1;
}

}  // namespace pavane
