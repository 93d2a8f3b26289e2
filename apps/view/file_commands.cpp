// The File menu: maps, areas, masks and pictures.
#include "apps/view/file_ending.h"
#include "apps/view/long_work.h"
#include "apps/view/main_menu.h"
#include "apps/view/MainWindow.h"
#include "apps/view/same_file.h"
#include "apps/view/save_picture.h"
#include "apps/view/view_dialogs.h"
#include "pavane/axes/maps/map_titles.h"
#include "pavane/trackers/areas/area_names.h"
#include "pavane/trackers/collections/ATrackerArrayInAxis.h"
#include "pavane/trackers/regions/area_kind.h"
#include "platform/drop_files.h"
#include "platform/file_dialog.h"
#include "platform/message.h"
#include "tessel/fits_map.h"
#include "tessel/paths.h"

#include <algorithm>
#include <cstdio>
#include <ctime>

namespace pavane
{

namespace
{

constexpr const char* maskFilter = "FITS masks (*.fits)|*.fits|";

}  // namespace

int MainWindow::runFileCommand(unsigned id)
{
    if (id >= idRecent && id < idRecent + RecentFiles::most) {
        openRecent(id - idRecent);
        return 1;
    }
    switch (id) {
    case idOpenMap:
        openMapCommand();
        return 1;
    case idExit:
        PostMessage(WM_CLOSE);
        return 1;
    }
    if (!map_)
        return 0;
    switch (id) {
    case idOpenAreas:
        openAreasCommand();
        return 1;
    case idSaveAreas:
        (void)saveAreasCommand();
        return 1;
    case idSaveAreasAs:
        (void)saveAreasAs();
        return 1;
    case idSkyRegions:
        skyRegions_ = !skyRegions_;
        return 1;
    case idAreasOfMask:
        return addAreasOfMaskFile(folderOf(map_->file())), 1;
    case idAreasOfModel:
        if (model_.session().isOpen() && modelMap_ != maps_.current())
            status_.SetMessage("The components belong to another map of this window");
        else if (model_.session().isOpen())
            addAreasOfComponents(model_.session().components().list(), map_->inputs().frame);
        return 1;
    case idSaveMask:
        saveMask();
        return 1;
    case idSavePicture:
        savePicture();
        return 1;
    case idPrint:
    case idPrintPreview:
    case idPageSetup:
        return print(id);
    }
    return 0;
}

int MainWindow::print(unsigned id)
{
    ATableWnd* const table = tableOf(part());
    const auto store = [this] {
        return part() == Part::numbers       ? table_.storeEditor()
               : part() == Part::areaNumbers ? areaNumbers_.storeEditor()
                                             : model_.table().storeEditor();
    };
    if (table && !store())
        return 1;
    ABWindow& printed = table ? static_cast<ABWindow&>(*table) : shownPicture();
    return printing_.run(id, printed, mapTitle(map_->inputs().map.header), *this);
}

void MainWindow::openMapCommand()
{
    CString name = map_ ? folderOf(map_->file()) : CString();
    if (askName(name, mapFilter, "Open", 1, "fits"))
        (void)OpenMap(name, -1);
}

LRESULT MainWindow::WindowProc(unsigned message, WPARAM wParam, LPARAM lParam)
{
    if (message == WM_DROPFILES)
        return openDropped(DroppedFiles(lParam), (wParam & MK_SHIFT) != 0), 0;
    return AreaWindow::WindowProc(message, wParam, lParam);
}

void MainWindow::openDropped(const std::vector<CString>& files, int intoThis)
{
    std::vector<CString> inOrder = files;  // areas lie on the map that comes with them
    std::stable_partition(inOrder.begin(), inOrder.end(),
                          [](const auto& f) { return !isAreaFile(f); });
    const HWND self = GetSafeHwnd();
    for (const CString& file : inOrder) {
        if (CWnd::FromHandle(self) != this)
            return;
        if (isAreaFile(file))
            (void)OpenAreas(file);
        else if (map_ && intoThis)
            (void)AddMap(file, -1);
        else if (map_ && host_)
            (void)host_->openWindow(file);
        else
            (void)OpenMap(file, -1);
    }
}

void MainWindow::openRecent(std::size_t i)
{
    if (i >= recent_.files().size())
        return;
    const std::string file = recent_.files()[i];
    if (IsFileExists(file)) {
        (void)OpenMap(file, -1);
        return;
    }
    recent_.remove(file);
    setMenu();
    AfxMessageBox(file + ": the file is not there any more", MB_ICONERROR);
}

void MainWindow::openAreasCommand()
{
    CString name = folderOf(session_.file().empty() ? map_->file() : session_.file());
    if (askName(name, openAreaFilter, "Open areas", 1, "areas"))
        (void)OpenAreas(name);
}

int MainWindow::agreesToReplace(const std::string& file, const AreaNotes& notes)
{
    const int shown = areas().count();
    const std::string replace =
        shown ? "Replace the " + countText(shown, "area") +
                    (isModified() ? " shown, which are not saved?" : " shown?")
              : "Show them?";
    if (!notes.read && notes.loss.empty())
        return !shown || AfxMessageBox(baseNameOf(file) + " holds no area. " + replace,
                                       MB_YESNO | MB_ICONQUESTION | MB_DEFBUTTON2) == IDYES;
    if (!notes.lines.empty()) {
        const std::string heading = std::to_string(notes.read) + " of " +
                                    countText(notes.promised, "area") + " could be read from " +
                                    baseNameOf(file) + ".";
        if (!notes.read) {
            (void)askAboutLines(this, "Open areas", heading, notes.lines, "There is none to show.",
                                "OK");
            return 0;
        }
        return askAboutLines(this, "Open areas", heading, notes.lines, replace,
                             shown ? "Replace" : "Show") == IDOK;
    }
    return !isModified() ||
           AfxMessageBox(replace, MB_YESNO | MB_ICONQUESTION | MB_DEFBUTTON2) == IDYES;
}

int MainWindow::OpenAreas(const std::string& file)
{
    CString map = folderOf(file);
    if (!map_ && (!askName(map, mapFilter, "Map of the areas in " + baseNameOf(file), 1, "fits") ||
                  !OpenMap(map, -1) || !map_))
        return 0;
    ATrackerArrayInAxis read;
    AreaNotes notes;
    std::string error;
    if (!openAreas(file, place(), read, notes, error)) {
        AfxMessageBox(error, MB_ICONERROR);
        return 0;
    }
    if (!agreesToReplace(file, notes))
        return 0;
    replaceAreas(read, file, notes.lines.empty());
    return 1;
}

void MainWindow::replaceAreas(const ARPTrackerArray& read, const std::string& file, int whole)
{
    if (!giveAreas(read, "Open areas"))
        return;
    agreedLosses_.clear();
    if (whole)
        areas().SetSaved();
    session_.cameFrom(file);  // Save must not write over what could not be read
    if (whole)
        session_.saved(file);
    areas().FillAreasCB(&view());
    view().FollowAreas();
}

void MainWindow::offerLeftovers()
{
    const std::vector<LeftoverAreas> found = session_.autosave().leftovers();
    if (found.empty())
        return;
    const std::vector<LeftWork> works = leftWork(session_.folder());
    for (const LeftoverAreas& left : found) {
        if (isPartOf(works, left.file))
            continue;  // the next start asks about all of that work
        ATrackerArrayInAxis read;
        AreaNotes notes;
        std::string error;
        if (!openAreas(left.file, place(), read, notes, error) || !read.count())
            continue;
        const int open = !read(read.count() - 1)->IsReady();
        const int closed = read.count() - open;
        const std::string what = !open     ? countText(closed, "area")
                                 : !closed ? "polygon that was not closed yet"
                                           : countText(closed, "area") + " and an open polygon";
        const int answer =
            AfxMessageBox("The last session with this map ended without saving. Its " + what +
                              ", changed " + ageText(left.time, std::time(nullptr)) +
                              ", can be brought back.\n\nBring them back? (No deletes them.)",
                          MB_YESNOCANCEL | MB_ICONQUESTION);
        if (answer == IDCANCEL)
            return;  // asked again next time
        if (answer == IDYES) {
            replaceAreas(read, std::string(), 0);
            areas().history().markUnsaved();
            mapAreasChanged(view());
            if (!session_.hasCopy())
                return;  // the old copy stays the only one
        }
        removeCopy(left.file);
        if (answer == IDYES)
            return;
    }
}

int MainWindow::saveAreasCommand()
{
    return session_.file().empty() ? saveAreasAs() : saveAreasTo(session_.file());
}

int MainWindow::saveAreasAs()
{
    CString name =
        session_.file().empty() ? besideFile(map_->file(), "areas") : CString(session_.file());
    return askName(name, saveAreaFilter, "Save areas", 0, "areas") && saveAreasTo(name);
}

int MainWindow::mayWrite(const std::string& file, int asAreas)
{
    const int ownPalette = options_.palette.find('/') != std::string::npos;
    std::vector<NamedFile> inputs = {{"palette", ownPalette ? options_.palette : ""},
                                     {"list of marks", marksFile_}};
    for (int i = 0; i < maps_.count(); ++i) {
        inputs.push_back({"map", documentOf(i)->file()});
        if (i == maps_.current())
            continue;
        const AreaSession& other = sessionOf(i);
        inputs.push_back({"area file", other.file()});
        inputs.push_back({"area file", other.source()});
    }
    if (!asAreas) {
        inputs.push_back({"area file", session_.file()});
        inputs.push_back({"area file", session_.source()});
        inputs.push_back({"file of names", namesFileOf(session_.file())});
        inputs.push_back({"file of names", namesFileOf(session_.source())});
    }
    const NamedFile* const same = sameFileAmong(file, inputs);
    if (same)
        AfxMessageBox(file + " is the " + same->what + " that is open. Choose another name.",
                      MB_ICONERROR);
    return !same;
}

int MainWindow::saveAreasTo(const std::string& file)
{
    if (!table_.storeEditor() || !areaNumbers_.storeEditor() || !mayWrite(file, 1) ||
        !mayWrite(namesFileOf(file), 1) || !closeOpenArea("saved"))
        return 0;
    const AreaNotes losses = lossesOfSaving(file, place(), areas());
    if (!losses.lines.empty() && losses.lines != agreedLosses_ &&
        askAboutLines(this, "Save areas", baseNameOf(file) + " cannot hold everything:",
                      losses.lines, "Save all the same?", "Save") != IDOK)
        return 0;
    std::string error;
    if (!saveAreas(file, place(), areas(), error)) {
        AfxMessageBox(error, MB_ICONERROR);
        return 0;
    }
    agreedLosses_ = losses.lines;
    areas().SetSaved();
    session_.saved(file);
    updateTitle();
    status_.SetMessage("Saved " + countText(areas().count(), "area") + " in " + file);
    return 1;
}

void MainWindow::saveMask()
{
    CString name = folderOf(map_->file()) + "mask.fits";
    if (!closeOpenArea("saved") || !askName(name, maskFilter, "Save mask", 0, "fits") ||
        !mayWrite(name, 0))
        return;
    const AreaPlace on = place();
    ABitMatrix mask(on.rows, on.columns);
    std::string error = "there is no memory for a mask";
    if (mask.rows())
        areas().FillMatrix(mask, on.columns, on.rows, on.range);
    int written = 0;
    const auto write = [&](const ProgressFunction& tell) {
        return written = writeFitsMask(name, mask, map_->inputs().map.header, error, tell);
    };
    if (mask.rows() && !doLongWork(this, "Saving " + baseNameOf(name), write)) {
        status_.SetMessage("The mask was not saved");
        return;
    }
    if (!written) {
        AfxMessageBox(name + ": " + error, MB_ICONERROR);
        return;
    }
    status_.SetMessage("Saved a mask of " + std::to_string(mask.count()) + " cells in " + name +
                       (!areas().count() ? ": without an area it is the whole map"
                        : !mask.count()  ? ": no area has a cell of the map"
                                         : ""));
}

void MainWindow::savePicture()
{
    if (!map_)
        return;
    std::string name = besideFile(map_->file(), "png");
    if (savePictureOf(shownPicture(), mapTitle(map_->inputs().map.header), name,
                      [this](const std::string& file) { return mayWrite(file, 0); }))
        status_.SetMessage("Saved a picture in " + name);
}

}  // namespace pavane
