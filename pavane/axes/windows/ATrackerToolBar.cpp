#include "pavane/axes/windows/ATrackerToolBar.h"

#include "pavane/resources/plot_commands.h"

#include <iterator>

namespace pavane
{

namespace
{

constexpr int toolGroup = 1;
constexpr int iconRows = static_cast<int>(std::size(arrowIcon));

}  // namespace

int ATrackerToolBar::SetupButtons(int which)
{
    int last = 0;
    for (const PlotCommand& command : plotCommands) {
        if (!command.buttons || (which && !(which & command.buttons)))
            continue;
        if (last && last != command.buttons && !AddButton(ToolButton{}))
            return 0;
        last = command.buttons;
        ToolButton made;
        made.id = command.id;
        made.tip = command.tip;
        made.rows = command.icon;
        made.rowCount = iconRows;
        made.checkable = command.when == CommandWhen::hasMap;
        made.group = command.tool == noTool ? 0 : toolGroup;
        made.dropDown = command.tool == toolZoomIn;
        if (!AddButton(made))
            return 0;
        // those that wait for something the user does
        if (!made.group && !made.checkable)
            EnableButton(command.id, 0);
    }
    CheckButton(ID_TRACK_ARROW, 1);
    return 1;
}

void ATrackerToolBar::SetOwnerWnd(CWnd* owner, int enabled)
{
    SetOwner(owner);
    for (const PlotCommand& command : plotCommands)
        if (command.tool != noTool)
            EnableButton(command.id, enabled != 0);
}

}  // namespace pavane
