// Flux density and polarisation angle of a source over a year, in one plot of two scales.
#include "pavane/axes/graph_styles.h"
#include "pavane/axes/multi/A2DAxisMulti.h"
#include "pavane/axes/multi/AGraphXYErrors.h"
#include "pavane/axes/windows/save_axis.h"
#include "platform/platform.h"

#include <cmath>

using namespace pavane;

int main(int argc, char** argv)
{
    if (!InitPlatform(argc, argv, PlatformUse::pictures))
        return 1;
    double day[60], flux[60], error[60], angle[60];
    for (int i = 0; i < 60; ++i) {
        day[i] = 6.1 * i;
        flux[i] = 1.3 + 0.4 * std::sin(0.09 * i);
        error[i] = 0.05 * flux[i];
        angle[i] = std::remainder(40 + 5.0 * i, 180);
    }
    A2DAxisMulti axis(1, 1, nullptr, axisGridX | axisGridY);
    axis.setNameOX("Day of 2025");
    axis.setNameOY("Flux density [%sJy]");
    auto* points =
        new AGraphXYErrors(&axis, day, flux, 60, nullptr, graphPointDot, 1, RGB(0, 80, 170), 0);
    points->setYErrors(error);
    points->setGraphName("15.4 GHz");
    auto* curve = new AGraphXYLine(&axis, day, angle, 60, nullptr, PS_SOLID, 2, RGB(180, 70, 0), 0);
    curve->setGraphName("angle");
    AYScale scale{.name = "Polarisation angle [deg]", .range = {-90, 90}, .period = 180};
    axis.setScaleOf(curve, axis.addScale(scale));
    axis.setLegend(legendEmptiest);
    CString message;
    return SaveAxis(axis, {700, 420}, argc > 1 ? argv[1] : "scales.png", message) ? 0 : 1;
}
