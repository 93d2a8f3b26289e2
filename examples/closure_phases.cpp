// Closure phases of a file of visibilities beside those of a model, in numbers and as a picture:
//   closure_phases DATA.uvfits MODEL.txt OUT.png
#include "pavane/axes/multi/A2DAxisMulti.h"
#include "pavane/axes/windows/save_axis.h"
#include "pavane/calibration/visibility_charts.h"
#include "platform/platform.h"

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
    ClosureReader reader(file, ClosureChoice::ofFile(), {}, {{}, 60}, model);  // means of a minute
    while (reader.step()) {
    }
    std::vector<std::size_t> shown;
    for (std::size_t t = 0; t < reader.triangles().size(); shown.push_back(t++)) {
        const ClosureStatistics found = statisticsOf(reader.series(t));
        std::printf("%-12s %6zu points, reduced chi-squared %.3g\n",
                    triangleName(file, reader.triangles()[t]).c_str(), found.count,
                    found.chiSquared);
    }
    const std::unique_ptr<A2DAxisMulti> axis(newChartAxis(closureChart(file, reader, shown)));
    CString message;
    return SaveAxis(*axis, {1000, 1200}, argv[3], message) ? 0 : 1;
}
