// A map with the grid of the sky in a frame, as PNG, PDF or SVG by the ending of the name.
//   sky_grid MAP.fits OUT.png [FRAME]

#include "pavane/axes/A2DAxis.h"
#include "pavane/axes/maps/MapPicture.h"
#include "pavane/axes/maps/sky/sky_grid_wish.h"
#include "pavane/axes/windows/save_axis.h"
#include "platform/platform.h"

#include <cstdio>

using namespace pavane;

int main(int argc, char** argv)
{
    if (argc < 3 || !InitPlatform(argc, argv, PlatformUse::pictures))
        return 1;
    int done = 0;
    {
        SkyCoordinates sky;  // outlives the picture, whose grid asks it
        MapPicture picture;
        SkyGridWish wish;
        CString error;
        const CString text = CString("lines") + (argc > 3 ? CString(",") + argv[3] : CString());
        if (readSkyGridWish(text, wish, error) && picture.open(argv[1], error) &&
            sky.init(picture.content().map.header, error)) {
            applySkyGrid(*addSkyGrid(picture, sky), wish, sky);  // the axis owns it
            done = SaveAxis(picture.axis(), {900, 800}, argv[2], error);
        }
        if (!done)
            std::fprintf(stderr, "%s\n", error.c_str());
    }
    ShutdownPlatform();
    return done ? 0 : 1;
}
