// The menus of the window, and the work on rounds.
#include "apps/clean/clean_keys.h"
#include "apps/clean/clean_menu.h"
#include "apps/clean/CleanWindow.h"
#include "apps/clean/job_text.h"
#include "apps/view/part_menu.h"
#include "pavane/containers/MemoryFile.h"
#include "pavane/dialogs/ACleanParameterPage.h"
#include "pavane/dialogs/ASelfCalPage.h"
#include "pavane/trackers/collections/ATrackerArrayInAxis.h"
#include "platform/CMenu.h"
#include "platform/file_dialog.h"
#include "platform/message.h"
#include "tessel/paths.h"
#include "tessel/uvfits/AUVXFile.h"

#include <algorithm>
#include <iterator>

namespace pavane
{

namespace
{

constexpr int logTab = 2;  ///< of the tabs beside the map
constexpr const char* profileSection = "pavane-clean";
constexpr const char* dataFilter =
    "Visibilities (*.uvfits *.uvf *.fits *.UVFITS)|*.uvfits *.uvf *.fits *.UVFITS|"
    "Studies (study.txt)|study.txt|MeasurementSets (table.dat)|table.dat|"
    "All files (*)|*|";

int isPlotCommand(unsigned id) { return commandOf(id) != nullptr; }

/// Folders are chosen by a file in them.
std::string studyOf(const std::string& file)
{
    const std::string name = baseNameOf(file);
    const std::string folder = folderOf(file);
    return (name == "study.txt" || name == "table.dat") && folder.size() > 1
               ? folder.substr(0, folder.size() - 1)
               : file;
}

int isAlways(unsigned id)
{
    return id == 0 || id == idOpenData || id == idCloseStudy || id == idKeys || id == idAbout ||
           (id >= idRecent && id < idRecent + RecentFiles::most);
}

int isOfMap(unsigned id)
{
    return id == idOpenAreaFile || id == idSaveAreaFile || id == idAreasOfMask ||
           id == idAreasOfRound || id == idAreaSets || id == idSavePicture ||
           (id >= idPrint && id <= idPageSetup);
}

/// Shows other components when it has ended.
int makesOtherRound(unsigned id)
{
    constexpr unsigned ids[] = {idCleanRound, idParameters, idSelection, idFirstModel};
    return std::find(std::begin(ids), std::end(ids), id) != std::end(ids);
}

int isJobCommand(unsigned id) { return id == idFinishCycle || id == idStopRound; }

}  // namespace

int CleanWindow::OnCommand(unsigned id, unsigned code, CWnd* control)
{
    if (code == TCN_SELCHANGE && control == &tabs_)
        return tabBefore_ = -1, showMarks(), 1;
    if (code != 0)
        return AreaWindow::OnCommand(id, code, control);
    if (CWnd::GetCapture())
        return 1;        // a key of the menu while the pointer drags an area
    plots_.keepFlags();  // what is done next counts with them
    // a button of the toolbar is about areas, whatever has the keyboard
    if (!control && runPartCommand(id))
        return 1;
    if (makesOtherRound(id) && !session_.isRunning() && !mayDropEdits())
        return 1;
    return plots_.run(id, this) || runFileCommand(id) || runAreaCommand(id) ||
           runCleanCommand(id) || runStudyCommand(id) || runViewCommand(id) ||
           AreaWindow::OnCommand(id, code, control) || map_.RunCommand(id);
}

void CleanWindow::OnInitMenuPopup(CMenu& popup)
{
    const int isOpen = session_.isOpen(), runs = session_.isRunning();
    for (CMenu::Line& line : popup.lines())
        if (const PartCommand* const command = partCommandOf(line.id))
            line.text = command->onMap;
    map_.amMenuParse(&popup);  // knows its own commands only
    for (CMenu::Line& line : popup.lines()) {
        if (isPlotCommand(line.id)) {
            line.enabled = line.enabled && shown_.isOpen();
        } else if (line.id == idDelete) {
            line.enabled = map_.IsCommandEnabled(ID_TRACK_DELETE);
            line.text = map_.IsVertexFocused() ? "&Delete vertex\tDel" : "&Delete areas\tDel";
        } else if (isJobCommand(line.id)) {
            line.enabled = runs;
        } else if (line.id >= idMapKind && line.id < idMapKind + mapKinds) {
            const auto kind = static_cast<MapKind>(line.id - idMapKind);
            line.enabled = isOpen && session_.shown() >= 0;
            line.checked = shown_.isOpen() && shown_.kind() == kind;
        } else if (line.id == idBlink) {
            line.enabled = shown_.isOpen();
            line.checked = blinks_;
        } else if (line.id == idAreasInPictures) {
            line.enabled = shown_.isOpen();
            line.checked = map_.GetAreasInPicture();
        } else if (line.id == idCompare) {
            line.enabled = shown_.isOpen();
            line.checked = compared_ >= 0 && compared_ == session_.shown();
        } else if (isAlways(line.id)) {
            line.enabled = 1;
        } else if (isOfMap(line.id)) {
            line.enabled = shown_.isOpen();
        } else {
            line.enabled = line.id != idNoRecent && isOpen && (!runs || line.id > idMapKind);
        }
    }
    showPartCommands(popup);
}

int CleanWindow::runFileCommand(unsigned id)
{
    if (id >= idRecent && id < idRecent + RecentFiles::most)
        return openRecent(id - idRecent), 1;
    switch (id) {
    case idOpenData: {
        CString name = session_.isOpen() ? folderOf(session_.data()) : CString();
        if (fnFileDialog1(name, dataFilter, "Open data or a study", 1, "uvfits", OFN_FILEMUSTEXIST,
                          this) &&
            !name.empty())
            (void)Open(studyOf(name));
        return 1;
    }
    case idExport:
        return exportShown(), 1;
    case idCloseStudy:
        return PostMessage(WM_CLOSE), 1;
    case idSavePicture:
        return savePicture(), 1;
    case idPrint:
    case idPrintPreview:
    case idPageSetup:
        return print(id);
    }
    return 0;
}

int CleanWindow::runCleanCommand(unsigned id)
{
    switch (id) {
    case idCleanRound:
        return clean(), 1;
    case idStopRound:
        return stopRound(), 1;
    case idFinishCycle:
        if (session_.isRunning())
            status_.SetMessage(session_.finishCycle() ? "Ends after this cycle"
                                                      : "Only a round that stops after each cycle "
                                                        "can end with one; Ctrl+F5 stops now");
        return 1;
    case idParameters:
        return askParameters(), 1;
    case idBeamShape:
        return askBeamShape(), 1;
    case idSelection:
        return askSelection(), 1;
    case idSelfCalibrate:
        return (void)selfCalibrate(), 1;
    case idSwitchGains:
    case idRemoveGains:
        return changeChain(id == idRemoveGains), 1;
    case idGoOn:
        if (rounds_.selected() >= 0)
            showRound(rounds_.selected());
        return 1;
    }
    return 0;
}

int CleanWindow::runViewCommand(unsigned id)
{
    if (id >= idMapKind && id < idMapKind + mapKinds)
        return chooseMap(static_cast<MapKind>(id - idMapKind)), 1;
    switch (id) {
    case idBlink:
        return setBlink(!blinks_), 1;
    case idCompare:
        return compareWith(session_.shown()), 1;
    case idNextMap:
        return stepMap(1), 1;
    case idPreviousMap:
        return stepMap(-1), 1;
    case idColoursOfMap:
        return showColours(), 1;
    case idOwnRange:
        return useOwnRange(), 1;
    case idDisplayOfMap:
        return showDisplay(), 1;
    case idAreasInPictures:
        map_.SetAreasInPicture(!map_.GetAreasInPicture());
        return 1;
    case idNextPart:
        return goToPart(1), 1;
    case idPreviousPart:
        return goToPart(-1), 1;
    case idKeys:
        return showCleanKeys(this), 1;
    case idAbout:
        return showAboutClean(), 1;
    }
    return 0;
}

// --- rounds

/// The areas as they are drawn, and what the user is told of their cells; asks about what is likely
/// a slip.
int CleanWindow::roundAreas(std::string& stored, CString& notice)
{
    stored.clear();
    notice = "There is no area: cleans the whole map";
    if (areas().count() == 0)
        return 1;
    const AreaPlace on = place();
    MemoryFile bytes;
    ABitMatrix mask(on.rows, on.columns);
    if (!mask.rows() || !storeAreas(areas(), bytes)) {
        complain("There is not enough memory for the areas");
        return 0;
    }
    areas().FillMatrix(mask, on.columns, on.rows, on.range);
    const std::int64_t cells = mask.count();
    if (cells == 0)
        return AfxMessageBox("No area has a cell of the map, so nothing can be cleaned. Clean the "
                             "whole map instead?",
                             MB_YESNO | MB_ICONQUESTION | MB_DEFBUTTON2) == IDYES;
    stored = bytes.bytes();
    notice = "Cleans " + std::to_string(cells) + " cells of " + countText(areas().count(), "area");
    return 1;
}

void CleanWindow::clean()
{
    if (!session_.isOpen() || session_.isRunning() || session_.shown() < 0)
        return;
    const long long iterations = row_.GetIterations();
    if (iterations < 1) {
        status_.SetMessage("The number of iterations is a whole number from 1 on");
        return row_.FocusIterations();
    }
    if (!closeOpenArea("cleaned in"))
        return;
    std::string stored;
    CString notice;
    if (!roundAreas(stored, notice))
        return;
    session_.parameters.iterations = iterations;
    std::string error;
    setBlink(0);
    if (!session_.startRound(stored, error))
        return complain(error);
    status_.SetMessage(notice);
}

void CleanWindow::jobBegan()
{
    // controls of the row are about to be disabled, and the keyboard would be nowhere
    if (const CWnd* const focus = CWnd::GetFocus(); focus && focus->GetParent() == &row_)
        map_.SetFocus();
    strip_.Follow(session_.progress(), session_.jobName());
    if (tabs_.GetCurSel() != logTab)
        tabBefore_ = tabs_.GetCurSel();
    tabs_.SetCurSel(logTab);
    showMarks();
    refreshRow();
}

void CleanWindow::jobTold(const RunNews& news)
{
    strip_.SetNumbers(news.text);
    map_.SetCross(news.row, news.column);
    if (news.point.peak > 0)
        curve_.Add(news.point);
}

void CleanWindow::stopRound()
{
    if (session_.isRunning())
        session_.stop();
}

void CleanWindow::jobEnded(int isDone, const CString& error)
{
    if (!created_)
        return;
    map_.SetCross(-1, -1);
    strip_.End(isDone ? "" : error.empty() ? "stopped; nothing of it was kept" : "failed");
    if (isDone && wanted_ == MapKind::dirty)
        wanted_ = MapKind::residual;
    if (isDone && tabBefore_ >= 0 && !isWithin(CWnd::GetFocus(), &log_))
        tabs_.SetCurSel(tabBefore_);
    if (isDone)
        tabBefore_ = -1;
    showMarks();
    roundsChanged();
    refreshRow();
    if (isDone && session_.isOpen())
        tellOfChain();
    if (importsWithout(error))
        return;
    complain(error);
}

void CleanWindow::askParameters()
{
    if (!session_.isOpen() || session_.isRunning())
        return;
    ACleanParameterPM wish(session_.parameters, longestBaseline(session_.study().facts()));
    wish.parameters.iterations = std::max(1LL, row_.GetIterations());
    if (!AskCleanParameters(this, wish))
        return;
    const int isOther = isOtherBeam(wish.parameters, session_.parameters);
    (void)wish.StoreToINI(nullptr, profileSection, 1);
    session_.parameters = wish.parameters;
    row_.SetIterations(wish.parameters.iterations);
    std::string error;
    if (!session_.keepParameters(error) || (isOther && !session_.startFirstMaps(error)))
        complain(error);
}

/// Other data begin with what was settled last, as far as it is not a matter of the data.
void CleanWindow::takeSettledParameters()
{
    const CleanParameters own = session_.parameters;
    ACleanParameterPM settled(own);
    (void)settled.LoadFromINI(nullptr, profileSection, 1);
    CleanParameters& next = settled.parameters;
    next.cell = own.cell;
    next.shiftX = own.shiftX;
    next.shiftY = own.shiftY;
    next.form = own.form;
    next.ifs = own.ifs;
    next.start = own.start;
    next.end = own.end;
    session_.parameters = next;
}

/// Asks how, and begins; `replaces` is the id of a link that is solved anew, 0 for a further one.
/// Non-zero when it has begun.
int CleanWindow::selfCalibrate(int replaces)
{
    if (!session_.isOpen() || session_.isRunning())
        return 0;
    (void)selfCal_.LoadFromINI(nullptr, profileSection, 0);
    AUVXFile data;
    std::string error;
    if (!data.open(session_.study().uvfitsFile(), error))
        return complain(session_.study().uvfitsFile() + ": " + error), 0;
    selfCal_.antennas.clear();
    for (const AUVXTlscItem& telescope : data.telescopes())
        selfCal_.antennas.push_back(telescope.name);
    if (!AskSelfCalibration(this, selfCal_))
        return 0;
    (void)selfCal_.StoreToINI(nullptr, profileSection, 0);
    StudySettings settings = session_.study().settings();
    settings.keepsFailed = selfCal_.keepsFailed;
    settings.keepsWeights = !selfCal_.changesWeights;
    if (!session_.study().setSettings(settings))
        return complain(session_.study().fault()), 0;
    const int isList = selfCal_.model == SelfCalModel::components && components_.isModified();
    if (session_.startSelfCal(selfCal_, error, isList ? &components_.list() : nullptr, replaces))
        return 1;
    complain(error);
    return 0;
}

void CleanWindow::exportShown()
{
    if (!session_.isOpen() || session_.isRunning() || session_.shown() < 0)
        return;
    CString name = folderOf(session_.data()) + "round" + std::to_string(session_.shown());
    if (!fnFileDialog1(name, "Folders (*)|*|", "Export into a new folder", 0, "",
                       OFN_OVERWRITEPROMPT, this) ||
        name.empty())
        return;
    std::string error;
    if (session_.startExport(name, error))
        status_.SetMessage("Exports round " + std::to_string(session_.shown()) + " into " + name);
    else
        complain(error);
}

}  // namespace pavane
