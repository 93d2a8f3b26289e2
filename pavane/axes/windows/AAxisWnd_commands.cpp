// Keys and commands that edit the areas of an axis window.
#include "pavane/axes/A2DAxis.h"
#include "pavane/axes/maps/ABMapGraph.h"
#include "pavane/axes/windows/AAxisWnd.h"
#include "pavane/axes/windows/area_tools.h"
#include "pavane/resources/resource_ids.h"
#include "pavane/resources/tracker_messages.h"
#include "pavane/trackers/ARPAreaTracker.h"
#include "pavane/trackers/collections/ATrackerArrayInAxis.h"
#include "pavane/trackers/shapes/key_steps.h"
#include "platform/controls.h"

namespace pavane
{

void AAxisWnd::ChooseTool(int mode)
{
    const HWND self = GetSafeHwnd();
    trackers_->BeginMode(this, mode);
    for (const AreaTool& tool : areaTools)
        if (tool.mode == mode && (!self || CWnd::FromHandle(self) == this) && bar_)
            bar_->SendMessage(TB_CHECKBUTTON, tool.command, 1);
}

int AAxisWnd::RunCommand(unsigned id)
{
    const CPoint asked = menuPoint();
    const CPoint* const at = asked.x >= 0 ? &asked : nullptr;
    if (const AreaTool* const tool = toolOf(id))
        return ChooseTool(tool->mode), 1;
    if (id >= ID_ZOOM_1 && id <= ID_ZOOM_5) {
        trackers_->SetZoomScaleNo(static_cast<int>(id - ID_ZOOM_1));
        return ChooseTool(toolZoomIn), 1;
    }
    switch (id) {
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
    default:
        return APlotWnd::RunCommand(id);
    }
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
    ABAxis* const axis = GetPlot();
    if (!axis || (direction.right == 0 && direction.down == 0))
        return 0;
    settle();
    if (keyStep(shift, control) == KeyStep::pixel)
        return (void)trackers_->MoveBy(this, direction.right, direction.down), 1;
    APoint<double> cell{0, 0};
    if (map_)
        cell = {map_->MPXtoRPX(1) - map_->MPXtoRPX(0), map_->MPYtoRPY(1) - map_->MPYtoRPY(0)};
    CPoint at = axis->getGraphRect().CenterPoint();
    (void)trackers_->FocusPoint(at);
    const StepScale scale = stepScale(
        cell, APoint<int>{at.x, at.y}, [axis](int x) { return axis->GPXtoRPX(x); },
        [axis](int y) { return axis->GPYtoRPY(y); });
    const APoint<double> offset = keyOffset(direction, keyStep(shift, control), scale);
    return (void)trackers_->MoveByValue(this, offset.x, offset.y), 1;
}

int AAxisWnd::takeControlKey(int key, bool shift)
{
    switch (key) {
    case 'A':
        return RunCommand(ID_SELECT_ALL);
    case 'D':
        return RunCommand(ID_TRACK_COPY);
    case 'Y':
        return RunCommand(ID_TRACK_REDO);
    case 'Z':
        return RunCommand(shift ? ID_TRACK_REDO : ID_TRACK_UNDO);
    default:
        return APlotWnd::takeKey(key, shift, true);
    }
}

int AAxisWnd::takeKey(int key, bool shift, bool control)
{
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
        (void)APlotWnd::takeKey(key, shift, control);
        return trackers_->Escape(this);
    default:
        break;
    }
    if (control)
        return takeControlKey(key, shift);
    if (key == 'M')
        return RunCommand(ID_SHOW_CELLS);
    const int digit = key >= VK_NUMPAD0 ? key - VK_NUMPAD0 : key - '0';
    const int first = 1;
    if (digit >= first && digit < first + static_cast<int>(std::size(areaTools)))
        return RunCommand(areaTools[digit - first].command);
    return APlotWnd::takeKey(key, shift, control);
}

}  // namespace pavane
