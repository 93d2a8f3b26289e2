// A radio jet as a surface, with its contours on it and on the floor below it.
//   surface FILE.png

#include "pavane/axes/box/A2_3DAxis.h"
#include "pavane/axes/box/ASurfaceGraph.h"
#include "pavane/axes/windows/save_axis.h"
#include "platform/platform.h"

#include <cmath>

using namespace pavane;

int main(int argc, char** argv)
{
    if (argc < 2 || !InitPlatform(argc, argv, PlatformUse::pictures))
        return 1;
    AMatrix<float> jet(200, 200);
    for (int r = 0; r < jet.rows(); ++r)
        for (int c = 0; c < jet.columns(); ++c) {
            const double x = (c - 80) / 12.0, y = (r - 80) / 12.0, along = x * 0.8 + y * 0.6;
            const double beam = std::exp(-std::pow(y * 0.8 - x * 0.6, 2));
            const double knots = std::exp(-along / 4) * (0.3 + 0.2 * std::cos(along * 1.8));
            jet(r, c) = static_cast<float>(0.7 * std::exp(-x * x - y * y) +
                                           beam * knots / (1 + std::exp(-6 * along)));
        }
    const AFloatMatrixAccess cells(jet);
    A2_3DAxis box(-1, 1, nullptr, 0);
    box.setNameOX("Right ascension [%sas]");
    box.setNameOY("Declination [%sas]");
    auto* const surface = new ASurfaceGraph(&box, cells, {0.01, -0.01, -0.01, 0.01}, 0);
    surface->setNames("", "", "[%sJy/beam]");
    surface->SetStyle(surfaceColors | surfaceLight | surfaceContours);
    surface->SetFloor(floorContours);
    ContourLevels levels;
    levels.read("peak:1,2,5,10,20,40,80");
    surface->contours().setLevels(levels);
    box.SetFloorGap(0.5);  // room below the surface, for the floor to be seen
    box.SetBoxHeight(1);
    box.SetView(20, 25);
    CString error;
    const int done = SaveAxis(box, {800, 640}, argv[1], error);
    ShutdownPlatform();
    return done ? 0 : 1;
}
