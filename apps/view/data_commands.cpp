// What the menu of the data window does.
#include "apps/view/data_menu.h"
#include "apps/view/DataWindow.h"
#include "apps/view/file_ending.h"
#include "apps/view/key_help.h"
#include "apps/view/same_file.h"
#include "apps/view/save_picture.h"
#include "platform/file_dialog.h"
#include "platform/message.h"
#include "tessel/paths.h"

namespace pavane
{

namespace
{

constexpr const char* openFilter =
    "Visibilities and maps (*.uvfits *.uvf *.fits *.fit *.fts *.FITS)|"
    "*.uvfits *.uvf *.fits *.fit *.fts *.FITS|All files (*)|*|";
constexpr const char* groupFilter = "Frequency groups (*.groups)|*.groups|";
constexpr double zoomFactor = 2;
/// What minus in panels takes back.
constexpr double zoomOfPanels = 1.5;

/// The command of tables that one of the window's own stands for.
unsigned tableCommandFor(unsigned id)
{
    return id == idUndo        ? ID_TABLE_UNDO
           : id == idRedo      ? ID_TABLE_REDO
           : id == idCopy      ? ID_TABLE_COPY_SELECTION
           : id == idSelectAll ? ID_TABLE_SELECT_ALL
                               : id;
}

int isGroupCommand(unsigned id)
{
    for (const FreqCommand& command : freqCommands)
        if (command.id == id)
            return 1;
    return 0;
}

}  // namespace

int DataWindow::OnCommand(unsigned id, unsigned code, CWnd* control)
{
    if (code != 0) {
        for (const UvTable table : uvTables)
            if (control == selectors_[indexOf(table)].get())
                return tableChanged(table, code == MTN_MARKS), 1;
        if (control == &groups_)
            return updateTitle(), 1;
        return CWnd::OnCommand(id, code, control);
    }
    // a key of the menu, while the pointer drags something
    if (CWnd::GetCapture())
        return 1;
    return runFileCommand(id) || runPanelCommand(id) || runViewCommand(id) || runTableCommand(id) ||
           shownWindow().RunCommand(id) || CWnd::OnCommand(id, code, control);
}

int DataWindow::runFileCommand(unsigned id)
{
    if (id >= idRecent && id < idRecent + RecentFiles::most)
        return openRecent(id - idRecent), 1;
    switch (id) {
    case idOpenData:
        return openCommand(), 1;
    case idExit:
        PostMessage(WM_CLOSE);
        return 1;
    }
    if (!data_)
        return 0;
    switch (id) {
    case idOpenGroups:
        return openGroups(), 1;
    case idSaveGroups:
        return (void)saveGroups(), 1;
    case idSaveGroupsAs:
        return (void)saveGroupsAs(), 1;
    case idSavePlot:
        return plotSavePicture(), 1;
    case idTimes:
        return askTimes(), 1;
    case idPrint:
    case idPrintPreview:
    case idPageSetup:
        return print(id);
    }
    return 0;
}

int DataWindow::print(unsigned id)
{
    const std::string& object = data_->observation().file().header().object;
    ABWindow& printed = isPlotActive() ? static_cast<ABWindow&>(shownWindow())
                                       : static_cast<ABWindow&>(activeTable());
    return printing_.run(id, printed, object.empty() ? "visibilities" : object, *this);
}

int DataWindow::runViewCommand(unsigned id)
{
    switch (id) {
    case idNextPart:
        return goToPart(1), 1;
    case idPreviousPart:
        return goToPart(-1), 1;
    case idNextTab:
        return goToTab(1), 1;
    case idPreviousTab:
        return goToTab(-1), 1;
    case idKeys:
        return showDataKeys(this), 1;
    case idAbout:
        return showAbout(), 1;
    case idStopReading:
        return data_ ? stopReading() : void(), 1;
    case idGoOnReading:
        return data_ ? goOnReading() : void(), 1;
    case idZoomIn:
        if (AChartWnd* const chart = panels())
            return chart->ZoomFocus(zoomOfPanels), 1;
        if (APlotWnd& shown = shownWindow(); shown.GetPlot())
            shown.ZoomAbout(shown.GetPlot()->getGraphRect().CenterPoint(), zoomFactor);
        return 1;
    }
    return 0;
}

/// What acts on the table with the focus, or that of the shown tab.
int DataWindow::runTableCommand(unsigned id)
{
    if (id == idCopy && isPlotActive())
        return shownWindow().RunCommand(ID_COPY_TO_CLIPBOARD);
    if (isGroupCommand(id) && page() != &groups_)
        return 1;
    const unsigned command = tableCommandFor(id);
    return (command != id || tableCommandOf(command) || isGroupCommand(command) ||
            (command >= ID_MARK_SELECTED && command <= ID_MARK_INVERT)) &&
           activeTable().RunTableCommand(command);
}

// --- files

void DataWindow::openCommand()
{
    CString name = data_ ? folderOf(data_->file()) : CString();
    if (fnFileDialog1(name, openFilter, "Open", 1, "uvfits", OFN_FILEMUSTEXIST, this) &&
        !name.empty())
        (void)OpenFile(name);
}

void DataWindow::openRecent(std::size_t i)
{
    if (i >= recent_.files().size())
        return;
    const std::string file = recent_.files()[i];
    if (IsFileExists(file)) {
        (void)OpenFile(file);
        return;
    }
    recent_.remove(file);
    setMenu();
    AfxMessageBox(file + ": the file is not there any more", MB_ICONERROR);
}

void DataWindow::openGroups()
{
    CString name = folderOf(data_->groupFile().empty() ? data_->file() : data_->groupFile());
    std::string error;
    if (!fnFileDialog1(name, groupFilter, "Open frequency groups", 1, "groups", OFN_FILEMUSTEXIST,
                       this) ||
        name.empty() || !MayLeaveGroups())
        return;
    if (!data_->loadGroups(name, error)) {
        AfxMessageBox(error, MB_ICONERROR);
        return;
    }
    groups_.ReConstruct();
    groups_.SetSaved();
    updateTitle();
    status_.SetMessage("Opened the frequency groups in " + name);
}

int DataWindow::saveGroups()
{
    return data_->groupFile().empty() ? saveGroupsAs() : saveGroupsTo(data_->groupFile());
}

int DataWindow::saveGroupsAs()
{
    CString name = data_->groupFile().empty() ? besideFile(data_->file(), "groups")
                                              : CString(data_->groupFile());
    return fnFileDialog1(name, groupFilter, "Save frequency groups", 0, "groups",
                         OFN_OVERWRITEPROMPT, this) &&
           !name.empty() && saveGroupsTo(name);
}

int DataWindow::mayWrite(const std::string& file)
{
    const std::vector<NamedFile> inputs = {{"data file", data_->file()}, {"model", modelFile_}};
    const NamedFile* const same = sameFileAmong(file, inputs);
    if (same)
        AfxMessageBox(file + " is the " + same->what + " that is open. Choose another name.",
                      MB_ICONERROR);
    return !same;
}

int DataWindow::saveGroupsTo(const std::string& file)
{
    std::string error;
    if (!mayWrite(file) || !groups_.IsValidClose(1))
        return 0;
    if (!data_->saveGroups(file, error)) {
        AfxMessageBox(error, MB_ICONERROR);
        return 0;
    }
    groups_.SetSaved();
    updateTitle();
    status_.SetMessage("Saved the frequency groups in " + file);
    return 1;
}

void DataWindow::plotSavePicture()
{
    if (!data_)
        return;
    std::string name = besideFile(data_->file(), "png");
    const auto may = [this](const std::string& file) { return mayWrite(file); };
    if (savePictureOf(shownWindow(), baseNameOf(data_->file()), name, may))
        status_.SetMessage("Saved a picture in " + name);
}

// --- how the lines of the menus look

int DataWindow::isOffered(const CMenu::Line& line, CMenu& ofTable)
{
    const unsigned id = line.id;
    if (id == 0 || id == idOpenData || id == idExit || id == idKeys || id == idAbout ||
        (id >= idNextPart && id <= idPreviousTab) ||
        (id >= idRecent && id < idRecent + RecentFiles::most))
        return 1;
    if (!data_ || id == idNoRecent)
        return 0;
    if (id >= idNextPanels && id <= idFewerPanels)
        return panels() != nullptr;
    if (id == idStopReading)
        return data_->isReading() || data_->observation().isFilling() ||
               (panels() && panels()->IsReading());
    if (id == idGoOnReading)
        return data_->isStopped() || data_->observation().isStopped() ||
               (panels() && panels()->IsStopped());
    if (id == ID_ZOOM_MINUS || id == ID_WHOLE_MAP || id == ID_VIEW_BACK || id == ID_VIEW_FORWARD)
        return shownWindow().IsCommandEnabled(id);
    if (id == idCopy && isPlotActive())
        return 1;
    if (isGroupCommand(id) && page() != &groups_)
        return 0;
    for (const CMenu::Line& known : ofTable.lines())
        if (known.id == tableCommandFor(id))
            return known.enabled;
    return 1;
}

void DataWindow::OnInitMenuPopup(CMenu& popup)
{
    CMenu ofTable;  // a table puts its own lines in and takes others out
    for (const CMenu::Line& line : popup.lines())
        ofTable.AppendMenu("x", tableCommandFor(line.id));
    activeTable().amMenuParse(&ofTable);
    const int inGroups = page() == &groups_;
    for (CMenu::Line& line : popup.lines()) {
        line.enabled = isOffered(line, ofTable);
        line.checked = line.id == idColoursBy + static_cast<unsigned>(pointView_.colour) ||
                       (line.id == idMeans && pointView_.seconds > 0);
        if (line.id == idCopy)
            line.text = isPlotActive() ? "&Copy picture\tCtrl+C" : "&Copy selection\tCtrl+C";
        else if (line.id == idUndo)
            line.text = "&Undo " + (inGroups ? groups_.UndoLabel() : CString()) + "\tCtrl+Z";
        else if (line.id == idRedo)
            line.text = "&Redo " + (inGroups ? groups_.RedoLabel() : CString()) + "\tCtrl+Shift+Z";
    }
}

}  // namespace pavane
