// A map whose colours are played with: by the right button, and in a dialog by key P.
//     palette_play MAP.fits
#include "pavane/axes/dialogs/APalettePlayDlg.h"
#include "pavane/axes/maps/MapPicture.h"
#include "pavane/axes/windows/AAxisWnd.h"
#include "pavane/axes/windows/show_map.h"
#include "platform/platform.h"

#include <cstdio>
#include <memory>

using namespace pavane;

class PlayedMap : public AAxisWnd
{
protected:
    int takeKey(int key, bool shift, bool control) override
    {
        if (key != 'P' || shift || control)
            return AAxisWnd::takeKey(key, shift, control);
        dialog_ = std::make_unique<APalettePlayDlg>(*this, this);
        return dialog_->CreateModeless() && dialog_->ShowWindow(SW_SHOW), 1;
    }
    void OnDestroy() override
    {
        dialog_.reset();
        AAxisWnd::OnDestroy();
        PostQuitMessage(0);
    }

private:
    std::unique_ptr<APalettePlayDlg> dialog_;
};

int main(int argc, char** argv)
{
    if (!InitPlatform(argc, argv, PlatformUse::windows))
        return 2;
    MapPicture map;
    CString error;
    if (argc != 2 || !map.open(argv[1], error))
        return std::fprintf(stderr, "palette_play MAP.fits %s\n", error.c_str()), 2;
    PlayedMap window;
    window.Create("", argv[1], WS_OVERLAPPEDWINDOW, CRect(0, 0, 720, 640), nullptr, 0);
    showMap(window, map);
    window.SetPlayByMouse(1);
    window.ShowWindow(SW_SHOW);
    return RunMessages();
}
