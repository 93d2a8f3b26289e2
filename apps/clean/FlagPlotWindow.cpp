#include "apps/clean/FlagPlotWindow.h"

#include "apps/clean/CleanSession.h"
#include "apps/clean/data_plot_menu.h"
#include "apps/clean/DataPlots.h"
#include "pavane/axes/multi/multi_reading.h"
#include "pavane/calibration/visibility_charts.h"
#include "pavane/resources/flag_commands.h"
#include "platform/CMenu.h"
#include "platform/messages.h"
#include "tessel/paths.h"

#include <algorithm>

namespace pavane
{

namespace
{

constexpr unsigned idBaselines = 13, idScope = 14;
constexpr int baselinesWidth = 130, scopeWidth = 160, ifsWidth = 74, handsWidth = 90;
constexpr CRect timePlace(120, 80, 1180, 880), distancePlace(160, 110, 1160, 810);
/// Before the telescopes in the list of what rectangles are about.
constexpr int scopeLines = 2;
/// Baselines of a page that look well, in steps.
constexpr int rowSteps[] = {1, 2, 3, 4, 5, 6, 8, 10};

}  // namespace

void FlagPlotWindow::View::OnMultiStatus(const MultiStatus& status)
{
    if (GetAxis() && status.inPlot && GetTool() == Tool::zoom)
        told(statusText(*GetAxis(), status));
}

FlagPlotWindow::FlagPlotWindow(DataPlots& plots, int isDistance)
    : DataPlotWindow(plots), isDistance_(isDistance)
{
    view_.told = [this](const CString& text) { Tell(text); };
    view_.other = [this] { showChoice(); };
    view_.left = [this](int step) { focusRow(step); };
    FlagChartChoice choice;
    choice.isDistance = isDistance;
    view_.SetChoice(choice);
}

int FlagPlotWindow::createPlot(unsigned id)
{
    return view_.Create(view_.GetWndClassName(), title(), WS_CHILD | WS_VISIBLE | WS_TABSTOP,
                        CRect(), this, id);
}

int FlagPlotWindow::createRow()
{
    constexpr unsigned style = WS_CHILD | WS_VISIBLE | WS_TABSTOP;
    return addList(baselines_, baselinesWidth, "Which baselines are shown", idBaselines) &&
           addList(scope_, scopeWidth, "What a rectangle flags or restores", idScope) &&
           ifs_.Create("all &IFs", CButton::Kind::check, style, CRect(), this, ID_FLAG_IFS) &&
           addToRow(ifs_, ifsWidth, "In all IFs, in place of the point's (I)") &&
           hands_.Create("all &hands", CButton::Kind::check, style, CRect(), this, ID_FLAG_HANDS) &&
           addToRow(hands_, handsWidth, "In all hands, in place of the point's (H)");
}

const MenuTemplate& FlagPlotWindow::menu() const { return flagPlotMenu; }

CString FlagPlotWindow::title() const
{
    return std::string("Amplitude and phase against ") + (isDistance_ ? "uv distance" : "time") +
           "  -  " + baseNameOf(plots().session().data());
}

CRect FlagPlotWindow::firstPlace() const { return isDistance_ ? distancePlace : timePlace; }

const AProgress* FlagPlotWindow::running() const
{
    return plots().isReading() ? &plots().progress() : nullptr;
}

void FlagPlotWindow::stop() { plots().stopReading(); }

CString FlagPlotWindow::counts() const
{
    const EditedVisibilities& data = plots().shown();
    if (!data.error().empty())
        return baseNameOf(plots().session().data()) + ' ' + data.error();
    if (!data.file())
        return {};
    std::string text = std::to_string(data.count()) + " visibilities, " +
                       std::to_string(data.flaggedCount()) + " flagged by you";
    if (!data.parts().empty() && data.parts().front().ifIndex < 0)
        text += "; means of all IFs, since there are so many";
    if (!plots().modelNote().empty())
        text += "; " + plots().modelNote() +
                (plots().canPredict() ? " (menu View: the engine makes its visibilities)" : "");
    return text;
}

void FlagPlotWindow::Refresh()
{
    EditedVisibilities& data = plots().shown();
    view_.SetReadOnly(plots().isFixed());
    if (view_.GetData() != &data)
        view_.SetData(&data);
    if (plots().isFixed() && view_.GetTool() != AFlagWnd::Tool::zoom)
        view_.SetTool(AFlagWnd::Tool::zoom);
    DataPlotWindow::Refresh();
    showChoice();
    Tell(running() ? CString() : counts());
}

/// The row shows what the view has chosen.
void FlagPlotWindow::showChoice()
{
    if (!GetSafeHwnd() || !scope_.GetSafeHwnd())
        return;
    const EditedVisibilities& data = plots().shown();
    std::vector<UvBaseline> known;
    for (const std::size_t b : data.order())
        known.push_back(data.baselines()[b]);
    telescopes_ = telescopesOf(known);
    const FlagChartChoice& choice = view_.GetChoice();
    const FlagScope& scope = view_.GetScope();
    std::vector<std::string> shown{"All baselines"};
    std::vector<std::string> flags{"Flag the baseline", "Flag all baselines"};
    int shownAt = 0;
    int scopeAt = scope.antennas == FlagScope::Antennas::all ? 1 : 0;
    for (const ClosureTelescope& telescope : telescopes_) {
        const std::string name = telescopeName(*data.file(), telescope);
        shown.push_back("Those of " + name);
        flags.push_back("Flag antenna " + name);
        if (choice.telescope == telescope.number && choice.subarray == telescope.subarray)
            shownAt = static_cast<int>(shown.size()) - 1;
        const int number = scope.antenna == 0 ? choice.telescope : scope.antenna;
        if (scope.antennas == FlagScope::Antennas::antenna && number == telescope.number)
            scopeAt = static_cast<int>(flags.size()) - 1;
    }
    if (scope.antennas == FlagScope::Antennas::antenna && scopeAt == 0)
        scopeAt = -1;  // nobody has said which
    fill(baselines_, shown, shownAt);
    fill(scope_, flags, scopeAt);
    ifs_.SetCheck(scope.isAllIfs);
    hands_.SetCheck(scope.isAllHands);
    for (CWnd* const control :
         {static_cast<CWnd*>(&scope_), static_cast<CWnd*>(&ifs_), static_cast<CWnd*>(&hands_)})
        (void)control->EnableWindow(!plots().isFixed());
}

void FlagPlotWindow::chosen(CWnd& control)
{
    if (&control == &baselines_) {
        FlagChartChoice choice = view_.GetChoice();
        const int line = baselines_.GetCurSel();
        choice.telescope = 0;
        if (line > 0 && line <= std::ssize(telescopes_)) {
            const ClosureTelescope& of = telescopes_[static_cast<std::size_t>(line - 1)];
            choice.subarray = of.subarray;
            choice.telescope = of.number;
        }
        view_.SetChoice(choice);
    } else if (&control == &scope_) {
        FlagScope scope = view_.GetScope();
        const int line = scope_.GetCurSel();
        scope.antenna = 0;
        scope.antennas = line == 1 ? FlagScope::Antennas::all : FlagScope::Antennas::baseline;
        if (line >= scopeLines && line - scopeLines < std::ssize(telescopes_)) {
            scope.antennas = FlagScope::Antennas::antenna;
            scope.antenna = telescopes_[static_cast<std::size_t>(line - scopeLines)].number;
        }
        view_.SetScope(scope);
    }
}

int FlagPlotWindow::runOwn(unsigned id)
{
    if (id != idMoreRows && id != idFewerRows)
        return 0;
    FlagChartChoice choice = view_.GetChoice();
    const int* const end = std::end(rowSteps);
    if (id == idMoreRows) {
        const int* const next = std::upper_bound(std::begin(rowSteps), end - 1, choice.rowsOfPage);
        choice.rowsOfPage = *next;
    } else if (const int* const at = std::lower_bound(std::begin(rowSteps), end, choice.rowsOfPage);
               at != std::begin(rowSteps)) {
        choice.rowsOfPage = *(at - 1);
    }
    view_.SetChoice(choice);
    return 1;
}

void FlagPlotWindow::OnInitMenuPopup(CMenu& popup)
{
    const int isFixed = plots().isFixed();
    for (CMenu::Line& line : popup.lines()) {
        if (commandOf(line.id))
            line.enabled = view_.IsCommandEnabled(line.id);
        else if (line.id == idOpenFlags || line.id == idRemoveFlags || line.id == idRoundFlags)
            line.enabled = !plots().session().study().isReadOnly();
        else
            line.enabled = line.id != idPredictModel || plots().canPredict();
    }
    view_.SetUpMenu(popup);
    for (CMenu::Line& line : popup.lines())
        if (isFixed && line.id >= ID_FLAG_BASELINE && line.id <= ID_FLAG_HANDS)
            line.enabled = 0;
}

void FlagPlotWindow::OnDestroy()
{
    view_.SetData(nullptr);
    DataPlotWindow::OnDestroy();
}

}  // namespace pavane
