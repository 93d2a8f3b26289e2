#include "apps/view/window_program.h"

#include "apps/view/ViewWindows.h"
#include "apps/view/window_start.h"
#include "platform/CWnd.h"
#include "platform/platform.h"

namespace pavane
{

int runWindow(char** argv, const ViewOptions& options, std::string& error)
{
    return runWindowProgram(argv, "pavane-view", error, [&] {
        ViewWindows windows;
        const int shown = windows.openFirst(options);
        if (shown)
            (void)RunMessages();
        return shown;
    });
}

}  // namespace pavane
