#include "apps/view/window_program.h"

#include "apps/view/display.h"
#include "apps/view/MainWindow.h"
#include "platform/platform.h"
#include "platform/profile.h"

namespace pavane
{

int runWindow(char** argv, const ViewOptions& options, std::string& error)
{
    if (!hasDisplay(error))
        return 0;
    SetProfileProgram("pavane-view");
    if (!InitPlatform(1, argv, PlatformUse::windows)) {
        error = "the window toolkit does not start";
        return 0;
    }
    int shown = 0;
    {
        MainWindow window;
        shown = window.Create(options);
        if (shown) {
            // the map first: then the first thing that shows is the whole picture
            (void)window.OpenFirst(options);
            window.Show();
            (void)RunMessages();
        }
    }
    ShutdownPlatform();
    if (!shown)
        error = "the window cannot be made";
    return shown;
}

}  // namespace pavane
