#include "apps/view/window_program.h"

#include "apps/view/display.h"
#include "apps/view/ViewWindows.h"
#include "pavane/tables/ATableWnd.h"
#include "platform/platform.h"
#include "platform/profile.h"

namespace pavane
{

namespace
{

/// Rows of a table that a notch of the wheel scrolls.
constexpr int wheelRows = 3;

}  // namespace

int runWindow(char** argv, const ViewOptions& options, std::string& error)
{
    if (!hasDisplay(error))
        return 0;
    SetProfileProgram("pavane-view");
    if (!InitPlatform(1, argv, PlatformUse::windows)) {
        error = "the window toolkit does not start";
        return 0;
    }
    SetTableWheelRows(wheelRows);
    int shown = 0;
    {
        ViewWindows windows;
        shown = windows.openFirst(options);
        if (shown)
            (void)RunMessages();
    }
    ShutdownPlatform();
    if (!shown)
        error = "the window cannot be made";
    return shown;
}

}  // namespace pavane
