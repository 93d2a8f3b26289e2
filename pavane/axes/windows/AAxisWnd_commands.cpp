// Keys and commands that edit the areas of an axis window.
#include "pavane/axes/A2DAxis.h"
#include "pavane/axes/maps/ABMapGraph.h"
#include "pavane/axes/windows/AAxisWnd.h"
#include "pavane/resources/plot_commands.h"
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
    const PlotCommand* const command = commandOfTool(mode);
    if (command && (!self || CWnd::FromHandle(self) == this) && bar_)
        bar_->SendMessage(TB_CHECKBUTTON, command->id, 1);
}

int AAxisWnd::RunCommand(unsigned id)
{
    const CPoint asked = menuPoint();
    const CPoint* const at = asked.x >= 0 ? &asked : nullptr;
    const PlotCommand* const command = commandOf(id);
    if (command && command->tool == toolContour && !map_)
        return 1;
    if (command && command->tool != noTool) {
        const HWND self = GetSafeHwnd();
        ChooseTool(command->tool);
        if (command->tool == toolContour && CWnd::FromHandle(self) == this)
            OnNotice(CString(clickInContour) + contourLevel_.text() + '.');
        return 1;
    }
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
    case ID_NEVER_CLEAN:
        return (void)trackers_->SetNeverClean(this, !trackers_->IsNeverClean()), 1;
    case ID_CONTOUR_LEVEL:
        return askContourLevel(), 1;
    case ID_GROW_AREAS:
        return askGrowth(1), 1;
    case ID_SHRINK_AREAS:
        return askGrowth(-1), 1;
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
    case VK_RETURN:
        return contourAtPeak() || trackers_->CloseArea(this) || trackers_->PlaceShape(this);
    case VK_ESCAPE:
        if (takePlayBack())
            return 1;
        (void)APlotWnd::takeKey(key, shift, control);
        return trackers_->Escape(this);
    default:
        break;
    }
    if (control && key == 'Y')  // as other programs have it
        return RunCommand(ID_TRACK_REDO);
    return APlotWnd::takeKey(key, shift, control);
}

}  // namespace pavane
