#include "pavane/axes/A2DAxis.h"
#include "pavane/axes/maps/ABMapGraph.h"
#include "pavane/axes/windows/AAxisWnd.h"
#include "pavane/resources/resource_ids.h"
#include "pavane/resources/tracker_messages.h"
#include "pavane/trackers/ARPAreaTracker.h"
#include "pavane/trackers/collections/ATrackerArrayInAxis.h"
#include "pavane/trackers/shapes/key_steps.h"
#include "platform/CDialog.h"
#include "platform/CMenu.h"
#include "platform/controls.h"

#include <algorithm>
#include <string>
#include <string_view>

namespace pavane
{

namespace
{

/// Magnification of one press of plus or minus.
constexpr double zoomOfKey = 1.5;

struct Tool {
    unsigned command;
    int mode;
};
constexpr Tool tools[] = {
    {ID_TRACK_ARROW, toolArrow},
    {ID_TRACK_RECT, toolRect},
    {ID_TRACK_ROTATE_RECT, toolRotateRect},
    {ID_TRACK_ELLIPSE, toolEllipse},
    {ID_TRACK_AREA, toolArea},
    {ID_ZOOM_PLUS, toolZoomIn},
};

const Tool* toolOf(unsigned command)
{
    const auto* const found = std::find_if(std::begin(tools), std::end(tools),
                                           [=](const Tool& t) { return t.command == command; });
    return found == std::end(tools) ? nullptr : found;
}

/// A word, the step that it is about ("Move of Area 3") in small letters, and what follows.
CString stepText(const char* word, std::string_view label, const char* end)
{
    CString text = word;
    if (!label.empty()) {
        text += ' ';
        text += label;
        char& first = text[text.size() - label.size()];
        if (first >= 'A' && first <= 'Z')
            first = static_cast<char>(first - 'A' + 'a');
    }
    return text + end;
}

}  // namespace

int AAxisWnd::GetMenuID() { return IDR_AXIS_MENU; }

void AAxisWnd::amMenuParse(CMenu* popup)
{
    for (CMenu::Line& line : popup->lines()) {
        if (line.id == 0)
            continue;
        line.enabled = IsCommandEnabled(line.id);
        if (line.id == ID_SHOW_CELLS)
            line.checked = showCells_;
        else if (line.id == ID_TRACK_DELETE)  // the key takes a vertex that has the focus
            line.text = IsVertexFocused() ? "&Delete area" : "&Delete area\tDel";
        else if (line.id == ID_TRACK_UNDO)
            line.text = stepText("&Undo", trackers_->history().undoLabel(), "\tCtrl+Z");
        else if (line.id == ID_TRACK_REDO)
            line.text = stepText("&Redo", trackers_->history().redoLabel(), "\tCtrl+Shift+Z");
    }
}

int AAxisWnd::isPolygonAt(CPoint point) const
{
    const auto* const polygon = dynamic_cast<const ARPAreaTracker*>(trackers_->GetCurItem());
    if (!polygon || !polygon->IsActive())
        return 0;
    CRect box;
    polygon->GetTrueRect(&box);
    return trackers_->focusHandle() >= 0 || box.PtInRect(point);
}

int AAxisWnd::IsCommandEnabled(unsigned id) const
{
    const int selected = !trackers_->SelectedItems().empty();
    const int working = trackers_->workingTracker() != nullptr;
    switch (id) {
    case ID_TRACK_UNDO:
        return trackers_->CanUndo();
    case ID_TRACK_REDO:
        return trackers_->CanRedo();
    case ID_TRACK_COPY:
        return selected;
    case ID_TRACK_DELETE:
        return selected || working;
    case ID_CLOSE_AREA:
        return working;
    case ID_VERTEX_INSERT:
    case ID_VERTEX_DELETE:
        return isPolygonAt(menuPoint_);
    case ID_SELECT_ALL:
        return trackers_->trackerCount() > 0;
    case ID_CLEAR_AREAS:
        return trackers_->trackerCount() > 0 || working;
    case ID_ZOOM_MINUS:
        return trackers_->zoomHistory().count() > 0;
    case ID_WHOLE_MAP:
        return IsRangeZoomed();
    case ID_SHOW_CELLS:
        return map_ != nullptr;
    case ID_COPY_TO_CLIPBOARD:
    case ID_COPY_TO_BMP:
        return 1;
    default:
        return axis_ && (toolOf(id) || (id >= ID_ZOOM_1 && id <= ID_ZOOM_5));
    }
}

void AAxisWnd::enableCommands()
{
    if (!bar_ || !bar_->GetSafeHwnd())
        return;
    for (const unsigned id : {ID_TRACK_UNDO, ID_TRACK_REDO, ID_WHOLE_MAP, ID_SHOW_CELLS})
        bar_->SendMessage(TB_ENABLEBUTTON, id, IsCommandEnabled(id));
    const EditHistory& history = trackers_->history();
    (void)bar_->SetButtonTip(ID_TRACK_UNDO, stepText("Undo", history.undoLabel(), " (Ctrl+Z)"));
    (void)bar_->SetButtonTip(ID_TRACK_REDO,
                             stepText("Redo", history.redoLabel(), " (Ctrl+Shift+Z)"));
}

/// One step of undo or redo, and word of what it was.
int AAxisWnd::walkHistory(int forward)
{
    const EditHistory& history = trackers_->history();
    const std::string label(forward ? history.redoLabel() : history.undoLabel());
    const HWND self = GetSafeHwnd();
    const int done = forward ? trackers_->Redo(this) : trackers_->Undo(this);
    if (done && CWnd::FromHandle(self) == this)
        OnNotice(stepText(forward ? "Redone:" : "Undone:", label, ""));
    return 1;
}

void AAxisWnd::ChooseTool(int mode)
{
    const HWND self = GetSafeHwnd();
    trackers_->BeginMode(this, mode);
    for (const Tool& tool : tools)
        if (tool.mode == mode && (!self || CWnd::FromHandle(self) == this) && bar_)
            bar_->SendMessage(TB_CHECKBUTTON, tool.command, 1);
}

int AAxisWnd::RunCommand(unsigned id)
{
    const CPoint* const at = menuPoint_.x >= 0 ? &menuPoint_ : nullptr;
    if (const Tool* const tool = toolOf(id))
        return ChooseTool(tool->mode), 1;
    if (id >= ID_ZOOM_1 && id <= ID_ZOOM_5) {
        trackers_->SetZoomScaleNo(static_cast<int>(id - ID_ZOOM_1));
        return ChooseTool(toolZoomIn), 1;
    }
    switch (id) {
    case ID_ZOOM_MINUS:
        return ZoomBack(), 1;
    case ID_WHOLE_MAP:
        return ShowWholeMap(), 1;
    case ID_SHOW_CELLS:
        return SetCellOverlay(!showCells_), 1;
    case ID_TRACK_UNDO:
        return walkHistory(0);
    case ID_TRACK_REDO:
        return walkHistory(1);
    case ID_TRACK_DELETE:
        return (void)trackers_->DelteTracker(this), 1;
    case ID_TRACK_COPY:
        return (void)trackers_->CopyTracker(this), 1;
    case ID_SELECT_ALL:
        return trackers_->SelectAll(this), 1;
    case ID_CLEAR_AREAS:
        return trackers_->Clear(this), 1;
    case ID_CLOSE_AREA:
        return (void)trackers_->CloseArea(this), 1;
    case ID_VERTEX_INSERT:
        return (void)trackers_->InsertVertex(this, at), 1;
    case ID_VERTEX_DELETE:
        return (void)trackers_->DeleteVertex(this, at), 1;
    case ID_COPY_TO_CLIPBOARD:
        return OnCopyToClipboard(), 1;
    case ID_COPY_TO_BMP:
        return OnCopyToBMP(), 1;
    default:
        return 0;
    }
}

int AAxisWnd::OnCommand(unsigned id, unsigned code, CWnd* control)
{
    if (code == 0 && RunCommand(id))
        return 1;
    return ABWindow::OnCommand(id, code, control);
}

int AAxisWnd::IsVertexFocused() const
{
    return trackers_->focusHandle() >= 0 && !trackers_->workingTracker() &&
           dynamic_cast<ARPAreaTracker*>(trackers_->trackerAt(trackers_->focusItem()));
}

int AAxisWnd::DeleteFocused()
{
    if (!IsVertexFocused())
        return (void)trackers_->DelteTracker(this), 1;
    const HWND self = GetSafeHwnd();
    if (!trackers_->DeleteVertex(this) && CWnd::FromHandle(self) == this)
        OnNotice(threeVerticesStay);
    return 1;
}

int AAxisWnd::moveByArrow(int key, bool shift, bool control)
{
    const KeyDirection direction = arrowDirection(key);
    if (!axis_ || (direction.right == 0 && direction.down == 0))
        return 0;
    settle();
    if (keyStep(shift, control) == KeyStep::pixel)
        return (void)trackers_->MoveBy(this, direction.right, direction.down), 1;
    APoint<double> cell{0, 0};
    if (map_)
        cell = {map_->MPXtoRPX(1) - map_->MPXtoRPX(0), map_->MPYtoRPY(1) - map_->MPYtoRPY(0)};
    CPoint at = axis_->getGraphRect().CenterPoint();
    (void)trackers_->FocusPoint(at);
    const StepScale scale = stepScale(
        cell, APoint<int>{at.x, at.y}, [this](int x) { return axis_->GPXtoRPX(x); },
        [this](int y) { return axis_->GPYtoRPY(y); });
    const APoint<double> offset = keyOffset(direction, keyStep(shift, control), scale);
    return (void)trackers_->MoveByValue(this, offset.x, offset.y), 1;
}

int AAxisWnd::runControlKey(int key, bool shift)
{
    switch (key) {
    case 'A':
        return RunCommand(ID_SELECT_ALL);
    case 'D':
        return RunCommand(ID_TRACK_COPY);
    case 'C':
        return OnCopyToClipboard(), 1;
    case 'Y':
        return RunCommand(ID_TRACK_REDO);
    case 'Z':
        return RunCommand(shift ? ID_TRACK_REDO : ID_TRACK_UNDO);
    default:
        return 0;
    }
}

int AAxisWnd::toolKey(int key)
{
    constexpr unsigned commands[] = {ID_WHOLE_MAP,         ID_TRACK_ARROW,   ID_TRACK_RECT,
                                     ID_TRACK_ROTATE_RECT, ID_TRACK_ELLIPSE, ID_TRACK_AREA,
                                     ID_ZOOM_PLUS,         ID_ZOOM_MINUS};
    const int digit = key >= VK_NUMPAD0 ? key - VK_NUMPAD0 : key - '0';
    return digit >= 0 && digit < static_cast<int>(std::size(commands)) &&
           RunCommand(commands[digit]);
}

/// Non-zero when the key was one of this window's.
int AAxisWnd::runKey(int key, bool shift, bool control)
{
    menuPoint_ = CPoint(-1, -1);
    switch (key) {
    case VK_TAB:
        return shift ? trackers_->PrevFocus(this) : trackers_->NextFocus(this);
    case VK_LEFT:
    case VK_RIGHT:
    case VK_UP:
    case VK_DOWN:
        return moveByArrow(key, shift, control);
    case VK_DELETE:
        return DeleteFocused();
    case VK_INSERT:
        return (void)trackers_->InsertVertex(this), 1;
    case VK_RETURN:
        return trackers_->CloseArea(this) || trackers_->PlaceShape(this);
    case VK_ESCAPE:
        return endPan(), trackers_->Escape(this);
    default:
        break;
    }
    if (control)
        return runControlKey(key, shift);
    const CPoint middle = plotRect().CenterPoint();
    switch (key) {
    case 'M':
        return RunCommand(ID_SHOW_CELLS);
    case VK_SPACE:
        return spaceHeld_ = 1;
    case VK_ADD:
    case VK_OEM_PLUS:
        return ZoomAbout(middle, zoomOfKey), 1;
    case VK_SUBTRACT:
    case VK_OEM_MINUS:
        return ZoomAbout(middle, 1 / zoomOfKey), 1;
    default:
        return toolKey(key);
    }
}

void AAxisWnd::OnKeyDown(unsigned key, unsigned repeat, unsigned flags)
{
    const HWND self = GetSafeHwnd();
    const int used =
        runKey(static_cast<int>(key), GetKeyState(VK_SHIFT) < 0, GetKeyState(VK_CONTROL) < 0);
    if (used || CWnd::FromHandle(self) != this)
        return;
    ABWindow::OnKeyDown(key, repeat, flags);
    if (static_cast<int>(key) == VK_TAB && CWnd::FromHandle(self) == this)
        leaveForDialog();
}

/// The base leaves a window that stands in a dialog itself; this one may stand deeper.
void AAxisWnd::leaveForDialog()
{
    CWnd* above = GetParent();
    if (!above || above->IsDialog())
        return;
    while (above && !above->IsDialog())
        above = above->GetParent();
    if (!above)
        return;
    auto* const dialog = static_cast<CDialog*>(above);
    if (GetKeyState(VK_SHIFT) < 0)
        dialog->PrevDlgCtrl();
    else
        dialog->NextDlgCtrl();
}

void AAxisWnd::OnKeyUp(unsigned key, unsigned repeat, unsigned flags)
{
    if (key == VK_SPACE)
        spaceHeld_ = 0;
    ABWindow::OnKeyUp(key, repeat, flags);
}

}  // namespace pavane
