#include "apps/clean/window_program.h"

#include "apps/clean/CleanWindow.h"
#include "apps/view/display.h"
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

int runCleanWindow(char** argv, const CleanOptions& options, std::string& error)
{
    if (!hasDisplay(error))
        return 0;
    SetProfileProgram("pavane-clean");
    if (!InitPlatform(1, argv, PlatformUse::windows)) {
        error = "the window toolkit does not start";
        return 0;
    }
    SetTableWheelRows(wheelRows);
    int shown = 0;
    {
        CleanWindow window;
        shown = window.Create(options);
        if (shown) {
            window.Show();
            if (!options.data.empty())
                (void)window.Open(options.data);
            (void)RunMessages();
        }
    }
    ShutdownPlatform();
    if (!shown)
        error = "the window cannot be made";
    return shown;
}

}  // namespace pavane
