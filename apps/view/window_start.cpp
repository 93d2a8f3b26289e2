#include "apps/view/window_start.h"

#include "apps/view/window_place.h"
#include "pavane/tables/ATableWnd.h"
#include "pavane/windows/window_placement.h"
#include "platform/CWnd.h"
#include "platform/platform.h"
#include "platform/profile.h"
#include "platform/screens.h"

namespace pavane
{

namespace
{

/// Rows of a table that a notch of the wheel scrolls.
constexpr int wheelRows = 3;

}  // namespace

int runWindowProgram(char** argv, const char* program, std::string& error,
                     const std::function<int()>& open)
{
    SetProfileProgram(program);
    if (!InitPlatform(1, argv, PlatformUse::windows, error)) {
        error += "; --batch works without windows";
        return 0;
    }
    SetTableWheelRows(wheelRows);
    const int shown = open();
    ShutdownPlatform();
    if (!shown)
        error = "the window cannot be made";
    return shown;
}

void showPlaced(CWnd& window, const char* section, const CRect& first)
{
    // a window that starts as an icon, or where no screen is any more, would seem not to start
    const PlacementRecord start =
        startPlacement(GetProfileString(section, "WindowPos"), first, GetScreenRects());
    WINDOWPLACEMENT placement;
    placement.showCmd = start.showCommand;
    placement.rcNormalPosition = start.normal;
    if (!window.SetWindowPlacement(placement))
        window.ShowWindow(SW_SHOW);
}

}  // namespace pavane
