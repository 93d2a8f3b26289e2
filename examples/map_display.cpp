// A map whose display is chosen on a sheet (key D), with a dialog for its beam (key B) that fits a
// dirty beam.
//     map_display MAP.fits BEAM.fits
#include "pavane/axes/dialogs/ABeamDlg.h"
#include "pavane/axes/dialogs/AMapDisplayDlg.h"
#include "pavane/axes/windows/show_map.h"
#include "platform/platform.h"

#include <cstdio>

using namespace pavane;

class DisplayedMap : public AAxisWnd
{
public:
    MapPicture map, dirty;

protected:
    double unit() { return map.content().frame.onSky ? map.content().frame.arcseconds : 0; }
    int takeKey(int key, bool shift, bool control) override
    {
        if ((key != 'D' && key != 'B') || shift || control)
            return AAxisWnd::takeKey(key, shift, control);
        const auto found = [this](DirtyBeam& beam, CString&) {
            const MapFrame& frame = dirty.content().frame;
            beam = {&dirty.graph().cells(), frame.centres(), frame.onSky ? frame.arcseconds : 0};
            return 1;
        };
        AMapDisplayDlg sheet(*this, unit(), this);
        ABeamDlg beam(*this, unit(), this);
        sheet.SetDirtyBeam(found);
        beam.SetDirtyBeam(found);
        return key == 'D' ? sheet.DoModal() : beam.DoModal(), 1;
    }
    void OnDestroy() override { AAxisWnd::OnDestroy(), PostQuitMessage(0); }
};

int main(int argc, char** argv)
{
    if (!InitPlatform(argc, argv, PlatformUse::windows))
        return 2;
    DisplayedMap window;
    CString error;
    if (argc != 3 || !window.map.open(argv[1], error) || !window.dirty.open(argv[2], error))
        return std::fprintf(stderr, "map_display MAP.fits BEAM.fits %s\n", error.c_str()), 2;
    window.Create("", argv[1], WS_OVERLAPPEDWINDOW, CRect(0, 0, 720, 640), nullptr, 0);
    showMap(window, window.map);
    window.ShowWindow(SW_SHOW);
    const int result = RunMessages();
    window.SetAxis(nullptr, 0);
    return result;
}
