// A map as a surface, in a picture and on a page: a jet, its polarised part above it, and a source
// with a blank corner.
//   surface FOLDER

#include "pavane/axes/box/A2_3D2ZAxis.h"
#include "pavane/axes/box/ASurfaceGraph.h"
#include "platform/picture.h"
#include "platform/platform.h"

#include <cmath>
#include <limits>

using namespace pavane;

int main(int argc, char** argv)
{
    if (argc < 2 || !InitPlatform(argc, argv, PlatformUse::pictures))
        return 1;
    constexpr int side = 200;
    AMatrix<float> intensity(side, side), polarised(side, side);
    for (int r = 0; r < side; ++r)
        for (int c = 0; c < side; ++c) {
            const double x = (c - 90) / 12.0, y = (r - 80) / 12.0, along = x * 0.8 + y * 0.6;
            const double across = y * 0.8 - x * 0.6;
            const double jet = along > 0 ? 0.5 * std::exp(-across * across - along / 4) : 0;
            const double knot = 0.4 * std::exp(-(std::pow(along - 5, 2) + across * across));
            intensity(r, c) = static_cast<float>(std::exp(-(x * x + y * y)) + jet + knot);
            polarised(r, c) = static_cast<float>(0.1 * jet + 0.3 * knot);
            if (r + c < 60)
                intensity(r, c) = std::numeric_limits<float>::quiet_NaN();  // not observed
        }
    const AFloatMatrixAccess cells(intensity), polarisedCells(polarised);
    const TMinMax centres{0.010, -0.010, -0.010, 0.010};  // arc seconds, east at the left
    A2_3D2ZAxis box(-1, 1, nullptr, 0);
    box.setNameOX("Right ascension [%sas]");
    box.setNameOY("Declination [%sas]");
    auto* const surface = new ASurfaceGraph(&box, cells, centres, 0);
    surface->setNames("", "", "[%sJy/beam]");
    auto* const above = new ASurfaceGraph(&box, polarisedCells, centres, 1);
    above->setNames("", "", "Polarised [%sJy/beam]");
    above->SetStyle(surfaceLinesX | surfaceLinesY | surfaceColors);
    above->SetFloor(floorContours);
    ContourLevels levels;
    levels.read("peak:5,10,20,40,80");
    above->contours().setLevels(levels);
    above->SetLatticeSpacing(8);
    box.SetView(20, 25);
    box.SetBoxHeight(0.8);

    const CString folder = argv[1];
    CString error;
    CPicture picture(800, 640);
    CRect rect(0, 0, 800, 640);
    const auto dc = picture.dc();
    dc->SetSmooth(1);
    box.draw(*dc, rect);
    CPageFile page(CPageFile::Format::pdf, 800, 640, "Surface");
    CRect sheet(0, 0, 800 * 12, 640 * 12);
    box.draw(page.dc(), sheet);
    const int done = SavePNG(picture, folder + "/surface.png", error) &&
                     page.Close(folder + "/surface.pdf", error);
    ShutdownPlatform();
    return done ? 0 : 1;
}
