#include "pavane/calibration/windows/AFlagWnd.h"

#include "pavane/axes/multi/A2DAxisMulti.h"
#include "pavane/axes/multi/multi_reading.h"
#include "pavane/history/step_label.h"
#include "pavane/resources/flag_commands.h"
#include "pavane/resources/flag_messages.h"
#include "pavane/windows/library_resources.h"
#include "platform/CMenu.h"
#include "platform/cursors.h"

#include <algorithm>
#include <cmath>
#include <utility>

namespace pavane
{

namespace
{

struct KeyCommand {
    int key;
    unsigned id;
};
constexpr KeyCommand keyCommands[] = {
    {'F', ID_FLAG_TOOL},    {'R', ID_RESTORE_TOOL},    {'A', ID_FLAG_AMPLITUDES},
    {'P', ID_FLAG_PHASES},  {'S', ID_FLAG_SPLIT},      {'E', ID_FLAG_ERRORS},
    {'V', ID_FLAG_SHOW},    {'M', ID_FLAG_MODEL},      {'B', ID_FLAG_BASELINE},
    {'T', ID_FLAG_ANTENNA}, {'X', ID_FLAG_EVERYTHING}, {'I', ID_FLAG_IFS},
    {'H', ID_FLAG_HANDS}};

CString visibilities(std::size_t count)
{
    return std::to_string(count) + (count == 1 ? " visibility" : " visibilities");
}

}  // namespace

AFlagWnd::~AFlagWnd()
{
    if (data_)
        data_->forget(listener_);
}

const char* AFlagWnd::GetWndClassName() { return "AFlagWnd"; }
void AFlagWnd::OnNotice(const CString&) {}
void AFlagWnd::OnChoice() {}

void AFlagWnd::SetData(EditedVisibilities* data)
{
    if (data_)
        data_->forget(listener_);
    data_ = data;
    if (data_)
        listener_ = data_->listen([this] { showData(); });
    panels_.clear();
    SetAxis(nullptr, 0);
    showData();
}

void AFlagWnd::SetChoice(const FlagChartChoice& choice)
{
    choice_ = choice;
    showData();
    OnChoice();
}

void AFlagWnd::SetScope(const FlagScope& scope)
{
    scope_ = scope;
    OnChoice();
}

/// In the axis that is there where it has the same panels, so that nothing that is zoomed is lost.
void AFlagWnd::showData()
{
    std::vector<FlagPanel> panels;
    if (data_)
        panels = flagPanels(*data_, choice_);
    if (!data_ || panels.empty()) {
        panels_.clear();
        return SetAxis(nullptr, 0);
    }
    PanelChart chart = flagChart(*data_, choice_);
    const int columns = flagColumns(choice_);
    const int rows = flagRows(choice_, panels.size());
    const auto setOut = [&](A2DAxisMulti& axis) { axis.setPanels(columns, rows, columns * rows); };
    const int isAlike = panels == panels_;
    panels_ = std::move(panels);
    int isFilled = 0;
    if (GetAxis() && isAlike)
        FillAxis([&] {
            isFilled = fillChartAxis(*GetAxis(), std::move(chart), columns * rows);
            setOut(*GetAxis());
        });
    if (isFilled)
        return;
    A2DAxisMulti* const axis = newChartAxis(std::move(chart), columns * rows);
    setOut(*axis);
    SetAxis(axis, 1);
}

void AFlagWnd::SetTool(Tool tool)
{
    if (tool != Tool::zoom && readOnly_)
        return OnNotice(flagsAreFixed);
    tool_ = tool;
    if (tool == Tool::restore && !choice_.flagged) {
        FlagChartChoice choice = choice_;
        choice.flagged = 1;
        SetChoice(choice);
    }
    if (tool != Tool::zoom)
        OnNotice(tool == Tool::flag ? flagsPointsByRectangles : restoresPointsByRectangles);
    OnChoice();
}

std::size_t AFlagWnd::FlagIn(int panel, const FlagRect& rect, int on)
{
    if (!data_ || readOnly_ || panel < 0 || panel >= static_cast<int>(panels_.size()))
        return 0;
    FlagScope scope = scope_;
    scope.isRestore = !on;
    if (scope.antennas == FlagScope::Antennas::antenna && scope.antenna == 0)
        scope.antenna = choice_.telescope;
    if (scope.antennas == FlagScope::Antennas::antenna && scope.antenna == 0) {
        OnNotice(chooseAntenna);
        return 0;
    }
    const std::vector<FlagPoint> points =
        flagPointsIn(*data_, choice_, panels_[static_cast<std::size_t>(panel)], rect, !on);
    const std::size_t count = points.size();
    return data_->flag(points, scope,
                       (on ? "Flagging of " : "Restoring of ") + std::to_string(count) +
                           (count == 1 ? " point" : " points"));
}

void AFlagWnd::tellChange(std::size_t changed, int on)
{
    OnNotice(changed ? (on ? "Flagged " : "Restored ") + visibilities(changed) + '.'
                     : CString(!on && !choice_.flagged ? noFlaggedShown : noPointThere));
}

void AFlagWnd::takeRectangle(int panel, const CRect& rect)
{
    A2DAxisMulti* const axis = GetAxis();
    if (!axis || panel < 0 || panel >= static_cast<int>(panels_.size()))
        return;
    // a scale a panel, with its number
    const CRect plot = axis->getPanelRect(panel);
    const double x[] = {xAtPixel(*axis, plot, rect.left), xAtPixel(*axis, plot, rect.right)};
    const double y[] = {axis->GPYtoRPY(panel, rect.top), axis->GPYtoRPY(panel, rect.bottom)};
    const int on = tool_ == Tool::flag;
    if (scope_.antennas == FlagScope::Antennas::antenna && scope_.antenna == 0 &&
        choice_.telescope == 0)
        return OnNotice(chooseAntenna);
    const HWND self = GetSafeHwnd();
    const std::size_t changed = FlagIn(
        panel,
        {std::min(x[0], x[1]), std::max(x[0], x[1]), std::min(y[0], y[1]), std::max(y[0], y[1])},
        on);
    if (CWnd::FromHandle(self) == this)
        tellChange(changed, on);
}

/// The point that Tab and the arrows have chosen.
int AFlagWnd::flagFocused(int on)
{
    const MultiFocus focus = GetPlotFocus();
    if (!GetAxis() || readOnly_ || focus.kind != MultiFocusKind::curve || focus.point < 0)
        return 0;
    for (const NearestPoint& point : statusOf(*GetAxis(), focus).nearest)
        if (point.scale == focus.scale) {
            const HWND self = GetSafeHwnd();
            const std::size_t changed =
                FlagIn(focus.panel, {point.x, point.x, point.y, point.y}, on);
            if (CWnd::FromHandle(self) == this)
                tellChange(changed, on);
            return 1;
        }
    return 0;
}

int AFlagWnd::walkHistory(int forward)
{
    if (!data_ || readOnly_)
        return 1;
    const std::string label(forward ? data_->edits().redoLabel() : data_->edits().undoLabel());
    const HWND self = GetSafeHwnd();
    const int done = forward ? data_->redo() : data_->undo();
    if (done && CWnd::FromHandle(self) == this)
        OnNotice(withStep(forward ? "Redone:" : "Undone:", "\t", label));
    return 1;
}

int AFlagWnd::turnPage(int step)
{
    const int pages = GetAxis() ? std::max(GetAxis()->getPages(), 1) : 1;
    if (GetAxis())
        ShowPage((GetAxis()->getPage() + step + pages) % pages);
    return 1;
}

int AFlagWnd::runScopeCommand(unsigned id)
{
    FlagScope scope = scope_;
    switch (id) {
    case ID_FLAG_BASELINE:
        scope.antennas = FlagScope::Antennas::baseline;
        break;
    case ID_FLAG_ANTENNA:
        scope.antennas = FlagScope::Antennas::antenna;
        break;
    case ID_FLAG_EVERYTHING:
        scope.antennas = FlagScope::Antennas::all;
        break;
    case ID_FLAG_IFS:
        scope.isAllIfs = !scope.isAllIfs;
        break;
    case ID_FLAG_HANDS:
        scope.isAllHands = !scope.isAllHands;
        break;
    default:
        return 0;
    }
    return SetScope(scope), 1;
}

int AFlagWnd::RunCommand(unsigned id)
{
    const auto toggleTool = [this](Tool tool) { SetTool(tool_ == tool ? Tool::zoom : tool); };
    FlagChartChoice choice = choice_;
    switch (id) {
    case ID_TRACK_UNDO:
        return walkHistory(0);
    case ID_TRACK_REDO:
        return walkHistory(1);
    case ID_FLAG_TOOL:
        return toggleTool(Tool::flag), 1;
    case ID_RESTORE_TOOL:
        return toggleTool(Tool::restore), 1;
    case ID_FLAG_NEXT:
        return turnPage(1);
    case ID_FLAG_PREVIOUS:
        return turnPage(-1);
    case ID_FLAG_SPLIT:
        choice.isSplit = !choice.isSplit;
        break;
    case ID_FLAG_ERRORS:
        choice.errors = !choice.errors;
        break;
    case ID_FLAG_SHOW:
        choice.flagged = !choice.flagged;
        break;
    case ID_FLAG_MODEL:
        choice.model = !choice.model;
        break;
    case ID_FLAG_AMPLITUDES:  // one of both is always there
        choice.amplitudes = !choice.amplitudes || !choice.phases;
        break;
    case ID_FLAG_PHASES:
        choice.phases = !choice.phases || !choice.amplitudes;
        break;
    default:
        return runScopeCommand(id) || AMultiPlotWnd::RunCommand(id);
    }
    return SetChoice(choice), 1;
}

int AFlagWnd::isTime(CommandWhen when) const
{
    if (when == CommandWhen::canUndo)
        return data_ && !readOnly_ && data_->edits().canUndo();
    if (when == CommandWhen::canRedo)
        return data_ && !readOnly_ && data_->edits().canRedo();
    return AMultiPlotWnd::isTime(when);
}

int AFlagWnd::GetMenuID() { return static_cast<int>(IDR_FLAG_MENU); }

void AFlagWnd::SetUpMenu(CMenu& popup) const
{
    const FlagEdits none;
    const FlagEdits& edits = data_ ? data_->edits() : none;
    using Antennas = FlagScope::Antennas;
    const std::pair<unsigned, int> checks[] = {
        {ID_FLAG_TOOL, tool_ == Tool::flag},
        {ID_RESTORE_TOOL, tool_ == Tool::restore},
        {ID_FLAG_AMPLITUDES, choice_.amplitudes},
        {ID_FLAG_PHASES, choice_.phases},
        {ID_FLAG_SPLIT, choice_.isSplit},
        {ID_FLAG_ERRORS, choice_.errors},
        {ID_FLAG_SHOW, choice_.flagged},
        {ID_FLAG_MODEL, choice_.model && data_ && data_->hasModel()},
        {ID_FLAG_BASELINE, scope_.antennas == Antennas::baseline},
        {ID_FLAG_ANTENNA, scope_.antennas == Antennas::antenna},
        {ID_FLAG_EVERYTHING, scope_.antennas == Antennas::all},
        {ID_FLAG_IFS, scope_.isAllIfs},
        {ID_FLAG_HANDS, scope_.isAllHands},
        {ID_FLAG_NEXT, 0},
        {ID_FLAG_PREVIOUS, 0}};
    for (CMenu::Line& line : popup.lines()) {
        for (const auto& [id, checked] : checks)
            if (line.id == id) {
                line.enabled = GetAxis() != nullptr;
                line.checked = checked;
            }
        if (line.id == ID_TRACK_UNDO || line.id == ID_TRACK_REDO) {
            const int isUndo = line.id == ID_TRACK_UNDO;
            line.enabled = isTime(isUndo ? CommandWhen::canUndo : CommandWhen::canRedo);
            line.text = menuTextOfStep(line.text, isUndo ? edits.undoLabel() : edits.redoLabel());
        }
    }
}

void AFlagWnd::amMenuParse(CMenu* popup)
{
    AMultiPlotWnd::amMenuParse(popup);
    SetUpMenu(*popup);
}

int AFlagWnd::takeKey(int key, bool shift, bool control)
{
    if (key == 'N' && !control)
        return turnPage(shift ? -1 : 1);
    if (control && key == 'Y')  // as other programs have it
        return walkHistory(1);
    if (key == VK_ESCAPE && tool_ != Tool::zoom && !giveUpDrag())
        return SetTool(Tool::zoom), 1;
    if ((key == VK_DELETE || key == VK_INSERT) && !control && flagFocused(key == VK_DELETE))
        return 1;
    for (const KeyCommand& command : keyCommands)
        if (command.key == key && !control && !shift)
            return RunCommand(command.id);
    return AMultiPlotWnd::takeKey(key, shift, control);
}

int AFlagWnd::chooseCursor(unsigned hitArea, unsigned message)
{
    CPoint point = GetCursorPos();
    ScreenToClient(point);
    if (tool_ == Tool::zoom || !GetAxis() || GetAxis()->hitTest(point).part != MultiPart::plot)
        return AMultiPlotWnd::chooseCursor(hitArea, message);
    SetCursor(IDC_CROSS);
    return 1;
}

}  // namespace pavane
