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
    if (id != idSaveWork || !map_)
        return 0;
    CString name = workFile_.empty() ? besideFile(map_->file(), "work") : CString(workFile_);
    if (MayLeaveAll() &&
        fnFileDialog1(name, workFilter, "Save work file", 0, "work", OFN_OVERWRITEPROMPT, this) &&
        !name.empty())
        (void)SaveWork(name);
    return 1;
}

/// What the window shows now; areas and components that are in no file are not of it.
Work MainWindow::workNow()
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
    for (int i = 0; i < maps_.count(); ++i) {
        const MapDocument& document = *documentOf(i);
        MapWindow& window = viewOf(i);
        WorkMap map;
        map.file = document.file();
        map.plane = document.planes() > 1 ? document.plane() : -1;
        map.areas = sessionOf(i).file().empty() ? sessionOf(i).source() : sessionOf(i).file();
        if (model_.session().isOpen() && modelMap_ == i)
            map.model = model_.session().file();
        map.hasView = window.IsRangeZoomed();
        if (map.hasView)
            map.view = window.GetPlot()->getMinMax();
        const MapDisplay display = shownDisplay(window);
        map.display = display.styleText();
        map.hasRange = display.colours.range.min < display.colours.range.max;
        map.low = display.colours.range.min;
        map.high = display.colours.range.max;
        work.maps.push_back(std::move(map));
    }
    return work;
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
    if (const std::string areas = foundFile(map.areas, "area file"); !areas.empty())
        (void)OpenAreas(areas);
    if (const std::string model = foundFile(map.model, "component file"); !model.empty())
        (void)model_.Open(model);
    MapDisplay display = shownDisplay(view());
    (void)display.readStyle(map.display);
    if (map.hasRange)
        display.colours.range = {map.low, map.high};
    (void)showDisplay(view(), display);
    displayChanged();
    if (map.hasView)
        view().SetNewMinMax(map.view);
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
    links_.setBy(LinkBy::nothing);  // or each map would change those before it
    options_.skyGrid = work.grid;
    int current = -1;
    for (std::size_t i = 0; i < work.maps.size(); ++i) {
        const std::string found = foundFile(work.maps[i].file, "map");
        const int count = maps_.count();
        if (found.empty() ||
            !(map_ ? AddMap(found, work.maps[i].plane) : OpenMap(found, work.maps[i].plane)) ||
            maps_.count() == count)
            continue;
        showWorkMap(work.maps[i]);
        if (current < 0 || static_cast<int>(i) == work.current)
            current = maps_.current();
    }
    if (!map_) {
        status_.SetMessage("None of the maps of " + baseNameOf(file) + " was opened");
        return 0;
    }
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
    workFile_ = file;
    recent_.load();
    recent_.add(file);
    setMenu();
    tellLinks();
    status_.SetMessage("Opened " + baseNameOf(file) + " with " + countText(maps_.count(), "map"));
    return 1;
}

}  // namespace pavane
