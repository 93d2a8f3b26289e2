#include "apps/clean/window_program.h"

#include "apps/clean/CleanWindow.h"
#include "apps/view/window_start.h"
#include "platform/platform.h"

namespace pavane
{

int runCleanWindow(char** argv, const CleanOptions& options, std::string& error)
{
    return runWindowProgram(argv, "pavane-clean", error, [&] {
        CleanWindow window;
        const int shown = window.Create(options);
        if (shown) {
            window.Show();
            if (!options.data.empty())
                (void)window.Open(options.data);
            (void)RunMessages();
        }
        return shown;
    });
}

}  // namespace pavane
