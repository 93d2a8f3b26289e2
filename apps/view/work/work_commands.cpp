// Work files: all maps of the window, and what is shown of them, saved and opened again.
#include "apps/view/file_ending.h"
#include "apps/view/main_menu.h"
#include "apps/view/MainWindow.h"
#include "apps/view/view_dialogs.h"
#include "apps/view/work/WorkFile.h"
#include "pavane/axes/dialogs/show_map_display.h"
#include "platform/file_dialog.h"
#include "platform/message.h"
#include "tessel/paths.h"

#include <utility>

namespace pavane
{

namespace
{

constexpr const char* workFilter = "Work files (*.work)|*.work|All files (*)|*|";

}  // namespace

int MainWindow::runWorkCommand(unsigned id)
{
    if (!map_ || (id != idSaveWork && id != idReadAgain))
        return 0;
    if (id == idReadAgain)
        return (void)ReadAgain(), 1;
    CString name = workFile_.empty() ? besideFile(map_->file(), "work") : CString(workFile_);
    if (MayLeaveAll() &&
        fnFileDialog1(name, workFilter, "Save work file", 0, "work", OFN_OVERWRITEPROMPT, this) &&
        !name.empty())
        (void)SaveWork(name);
    return 1;
}

int MainWindow::SaveWork(const std::string& file)
{
    std::string error;
    if (!mayWrite(file, 0))
        return 0;
    if (!writeWork(file, workNow(), error)) {
        AfxMessageBox(error, MB_ICONERROR);
        return 0;
    }
    workFile_ = file;
    workCopy_.begin(workNow(1));
    KeepWork();
    recent_.load();
    recent_.add(file);
    setMenu();
    status_.SetMessage("Saved what this window shows in " + file);
    return 1;
}

/// The file, or the one that the user finds in its place; "" for none.
std::string MainWindow::foundFile(const std::string& file, const char* what)
{
    if (file.empty() || IsFileExists(file))
        return file;
    if (AfxMessageBox(file + ": the " + what + " is not there any more. Look for it?",
                      MB_YESNO | MB_ICONQUESTION) != IDYES)
        return {};
    CString name = folderOf(file);
    return fnFileDialog1(name, "All files (*)|*|", "Where is " + baseNameOf(file) + "?", 1, "",
                         OFN_FILEMUSTEXIST, this)
               ? name
               : CString();
}

/// What belongs to the current map.
void MainWindow::showWorkMap(const WorkMap& map)
{
    const int hasCopy = IsFileExists(map.unsavedAreas);
    // of areas that come back their file matters only as the place to save them in
    const std::string areas =
        hasCopy && !IsFileExists(map.areas) ? std::string() : foundFile(map.areas, "area file");
    if (!areas.empty())
        (void)OpenAreas(areas);
    if (hasCopy)
        (void)bringAreasBack(map.unsavedAreas);
    if (!IsFileExists(map.unsavedModel) || !model_.OpenCopy(map.unsavedModel, map.model))
        if (const std::string model = foundFile(map.model, "component file"); !model.empty())
            (void)model_.Open(model);
    if (!map.shift.isNone() && !map_->setShift(map.shift, map_->sky().skyFrame()))
        status_.SetMessage(baseNameOf(map_->file()) + " has no place on the sky to be moved on");
    MapDisplay display = shownDisplay(view());
    (void)display.readStyle(map.display);
    if (map.hasRange)
        display.colours.range = {map.low, map.high};
    (void)showDisplay(view(), display);
    displayChanged();
    if (map.hasView) {
        if (view().GetWholeRange() == TMinMax())
            view().PrepareContent();  // or it would take the view for the whole of the map
        view().SetNewMinMax(map.view);
    }
}

/// Contours of another map over the current one; that one need not be in the window.
void MainWindow::showWorkContours(const WorkMap& map)
{
    const std::string file = foundFile(map.contours, "map of the contours");
    if (file.empty())
        return;
    const MapDocument* other = documentOf(maps_.find(file));
    const std::unique_ptr<MapDocument> read = other ? nullptr : readMap(file, -1);
    std::string error;
    if (!other && !(other = read.get()))
        return;
    if (!map_->setContours(other, options_, error))
        status_.SetMessage(error);
    view().ContentChanged();
    displayChanged();
}

/// The line of a profile, the curve below the map and those that were kept.
void MainWindow::showWorkCurves(const Work& work)
{
    using Kind = CurvePanel::Kind;
    if (work.curves != WorkCurves::none)
        showCurves(static_cast<Kind>(work.curves));
    if (!work.line.corners.empty())
        curves_.SetLine(work.line);
    for (const WorkCurve& kept : work.kept) {
        MeasuredCurve curve;
        curve.name = kept.name;
        curve.xTitle = kept.xTitle;
        curve.yTitle = kept.yTitle;
        curve.x = kept.x;
        curve.y = kept.y;
        (void)curves_.AddKept(std::move(curve));
    }
}

int MainWindow::OpenWork(const std::string& file)
{
    if (map_)
        return host_ ? host_->openWindow(file) : 0;
    Work work;
    std::vector<std::string> notes;
    std::string error;
    if (!readWork(file, work, notes, error)) {
        AfxMessageBox(file + ": " + error, MB_ICONERROR);
        return 0;
    }
    if (!notes.empty() && askAboutLines(this, "Open work file",
                                        baseNameOf(file) + " holds what is not understood:", notes,
                                        "Open the rest?", "Open") != IDOK)
        return 0;
    for (WorkMap& map : work.maps)  // those of a crash come back with the question about it
        map.unsavedAreas = map.unsavedModel = std::string();
    if (!showWork(work, baseNameOf(file)))
        return 0;
    workFile_ = file;
    workCopy_.begin(workNow(1));
    KeepWork();
    recent_.load();
    recent_.add(file);
    setMenu();
    status_.SetMessage("Opened " + baseNameOf(file) + " with " + countText(maps_.count(), "map"));
    return 1;
}

/// Shows work in a window without maps; 0 when none of its maps was opened.
int MainWindow::showWork(const Work& work, const std::string& name)
{
    isWorkShown_ = 1;
    links_.setBy(LinkBy::nothing);  // or each map would change those before it
    options_.skyGrid = work.grid;
    int current = -1;
    std::vector<std::pair<int, const WorkMap*>> shown;
    for (std::size_t i = 0; i < work.maps.size(); ++i) {
        const std::string found = foundFile(work.maps[i].file, "map");
        const int count = maps_.count();
        if (found.empty() ||
            !(map_ ? AddMap(found, work.maps[i].plane) : OpenMap(found, work.maps[i].plane)) ||
            maps_.count() == count)
            continue;
        showWorkMap(work.maps[i]);
        shown.emplace_back(maps_.current(), &work.maps[i]);
        if (current < 0 || static_cast<int>(i) == work.current)
            current = maps_.current();
    }
    isWorkShown_ = 0;
    if (!map_) {
        status_.SetMessage("None of the maps of " + name + " was opened");
        return 0;
    }
    for (const auto& [map, from] : shown)
        if (!from->contours.empty() && ChooseMap(map))
            showWorkContours(*from);
    for (const LinkPart part : {linkZoom, linkPointer, linkColours, linkAreas})
        if (links_.wants(part) != ((work.linked & part) != 0))
            links_.toggle(part);
    links_.setBy(work.linkBy);
    if (const std::string marks = foundFile(work.marks, "list of marks"); !marks.empty())
        (void)openMarks(marks);
    for (const auto& seat : seats_)
        seat->window.SetAreaNames(work.areaNames);
    (void)ChooseMap(current);
    if (work.shown != MapsShown::tabs)
        showWay(work.shown);
    if (work.areaNumbers && !areaNumbers_.isShown())
        toggleAreaNumbers();
    if (work.areaValues && !showTable_)
        toggleTable();
    if (work.surface && !surface_.isShown())
        toggleSurface();
    showWorkCurves(work);
    view().SetFocus();
    tellLinks();
    return 1;
}

}  // namespace pavane
