// A map with the grid of the sky and the contours of another one, as a picture, and the values
// along a line across its middle, as text.
//   map_desk MAP.fits OTHER.fits OUT.png OUT.tsv

#include "pavane/axes/A2DAxis.h"
#include "pavane/axes/maps/ALevelsColorGraph.h"
#include "pavane/axes/maps/MapPicture.h"
#include "pavane/axes/maps/overlays/AOtherContours.h"
#include "pavane/axes/maps/sky/sky_grid_wish.h"
#include "pavane/axes/windows/save_axis.h"
#include "pavane/measures/profiles/MapProfile.h"
#include "pavane/measures/profiles/profile_tables.h"
#include "platform/platform.h"

#include <cstdio>
#include <fstream>

using namespace pavane;

namespace
{

int run(const char* const* names, CString& error)
{
    SkyCoordinates sky, otherSky;  // the grid asks the first one as long as the picture lives
    MapContent other;
    MapPicture picture;
    SkyGridWish grid;
    grid.shown = SkyGridShown::lines;
    if (!picture.open(names[0], error) || !sky.init(picture.content().map.header, error) ||
        !readMapContent(names[1], -1, other, error) || !otherSky.init(other.map.header, error))
        return 0;
    picture.graph().contours().setLevels({LevelUnit::absolute, {}});  // none of its own
    applySkyGrid(*addSkyGrid(picture, sky), grid, sky);
    auto* const contours = new AOtherContours(&picture.axis(), picture.graph());  // the axis's
    if (!contours->setMap(other, otherSky, sky, {}, {}, error) ||
        !SaveAxis(picture.axis(), {900, 800}, names[2], error))
        return 0;
    const AFloatMatrixAccess cells(picture.content().map.cells);
    const MapFrame& frame = picture.content().frame;
    const double middle = (cells.rows() - 1) / 2.;
    MapProfile profile;
    if (!profile.take(cells, {{{0, middle}, {cells.columns() - 1., middle}}}, sky, frame, error))
        return 0;
    std::ofstream out(names[3]);
    const CString unit = picture.content().map.header.bunit;
    return profileTable(profile, unit, sky, frame).writeTsv(out) && out.flush().good();
}

}  // namespace

int main(int argc, char** argv)
{
    if (argc != 5 || !InitPlatform(argc, argv, PlatformUse::pictures))
        return 1;
    CString error = "the table cannot be written";
    const int done = run(argv + 1, error);
    if (!done)
        std::fprintf(stderr, "%s\n", error.c_str());
    ShutdownPlatform();
    return done ? 0 : 1;
}
