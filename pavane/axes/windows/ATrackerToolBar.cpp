#include "pavane/axes/windows/ATrackerToolBar.h"

#include "pavane/resources/resource_ids.h"
#include "pavane/resources/toolbar_icons.h"

#include <iterator>

namespace pavane
{

namespace
{

struct Button {
    int set;
    unsigned id;
    const char* tip;
    const char* const* rows;
    int group;
    int checkable;
    int dropDown;
};

constexpr int toolGroup = 1;
constexpr int iconRows = static_cast<int>(std::size(arrowIcon));

constexpr Button buttons[] = {
    {trackerButtonsDraw, ID_TRACK_ARROW, "Select and change areas (1)", arrowIcon, toolGroup, 0, 0},
    {trackerButtonsDraw, ID_TRACK_RECT, "Draw a rectangle (2)", rectIcon, toolGroup, 0, 0},
    {trackerButtonsDraw, ID_TRACK_ROTATE_RECT, "Draw a rectangle that can be turned (3)",
     rotateRectIcon, toolGroup, 0, 0},
    {trackerButtonsDraw, ID_TRACK_ELLIPSE, "Draw an ellipse (4)", ellipseIcon, toolGroup, 0, 0},
    {trackerButtonsDraw, ID_TRACK_AREA,
     "Draw a polygon: click its corners, close it with a double click or Enter (5)", areaIcon,
     toolGroup, 0, 0},
    {trackerButtonsZoom, ID_ZOOM_PLUS, "Zoom in where you click (6)", zoomInIcon, toolGroup, 0, 1},
    {trackerButtonsZoom, ID_ZOOM_MINUS, "Back to the view before (7)", zoomBackIcon, 0, 0, 0},
    {trackerButtonsZoom, ID_WHOLE_MAP, "Show the whole map (0)", wholeMapIcon, 0, 0, 0},
    {trackerButtonsEdit, ID_TRACK_UNDO, "Undo (Ctrl+Z)", undoIcon, 0, 0, 0},
    {trackerButtonsEdit, ID_TRACK_REDO, "Redo (Ctrl+Shift+Z)", redoIcon, 0, 0, 0},
    {trackerButtonsEdit, ID_TRACK_COPY, "Duplicate the area (Ctrl+D)", copyIcon, 0, 0, 0},
    {trackerButtonsEdit, ID_TRACK_DELETE, "Delete the area (Del)", deleteIcon, 0, 0, 0},
    {trackerButtonsCells, ID_SHOW_CELLS, "Show the cells that the areas hold (M)", cellsIcon, 0, 1,
     0},
};

}  // namespace

int ATrackerToolBar::SetupButtons(int which)
{
    int last = 0;
    for (const Button& button : buttons) {
        if (which && !(which & button.set))
            continue;
        if (last && last != button.set && !AddButton(ToolButton{}))
            return 0;
        last = button.set;
        ToolButton made;
        made.id = button.id;
        made.tip = button.tip;
        made.rows = button.rows;
        made.rowCount = iconRows;
        made.checkable = button.checkable;
        made.group = button.group;
        made.dropDown = button.dropDown;
        if (!AddButton(made))
            return 0;
    }
    for (const unsigned id : {ID_ZOOM_MINUS, ID_WHOLE_MAP, ID_TRACK_UNDO, ID_TRACK_REDO,
                              ID_TRACK_COPY, ID_TRACK_DELETE})
        EnableButton(id, 0);
    CheckButton(ID_TRACK_ARROW, 1);
    return 1;
}

void ATrackerToolBar::SetOwnerWnd(CWnd* owner, int enabled)
{
    SetOwner(owner);
    for (const Button& button : buttons)
        if (button.group == toolGroup)
            EnableButton(button.id, enabled != 0);
}

}  // namespace pavane
