// The closure phases of a file of visibilities with those of a model, and as a picture:
//   closure_phases DATA.uvfits MODEL.txt OUT.png
#include "pavane/axes/multi/A2DAxisMulti.h"
#include "pavane/calibration/visibility_charts.h"
#include "platform/picture.h"
#include "platform/platform.h"
#include "tessel/uvfits/UvGroupScan.h"

#include <cstdio>
#include <fstream>
#include <memory>

using namespace pavane;

int main(int argc, char** argv)
{
    AUVXFile file;
    std::string error;
    if (argc != 4 || !InitPlatform(argc, argv, PlatformUse::pictures) || !file.open(argv[1], error))
        return std::fprintf(stderr, "%s\n", error.c_str()), 1;
    AComponents model;
    std::ifstream in(argv[2]);
    model.Load(in);
    UvGroupScan scan(file, UvGroupScan::baselines);
    while (scan.step()) {
    }
    const std::vector<UvBaseline> baselines = scan.foundBaselines();
    auto triangles =
        closureTriangles(telescopesOf(baselines), baselines, {ClosureKind::independent});
    ClosureReader reader(file, triangles, {}, {{}, 60}, model);  // means of a minute
    while (reader.step()) {
    }
    std::vector<std::size_t> shown;
    for (std::size_t t = 0; t < triangles.size(); ++t) {
        const ClosureStatistics found = statisticsOf(reader.series(t));
        std::printf("%-12s %6zu points, reduced chi-squared %.3g\n",
                    triangleName(file, triangles[t]).c_str(), found.count, found.chiSquared);
        shown.push_back(t);
    }
    const std::unique_ptr<A2DAxisMulti> axis(newChartAxis(closureChart(file, reader, shown)));
    CPicture picture(1000, 1200);
    CRect all(0, 0, 1000, 1200);
    axis->draw(*picture.dc(), all);
    CString message;
    return SavePNG(picture, argv[3], message) ? 0 : 1;
}
