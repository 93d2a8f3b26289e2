// Flux density and polarisation angle of a source over a year, in one plot of two scales.
#include "pavane/axes/graph_styles.h"
#include "pavane/axes/multi/A2DAxisMulti.h"
#include "pavane/axes/multi/AGraphXYErrors.h"
#include "platform/picture.h"
#include "platform/platform.h"

#include <cmath>
#include <vector>

using namespace pavane;

int main(int argc, char** argv)
{
    if (!InitPlatform(argc, argv, PlatformUse::pictures))
        return 1;
    std::vector<double> day, flux, error, angle;
    for (int i = 0; i < 60; ++i) {
        day.push_back(6.1 * i);
        flux.push_back(1.3 + 0.4 * std::sin(0.09 * i));
        error.push_back(0.05 * flux.back());
        angle.push_back(std::remainder(40 + 5.0 * i, 180));
    }
    A2DAxisMulti axis(1, 1, nullptr, axisGridX | axisGridY);
    axis.setNameOX("Day of 2025");
    axis.setNameOY("Flux density [%sJy]");
    AYScale scale;
    scale.name = "Polarisation angle [deg]";
    scale.range = {-90, 90};
    scale.period = 180;
    const int angles = axis.addScale(scale);
    auto* const points = new AGraphXYErrors(&axis, day.data(), flux.data(), 60, nullptr,
                                            graphPointDot, 1, RGB(0, 80, 170), 0);
    points->setYErrors(error.data());
    points->setGraphName("15.4 GHz");
    auto* const curve = new AGraphXYLine(&axis, day.data(), angle.data(), 60, nullptr, PS_SOLID, 2,
                                         RGB(180, 70, 0), 0);
    curve->setGraphName("angle");
    axis.setScaleOf(curve, angles);
    axis.setLegend(legendEmptiest);
    CPicture picture(700, 420);
    const auto dc = picture.dc();
    dc->SetSmooth(1);
    CRect all(0, 0, 700, 420);
    axis.draw(*dc, all);
    CString message;
    return SavePNG(picture, argc > 1 ? argv[1] : "scales.png", message) ? 0 : 1;
}
