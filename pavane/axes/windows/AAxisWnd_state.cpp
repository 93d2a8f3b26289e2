// What can be done with the areas of an axis window now, in menus and toolbar.
#include "pavane/axes/windows/AAxisWnd.h"
#include "pavane/axes/windows/area_tools.h"
#include "pavane/trackers/ARPAreaTracker.h"
#include "pavane/trackers/collections/ATrackerArrayInAxis.h"
#include "platform/CMenu.h"
#include "platform/controls.h"

#include <string>
#include <string_view>

namespace pavane
{

namespace
{

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
        return isPolygonAt(menuPoint());
    case ID_SELECT_ALL:
        return trackers_->trackerCount() > 0;
    case ID_CLEAR_AREAS:
        return trackers_->trackerCount() > 0 || working;
    case ID_SHOW_CELLS:
        return map_ != nullptr;
    default:
        return APlotWnd::IsCommandEnabled(id) ||
               (GetPlot() && (toolOf(id) || (id >= ID_ZOOM_1 && id <= ID_ZOOM_5)));
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

}  // namespace pavane
