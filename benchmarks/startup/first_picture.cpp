// pavane-view from its start to the first full picture on the window, without waiting for a user:
//   first-picture MAP.fits
#include "apps/view/MainWindow.h"
#include "platform/messages.h"
#include "platform/platform.h"

int main(int argc, char** argv)
{
    using namespace pavane;
    if (argc != 2 || !InitPlatform(1, argv, PlatformUse::windows))
        return 1;
    int drawn = 0;
    {
        MainWindow window;
        ViewOptions options;
        options.map = argv[1];
        if (!window.Create(options) || !window.OpenMap(options.map, options.plane))
            return 1;
        window.Show();
        MSG message;
        // the call after the drawing brings it from the window's own pixels to the screen
        while (!drawn) {
            drawn = window.view().contentDrawings() > 0;
            if (PeekMessage(message))
                DispatchMessage(message);
        }
    }
    ShutdownPlatform();
    return 0;
}
