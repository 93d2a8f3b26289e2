// A map with the sheet that chooses how it is displayed; the page of the beam fits a dirty beam.
//     map_display MAP.fits BEAM.fits
#include "pavane/axes/dialogs/AMapDisplayDlg.h"
#include "pavane/axes/maps/MapPicture.h"
#include "pavane/axes/windows/AAxisWnd.h"
#include "pavane/axes/windows/show_map.h"
#include "platform/platform.h"

#include <cstdio>

using namespace pavane;

int main(int argc, char** argv)
{
    MapPicture map, dirty;
    CString error;
    if (!InitPlatform(argc, argv, PlatformUse::windows))
        return 2;
    if (argc != 3 || !map.open(argv[1], error) || !dirty.open(argv[2], error))
        return std::fprintf(stderr, "map_display MAP.fits BEAM.fits %s\n", error.c_str()), 2;
    AAxisWnd window;
    window.Create("", argv[1], WS_OVERLAPPEDWINDOW, CRect(0, 0, 720, 640), nullptr, 0);
    showMap(window, map);
    window.ShowWindow(SW_SHOW);
    const auto arcseconds = [](const MapFrame& frame) {
        return frame.onSky ? frame.arcseconds : 0;
    };
    AMapDisplayDlg sheet(window, arcseconds(map.content().frame), &window);
    sheet.SetDirtyBeam([&](DirtyBeam& beam, CString&) {
        const MapFrame& frame = dirty.content().frame;
        beam = {&dirty.graph().cells(), frame.centres(), arcseconds(frame)};
        return 1;
    });
    return sheet.DoModal() == IDOK ? 0 : 1;
}
