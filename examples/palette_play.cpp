// A map whose colours are played with: by the right button, and in the dialog beside it.
//     palette_play MAP.fits
#include "pavane/axes/dialogs/APalettePlayDlg.h"
#include "pavane/axes/maps/MapPicture.h"
#include "pavane/axes/windows/AAxisWnd.h"
#include "pavane/axes/windows/show_map.h"
#include "platform/platform.h"

#include <cstdio>

using namespace pavane;

struct PlayedMap : AAxisWnd {
    void OnDestroy() override { AAxisWnd::OnDestroy(), PostQuitMessage(0); }
};

int main(int argc, char** argv)
{
    MapPicture map;
    CString error;
    if (!InitPlatform(argc, argv, PlatformUse::windows))
        return 2;
    if (argc != 2 || !map.open(argv[1], error))
        return std::fprintf(stderr, "palette_play MAP.fits %s\n", error.c_str()), 2;
    PlayedMap window;
    window.Create("", argv[1], WS_OVERLAPPEDWINDOW, CRect(0, 0, 720, 640), nullptr, 0);
    showMap(window, map);
    window.SetPlayByMouse(1);
    window.ShowWindow(SW_SHOW);
    APalettePlayDlg dialog(window, &window);
    if (dialog.CreateModeless())
        dialog.ShowWindow(SW_SHOW);
    return RunMessages();
}
