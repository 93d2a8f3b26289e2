// What the menus do with the study: its size, branches, models, areas on disk.
#include "apps/clean/CalibrationRun.h"
#include "apps/clean/clean_menu.h"
#include "apps/clean/CleanWindow.h"
#include "pavane/containers/MemoryFile.h"
#include "pavane/tables/components/ModelLayer.h"
#include "pavane/trackers/collections/ATrackerArrayInAxis.h"
#include "platform/file_dialog.h"
#include "platform/message.h"
#include "tessel/paths.h"
#include "tessel/value_text.h"

#include <algorithm>
#include <cmath>
#include <fstream>
#include <sstream>

namespace pavane
{

namespace
{

constexpr double bytesOfMega = 1e6;
constexpr int sizeDigits = 4;
constexpr int markReach = 6;     ///< pixels about a mark in which it is caught
constexpr int componentTab = 1;  ///< of the tabs beside the map
/// Of a log that is shown; the end of a longer one.
constexpr std::streamoff mostLog = std::streamoff{4} << 20;
constexpr const char* modelFilter = "Components (*.txt *.mod)|*.txt *.mod|All files (*)|*|";

std::string sizeText(std::int64_t bytes)
{
    return valToStr(static_cast<double>(bytes) / bytesOfMega, sizeDigits) + " MB";
}

}  // namespace

int CleanWindow::runStudyCommand(unsigned id)
{
    if (!session_.isOpen())
        return 0;
    switch (id) {
    case idStudyFacts:
        AfxMessageBox(session_.study().folder() + "\n\n" +
                          std::to_string(session_.study().rounds().size()) + " rounds, " +
                          sizeText(session_.study().size()) + " on the disk",
                      MB_OK | MB_ICONINFORMATION);
        return 1;
    case idDeleteBranch:
        return deleteBranch(), 1;
    case idFirstModel:
        return openModel(), 1;
    case idPointModel:
        return makePoint(), 1;
    case idEditedModel:
        return makeEditedRound(), 1;
    case idSaveGains:
        return saveGains(), 1;
    case idLoadGains:
        return loadGains(), 1;
    case idChain:
        return askChain(), 1;
    case idGainGraph:
        return showGains(GainWindows::Kind::graph), 1;
    case idGainTable:
        return showGains(GainWindows::Kind::table), 1;
    case idMeanGains:
        return showGains(GainWindows::Kind::means), 1;
    }
    return 0;
}

void CleanWindow::deleteBranch()
{
    AStudy& study = session_.study();
    const int round = rounds_.selected();
    const StudyRound* const found = study.round(round);
    if (!found || session_.isRunning())
        return;
    const int parent = found->parent;
    const auto count = study.branchOf(round).size();
    const std::string what =
        count == 1 ? "round " + std::to_string(round)
                   : "round " + std::to_string(round) + " and the " + std::to_string(count - 1) +
                         (count == 2 ? " round" : " rounds") + " that came of it";
    if (AfxMessageBox("Delete " + what + ", " + sizeText(study.branchSize(round)) +
                          "? This cannot be undone.",
                      MB_YESNO | MB_ICONWARNING | MB_DEFBUTTON2) != IDYES)
        return;
    std::string error;
    setBlink(0);
    for (std::size_t kind = 0; kind < mapKinds; ++kind)
        for (const int each : study.branchOf(round))
            shown_.forget(session_.fileOf(each, static_cast<MapKind>(kind)));
    if (!study.deleteBranch(round))
        return complain(study.fault());
    if (!study.round(session_.shown()) && !session_.show(parent, error))
        complain(error);
    roundsChanged();
}

/// A point where the residual is highest, of that flux: what a first calibration of phases needs.
void CleanWindow::makePoint()
{
    const StudyRound* const round = session_.study().round(session_.shown());
    if (session_.isRunning() || !round || !shown_.isOpen())
        return;
    if (!(round->numbers.peak > 0) || round->numbers.peakX < 0)
        return status_.SetMessage("The residual has no positive peak");
    const MapPlace at = shown_.content().frame.offsetOf(round->numbers.peakX, round->numbers.peakY);
    constexpr double degree = 3.14159265358979323846 / 180;
    ACompItem item;
    item.type = pointComponent;
    item.PeakFlux() = round->numbers.peak;
    item.Distance() = std::hypot(at.x, at.y);
    item.Angle() = at.x == 0 && at.y == 0 ? 0 : std::atan2(at.x, at.y) / degree;
    AComponents point;
    point.Add(item);
    std::string error;
    if (!session_.startModel(point, error))
        complain(error);
}

void CleanWindow::openModel()
{
    if (session_.isRunning() || session_.shown() < 0)
        return;
    CString name = folderOf(session_.data());
    if (!fnFileDialog1(name, modelFilter, "First model", 1, "txt", OFN_FILEMUSTEXIST, this) ||
        name.empty())
        return;
    AComponents components;
    std::ifstream in(name);
    if (in)
        components.Load(in);
    if (components.count() == 0)
        return complain(name +
                        (in.is_open() ? ": there is no component in it" : ": cannot be read"));
    std::string error;
    if (!session_.startModel(components, error))
        complain(error);
}

/// Of the link that was chosen in the chain, else of its last one.
void CleanWindow::showGains(GainWindows::Kind kind)
{
    const std::vector<StudyLink>& chain = session_.study().settings().chain;
    if (chain.empty())
        return status_.SetMessage("The chain has no gains yet: F8 solves for some");
    const auto chosen = std::find_if(chain.begin(), chain.end(), [this](const StudyLink& each) {
        return each.id == shownLink_;
    });
    const StudyLink& link = chosen == chain.end() ? chain.back() : *chosen;
    std::string error;
    if (gains_.isModified())
        keepEditedGains();
    else if (!gains_.open(session_.study().gainText(link.gains), link.name, error))
        return complain(error);
    if (!gains_.show(kind, this))
        complain("The window of gains cannot be made");
}

/// What was flagged or edited becomes other gains of the link, when the user agrees.
void CleanWindow::keepEditedGains()
{
    StudySettings settings = session_.study().settings();
    const auto link =
        std::find_if(settings.chain.begin(), settings.chain.end(), [this](const StudyLink& each) {
            return session_.study().gainText(each.gains) == gains_.file();
        });
    if (isClosing_ || !session_.isOpen() || session_.isRunning() || link == settings.chain.end())
        return;
    if (AfxMessageBox("The gains were changed. Use them as they are now, and make the residual of "
                      "the shown round on the data that they correct?",
                      MB_YESNO | MB_ICONQUESTION) != IDYES)
        return;
    std::string error;
    const int number = keepGains(session_.study(), gains_.gains(), error);
    if (number == 0)
        return complain(error);
    link->gains = number;
    if (!session_.study().setSettings(settings))
        return complain(session_.study().fault());
    gains_.markKept();
    gains_.close();
    if (!session_.startResidual(error))
        complain(error);
}

/// Switches the last link of the chain, or takes it off; the shown model's residual follows.
void CleanWindow::changeChain(int removes)
{
    StudySettings settings = session_.study().settings();
    if (session_.isRunning() || settings.chain.empty())
        return status_.SetMessage("The chain has no gains");
    StudyLink& last = settings.chain.back();
    if (removes) {
        if (AfxMessageBox("Take \"" + last.name + "\" off the chain? Its gains stay in the study.",
                          MB_YESNO | MB_ICONQUESTION | MB_DEFBUTTON2) != IDYES)
            return;
        settings.chain.pop_back();
    } else {
        last.isOn = !last.isOn;
        status_.SetMessage("\"" + last.name + (last.isOn ? "\" is on" : "\" is off"));
    }
    std::string error;
    if (!session_.study().setSettings(settings))
        complain(session_.study().fault());
    else if (!session_.startResidual(error))
        complain(error);
}

/// The components of the round's model; an empty list for a model that stays a map. They are read
/// when somebody looks at them.
void CleanWindow::showComponents(int isNeeded)
{
    std::string file = session_.isOpen() && session_.shown() >= 0
                           ? session_.fileOf(session_.shown(), MapKind::model)
                           : std::string();
    if (file == modelFile_)
        return;
    if (!isNeeded && tabs_.GetCurSel() != componentTab && !marksShow())
        file.clear();
    if (file == modelFile_)
        return;
    modelFile_ = file;
    // on other data, after a calibration for one, the model is the same, and so are edits of it
    const StudyRound* const round = session_.study().round(session_.shown());
    const int isSame = round && round->kind == RoundKind::residual && round->parent == modelRound_;
    modelRound_ = round ? round->id : -1;
    if (isSame && components_.isModified())
        return;
    AComponents model;
    std::string error;
    CString note;
    if (!file.empty() && !readModel(file, model, error)) {
        log_.Append(error);
        note = "The model stays a map: it " + error.substr(file.size() + 2);
    }
    if (!components_.reset(model))
        complain("There is not enough memory for the components");
    componentTable_.SetNote(note);
    componentTable_.SetComponents(&components_);
}

/// What was edited among the components goes with another round; 0 when the user wants to stay.
int CleanWindow::mayDropEdits()
{
    if (!components_.isModified())
        return 1;
    return AfxMessageBox("The components were edited, and no round has been made of them. Drop the "
                         "edits?\n\n(\"Round of the edited components\" in the menu CLEAN keeps "
                         "them.)",
                         MB_YESNO | MB_ICONQUESTION | MB_DEFBUTTON2) == IDYES;
}

/// While the table of the components is in front or the model is shown, but never over a beam or a
/// mask.
int CleanWindow::marksShow()
{
    const MapKind kind = shown_.kind();
    return shown_.isOpen() && kind != MapKind::beam && kind != MapKind::mask &&
           (kind == MapKind::model || tabs_.GetCurSel() == componentTab);
}

/// Marks of the components lie over the map.
void CleanWindow::showMarks()
{
    showComponents();
    if (!marksShow()) {
        map_.drawMarks = nullptr;
        map_.pressMarks = nullptr;
    } else if (!map_.drawMarks) {
        map_.drawMarks = [this](CDC& dc, const ABAxis& axis, const CRect* update) {
            if (!shown_.isOpen())
                return;
            ModelLayer layer(components_.list(), shown_.content().frame);
            if (update) {
                layer.SetSelected(componentTable_.selectedComponent());
                layer.SetPart(*update);
            }
            layer.draw(dc, axis);
        };
        map_.pressMarks = [this](const ABAxis& axis, CPoint point) {
            if (!shown_.isOpen())
                return;
            const ModelLayer layer(components_.list(), shown_.content().frame);
            const int found = layer.ComponentAt(axis, point, markReach);
            if (found >= 0)
                componentTable_.SelectComponent(found);
        };
    }
    map_.Invalidate();
}

/// Edited components become a round of their own.
void CleanWindow::makeEditedRound()
{
    std::string error;
    if (session_.isRunning() || session_.shown() < 0)
        return;
    if (!components_.isModified())
        return status_.SetMessage("The components are those of the round: nothing was edited");
    if (!session_.startModel(components_.list(), error))
        complain(error);
}

/// The log of the round that is shown, while nothing writes into it.
void CleanWindow::showLog()
{
    if (session_.isRunning() || session_.shown() < 0)
        return;
    std::ifstream in(session_.logOf(session_.shown()), std::ios::binary | std::ios::ate);
    if (!in)
        return log_.Clear();
    const std::streamoff size = in.tellg();
    in.seekg(std::max(std::streamoff{0}, size - mostLog));
    std::ostringstream text;
    text << in.rdbuf();
    log_.SetText(text.str());
    (void)log_.SendMessage(WM_VSCROLL, SB_BOTTOM, 0);
}

/// The areas as they are now, so that a study comes back with them.
void CleanWindow::storeAreasNow()
{
    if (!session_.isOpen() || session_.study().isReadOnly() || !shown_.isOpen())
        return;
    MemoryFile bytes;
    if (!storeAllAreas(areas(), bytes))
        return;
    if (bytes.bytes() != keptAreas_ && session_.study().setAreas(bytes.bytes()))
        keptAreas_ = bytes.bytes();
}

}  // namespace pavane
