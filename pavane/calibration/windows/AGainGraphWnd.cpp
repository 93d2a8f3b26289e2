#include "pavane/calibration/windows/AGainGraphWnd.h"

#include "pavane/axes/multi/A2DAxisMulti.h"
#include "pavane/axes/multi/multi_reading.h"
#include "pavane/history/step_label.h"
#include "pavane/resources/gain_commands.h"
#include "pavane/resources/gain_messages.h"
#include "pavane/windows/library_resources.h"
#include "platform/CMenu.h"
#include "platform/cursors.h"

#include <algorithm>
#include <utility>

namespace pavane
{

namespace
{

struct KeyCommand {
    int key;
    unsigned id;
};
constexpr KeyCommand keyCommands[] = {{'F', ID_GAIN_FLAG},   {'R', ID_GAIN_RESTORE},
                                      {'L', ID_GAIN_LINES},  {'E', ID_GAIN_ERRORS},
                                      {'P', ID_GAIN_PHASES}, {'A', ID_GAIN_AMPLITUDES}};

CString solutions(std::size_t count)
{
    return std::to_string(count) + (count == 1 ? " solution" : " solutions");
}

}  // namespace

AGainGraphWnd::~AGainGraphWnd()
{
    if (gains_)
        gains_->forget(listener_);
}

const char* AGainGraphWnd::GetWndClassName() { return "AGainGraphWnd"; }
void AGainGraphWnd::OnNotice(const CString&) {}

void AGainGraphWnd::SetGains(EditedGains* gains)
{
    if (gains_)
        gains_->forget(listener_);
    gains_ = gains;
    if (gains_)
        listener_ = gains_->listen([this] { showGains(); });
    panels_.clear();
    SetAxis(nullptr, 0);
    showGains();
}

void AGainGraphWnd::SetChoice(const GainChartChoice& choice)
{
    choice_ = choice;
    showGains();
}

/// In the axis that is there where it has the same panels, so that nothing that is zoomed is lost.
void AGainGraphWnd::showGains()
{
    if (!gains_ || gains_->gains().cells().empty()) {
        panels_.clear();
        return SetAxis(nullptr, 0);
    }
    std::vector<GainPanel> panels = gainPanels(gains_->gains(), choice_);
    PanelChart chart = gainChart(gains_->gains(), choice_);
    const int columns = gainColumns(choice_);
    const int antennas = static_cast<int>(panels.size()) / columns;
    const int rows = std::clamp(antennas, 1, std::max(choice_.rowsOfPage, 1));
    const auto setOut = [&](A2DAxisMulti& axis) { axis.setPanels(columns, rows, columns * rows); };
    const int isAlike = std::equal(panels.begin(), panels.end(), panels_.begin(), panels_.end(),
                                   [](const GainPanel& a, const GainPanel& b) {
                                       return a.antenna == b.antenna && a.isPhase == b.isPhase;
                                   });
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

void AGainGraphWnd::SetTool(Tool tool)
{
    tool_ = tool;
    if (tool != Tool::zoom)
        OnNotice(tool == Tool::flag ? flagsByRectangles : restoresByRectangles);
}

std::size_t AGainGraphWnd::FlagIn(int panel, const GainRect& rect, int on)
{
    if (!gains_ || panel < 0 || panel >= static_cast<int>(panels_.size()))
        return 0;
    const GainPanel& of = panels_[static_cast<std::size_t>(panel)];
    const std::vector<std::size_t> cells = gainsIn(gains_->gains(), of, rect, !on);
    return gains_->setFlags(cells, on,
                            (on ? "Flagging of " : "Restoring of ") + solutions(cells.size()));
}

void AGainGraphWnd::takeRectangle(int panel, const CRect& rect)
{
    A2DAxisMulti* const axis = GetAxis();
    if (!axis || panel < 0 || panel >= static_cast<int>(panels_.size()))
        return;
    // a scale a panel, with its number
    const CRect plot = axis->getPanelRect(panel);
    const double x[] = {xAtPixel(*axis, plot, rect.left), xAtPixel(*axis, plot, rect.right)};
    const double y[] = {axis->GPYtoRPY(panel, rect.top), axis->GPYtoRPY(panel, rect.bottom)};
    const int on = tool_ == Tool::flag;
    const HWND self = GetSafeHwnd();
    const std::size_t changed = FlagIn(
        panel,
        {std::min(x[0], x[1]), std::max(x[0], x[1]), std::min(y[0], y[1]), std::max(y[0], y[1])},
        on);
    if (CWnd::FromHandle(self) == this)
        OnNotice(changed ? (on ? "Flagged " : "Restored ") + solutions(changed) + '.'
                         : CString(noGainThere));
}

int AGainGraphWnd::walkHistory(int forward)
{
    if (!gains_)
        return 1;
    const std::string label(forward ? gains_->history().redoLabel()
                                    : gains_->history().undoLabel());
    const HWND self = GetSafeHwnd();
    const int done = forward ? gains_->redo() : gains_->undo();
    if (done && CWnd::FromHandle(self) == this)
        OnNotice(withStep(forward ? "Redone:" : "Undone:", "\t", label));
    return 1;
}

int AGainGraphWnd::RunCommand(unsigned id)
{
    const auto toggleTool = [this](Tool tool) { SetTool(tool_ == tool ? Tool::zoom : tool); };
    GainChartChoice choice = choice_;
    switch (id) {
    case ID_TRACK_UNDO:
        return walkHistory(0);
    case ID_TRACK_REDO:
        return walkHistory(1);
    case ID_GAIN_FLAG:
        return toggleTool(Tool::flag), 1;
    case ID_GAIN_RESTORE:
        return toggleTool(Tool::restore), 1;
    case ID_GAIN_LINES:
        choice.lines = !choice.lines;
        break;
    case ID_GAIN_ERRORS:
        choice.errors = !choice.errors;
        break;
    case ID_GAIN_AMPLITUDES:  // one of both is always there
        choice.amplitudes = !choice.amplitudes || !choice.phases;
        break;
    case ID_GAIN_PHASES:
        choice.phases = !choice.phases || !choice.amplitudes;
        break;
    default:
        return AMultiPlotWnd::RunCommand(id);
    }
    return SetChoice(choice), 1;
}

int AGainGraphWnd::isTime(CommandWhen when) const
{
    if (when == CommandWhen::canUndo)
        return gains_ && gains_->history().canUndo();
    if (when == CommandWhen::canRedo)
        return gains_ && gains_->history().canRedo();
    return AMultiPlotWnd::isTime(when);
}

int AGainGraphWnd::GetMenuID() { return static_cast<int>(IDR_GAIN_MENU); }

void AGainGraphWnd::amMenuParse(CMenu* popup)
{
    AMultiPlotWnd::amMenuParse(popup);
    const EditHistory none;
    const EditHistory& history = gains_ ? gains_->history() : none;
    const std::pair<unsigned, int> checks[] = {
        {ID_GAIN_FLAG, tool_ == Tool::flag},      {ID_GAIN_RESTORE, tool_ == Tool::restore},
        {ID_GAIN_LINES, choice_.lines},           {ID_GAIN_ERRORS, choice_.errors},
        {ID_GAIN_AMPLITUDES, choice_.amplitudes}, {ID_GAIN_PHASES, choice_.phases}};
    for (CMenu::Line& line : popup->lines()) {
        for (const auto& [id, checked] : checks)
            if (line.id == id) {
                line.enabled = GetAxis() != nullptr;
                line.checked = checked;
            }
        if (line.id == ID_TRACK_UNDO)
            line.text = menuTextOfStep(line.text, history.undoLabel());
        else if (line.id == ID_TRACK_REDO)
            line.text = menuTextOfStep(line.text, history.redoLabel());
    }
}

int AGainGraphWnd::takeKey(int key, bool shift, bool control)
{
    if (key == 'N' && !control && GetAxis()) {
        const int pages = std::max(GetAxis()->getPages(), 1);
        return ShowPage((GetAxis()->getPage() + (shift ? pages - 1 : 1)) % pages), 1;
    }
    if (control && key == 'Y')  // as other programs have it
        return walkHistory(1);
    if (key == VK_ESCAPE && tool_ != Tool::zoom && !giveUpDrag())
        return SetTool(Tool::zoom), 1;
    for (const KeyCommand& command : keyCommands)
        if (command.key == key && !control && !shift)
            return RunCommand(command.id);
    return AMultiPlotWnd::takeKey(key, shift, control);
}

int AGainGraphWnd::chooseCursor(unsigned hitArea, unsigned message)
{
    CPoint point = GetCursorPos();
    ScreenToClient(point);
    if (tool_ == Tool::zoom || !GetAxis() || GetAxis()->hitTest(point).part != MultiPart::plot)
        return AMultiPlotWnd::chooseCursor(hitArea, message);
    SetCursor(IDC_CROSS);
    return 1;
}

}  // namespace pavane
