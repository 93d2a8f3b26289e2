// What can be done with the areas of an axis window now, in menus and toolbar.
#include "pavane/axes/windows/AAxisWnd.h"
#include "pavane/history/step_label.h"
#include "pavane/resources/plot_commands.h"
#include "pavane/trackers/ARPAreaTracker.h"
#include "pavane/trackers/collections/ATrackerArrayInAxis.h"
#include "platform/CMenu.h"
#include "platform/controls.h"

#include <algorithm>
#include <string>
#include <utility>

namespace pavane
{

int AAxisWnd::IsVertexFocused() const
{
    return trackers_->focusHandle() >= 0 && !trackers_->workingTracker() &&
           dynamic_cast<ARPAreaTracker*>(trackers_->trackerAt(trackers_->focusItem()));
}

int AAxisWnd::GetMenuID() { return IDR_AXIS_MENU; }

void AAxisWnd::amMenuParse(CMenu* popup)
{
    APlotWnd::amMenuParse(popup);
    for (CMenu::Line& line : popup->lines()) {
        if (line.id == ID_SHOW_CELLS)
            line.checked = showCells_;
        else if (line.id == ID_NEVER_CLEAN)
            line.checked = trackers_->IsNeverClean();
        else if (line.id == ID_TRACK_DELETE && IsVertexFocused())  // the key takes the vertex
            line.text = line.text.substr(0, line.text.find('\t'));
        else if (line.id == ID_TRACK_UNDO)
            line.text = menuTextOfStep(line.text, trackers_->history().undoLabel());
        else if (line.id == ID_TRACK_REDO)
            line.text = menuTextOfStep(line.text, trackers_->history().redoLabel());
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
    return APlotWnd::IsCommandEnabled(id == std::clamp(id, ID_ZOOM_1, ID_ZOOM_5) ? ID_ZOOM_PLUS
                                                                                 : id);
}

int AAxisWnd::isTime(CommandWhen when) const
{
    const int open = trackers_->workingTracker() != nullptr;
    switch (when) {
    case CommandWhen::hasPlot:
        return GetPlot() != nullptr;
    case CommandWhen::hasMap:
        return map_ != nullptr;
    case CommandWhen::canUndo:
        return trackers_->CanUndo();
    case CommandWhen::canRedo:
        return trackers_->CanRedo();
    case CommandWhen::isSelected:
        return !trackers_->SelectedItems().empty();
    case CommandWhen::isSelectedOrOpen:
        return open || !trackers_->SelectedItems().empty();
    case CommandWhen::isOpen:
        return open;
    case CommandWhen::hasPolygonThere:
        return isPolygonAt(menuPoint());
    case CommandWhen::hasAreas:
        return trackers_->trackerCount() > 0;
    case CommandWhen::hasMapAndAreas:
        return map_ && trackers_->trackerCount() > 0;
    case CommandWhen::hasAreasOrOpen:
        return open || trackers_->trackerCount() > 0;
    default:
        return APlotWnd::isTime(when);
    }
}

void AAxisWnd::enableCommands()
{
    if (!bar_ || !bar_->GetSafeHwnd())
        return;
    for (const unsigned id : {ID_TRACK_UNDO, ID_TRACK_REDO, ID_WHOLE_MAP, ID_SHOW_CELLS})
        bar_->SendMessage(TB_ENABLEBUTTON, id, IsCommandEnabled(id));
    const EditHistory& history = trackers_->history();
    for (const auto& [id, step] : {std::pair(ID_TRACK_UNDO, history.undoLabel()),
                                   std::pair(ID_TRACK_REDO, history.redoLabel())})
        (void)bar_->SetButtonTip(id, withStep(commandOf(id)->tip, " (", step));
}

/// One step of undo or redo, and word of what it was.
int AAxisWnd::walkHistory(int forward)
{
    const EditHistory& history = trackers_->history();
    const std::string label(forward ? history.redoLabel() : history.undoLabel());
    const HWND self = GetSafeHwnd();
    const int done = forward ? trackers_->Redo(this) : trackers_->Undo(this);
    if (done && CWnd::FromHandle(self) == this)
        OnNotice(withStep(forward ? "Redone:" : "Undone:", "\t", label));
    return 1;
}

}  // namespace pavane
