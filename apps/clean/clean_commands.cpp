// The menus of the window, and the work on rounds.
#include "apps/clean/clean_menu.h"
#include "apps/clean/CleanWindow.h"
#include "apps/clean/job_text.h"
#include "apps/view/key_help.h"
#include "pavane/axes/ABAxis.h"
#include "pavane/containers/MemoryFile.h"
#include "pavane/dialogs/ACleanParameterPage.h"
#include "pavane/dialogs/ASelfCalPage.h"
#include "pavane/trackers/collections/ATrackerArrayInAxis.h"
#include "platform/CMenu.h"
#include "platform/file_dialog.h"
#include "platform/message.h"
#include "tessel/paths.h"
#include "tessel/uvfits/AUVXFile.h"

namespace pavane
{

namespace
{

constexpr const char* profileSection = "pavane-clean";
constexpr const char* dataFilter =
    "Visibilities (*.uvfits *.uvf *.fits *.UVFITS)|*.uvfits *.uvf *.fits *.UVFITS|"
    "All files (*)|*|";

int isPlotCommand(unsigned id) { return commandOf(id) != nullptr; }

int isJobCommand(unsigned id) { return id == idFinishCycle || id == idStopRound; }

}  // namespace

int CleanWindow::OnCommand(unsigned id, unsigned code, CWnd* control)
{
    if (code == TCN_SELCHANGE && control == &tabs_)
        return showMarks(), 1;
    if (code != 0)
        return AreaWindow::OnCommand(id, code, control);
    if (CWnd::GetCapture())
        return 1;  // a key of the menu while the pointer drags an area
    return runFileCommand(id) || runCleanCommand(id) || runStudyCommand(id) || runViewCommand(id) ||
           AreaWindow::OnCommand(id, code, control) || map_.RunCommand(id);
}

void CleanWindow::OnInitMenuPopup(CMenu& popup)
{
    const int isOpen = session_.isOpen(), runs = session_.isRunning();
    for (CMenu::Line& line : popup.lines()) {
        if (isPlotCommand(line.id)) {
            line.enabled = map_.IsCommandEnabled(line.id);
            line.checked = line.id == ID_SHOW_CELLS && map_.GetCellOverlay();
        } else if (isJobCommand(line.id)) {
            line.enabled = runs;
        } else if (line.id >= idMapKind && line.id < idMapKind + mapKinds) {
            const auto kind = static_cast<MapKind>(line.id - idMapKind);
            line.enabled = isOpen && session_.shown() >= 0;
            line.checked = shown_.isOpen() && shown_.kind() == kind;
        } else if (line.id == idBlink) {
            line.enabled = shown_.isOpen();
            line.checked = blinks_;
        } else if (line.id == idOpenData || line.id == idCloseStudy || line.id >= idAboutClean ||
                   line.id == 0) {
            line.enabled = 1;
        } else {
            line.enabled = isOpen && (!runs || line.id > idMapKind);
        }
    }
}

int CleanWindow::runFileCommand(unsigned id)
{
    switch (id) {
    case idOpenData: {
        CString name = session_.isOpen() ? folderOf(session_.data()) : CString();
        if (fnFileDialog1(name, dataFilter, "Open data or a study", 1, "uvfits", OFN_FILEMUSTEXIST,
                          this) &&
            !name.empty())
            (void)Open(name);
        return 1;
    }
    case idOpenAreaFile:
        return openAreaFile(), 1;
    case idSaveAreaFile:
        return saveAreaFile(), 1;
    case idExport:
        return exportShown(), 1;
    case idCloseStudy:
        return PostMessage(WM_CLOSE), 1;
    case idDeleteArea:
        return map_.DeleteFocused();
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
    case idSelection:
        return askSelection(), 1;
    case idSelfCalibrate:
        return selfCalibrate(), 1;
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
    case idNextPart:
        return goToPart(1), 1;
    case idPreviousPart:
        return goToPart(-1), 1;
    case idAboutClean:
        return showAbout(), 1;
    }
    return 0;
}

void CleanWindow::goToPart(int step)
{
    CWnd* const page = tabs_.GetItemPage(tabs_.GetCurSel());
    CWnd* const parts[] = {&map_, &curve_, &rounds_, page, &row_};
    constexpr int count = static_cast<int>(std::size(parts));
    const auto isWithin = [](const CWnd* window, const CWnd* part) {
        while (window && window != part)
            window = window->GetParent();
        return part && window == part;
    };
    int at = 0;
    while (at < count && !isWithin(CWnd::GetFocus(), parts[at]))
        ++at;
    at = at == count ? 0 : (at + step + count) % count;
    if (parts[at] == &row_)
        row_.FocusIterations();
    else if (parts[at])
        parts[at]->SetFocus();
}

// --- areas

AreaPlace CleanWindow::place() const
{
    if (!shown_.isOpen())
        return {};
    const AMatrix<float>& cells = shown_.content().map.cells;
    return {shown_.content().frame.centres(), cells.rows(), cells.columns(), &shown_.sky()};
}

void CleanWindow::takeAreas(const std::string& stored)
{
    MemoryFile bytes;
    areas().BeginEdits("Areas of the round");
    const int loaded =
        bytes.write(stored.data(), std::ssize(stored)) && bytes.seek(0) && areas().Load(bytes);
    areas().EndEdits(&map_);
    if (!loaded)
        return complain("The areas of the round cannot be read");
    areas().FillAreasCB(&map_);
    map_.FollowAreas();
}

void CleanWindow::openAreaFile()
{
    if (!shown_.isOpen())
        return;
    CString name = folderOf(session_.data());
    if (!askName(name, openAreaFilter, "Open areas", 1, "areas"))
        return;
    ATrackerArrayInAxis read;
    AreaNotes notes;
    std::string error;
    if (!openAreas(name, place(), read, notes, error))
        return complain(error);
    if (!notes.loss.empty())
        return complain(name + ": " + notes.lossText());
    if (!giveAreas(read, "Open areas"))
        return;
    areas().FillAreasCB(&map_);
    map_.FollowAreas();
}

void CleanWindow::saveAreaFile()
{
    if (!shown_.isOpen())
        return;
    CString name = folderOf(session_.data()) + "clean.areas";
    if (!askName(name, saveAreaFilter, "Save areas", 0, "areas") || !closeOpenArea("saved"))
        return;
    const AreaNotes losses = lossesOfSaving(name, place(), areas());
    if (!losses.lines.empty() && AfxMessageBox(baseNameOf(name) + " cannot hold everything: " +
                                                   losses.lines.front() + "\n\nSave all the same?",
                                               MB_YESNO | MB_ICONQUESTION | MB_DEFBUTTON2) != IDYES)
        return;
    std::string error;
    if (saveAreas(name, place(), areas(), error))
        status_.SetMessage("Saved the areas in " + name);
    else
        complain(error);
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
    tabs_.SetCurSel(2);
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
    roundsChanged();
    refreshRow();
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
    session_.parameters = wish.parameters;
    row_.SetIterations(wish.parameters.iterations);
    std::string error;
    if (!session_.keepParameters(error) || (isOther && !session_.startFirstMaps(error)))
        complain(error);
}

void CleanWindow::selfCalibrate()
{
    if (!session_.isOpen() || session_.isRunning())
        return;
    (void)selfCal_.LoadFromINI(nullptr, profileSection, 0);
    AUVXFile data;
    std::string error;
    if (!data.open(session_.study().uvfitsFile(), error))
        return complain(session_.study().uvfitsFile() + ": " + error);
    selfCal_.antennas.clear();
    for (const AUVXTlscItem& telescope : data.telescopes())
        selfCal_.antennas.push_back(telescope.name);
    if (!AskSelfCalibration(this, selfCal_))
        return;
    (void)selfCal_.StoreToINI(nullptr, profileSection, 0);
    StudySettings settings = session_.study().settings();
    settings.keepsFailed = selfCal_.keepsFailed;
    settings.keepsWeights = !selfCal_.changesWeights;
    if (!session_.study().setSettings(settings))
        return complain(session_.study().fault());
    const int isList = selfCal_.model == SelfCalModel::components && components_.isModified();
    if (!session_.startSelfCal(selfCal_, error, isList ? &components_.list() : nullptr))
        complain(error);
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
