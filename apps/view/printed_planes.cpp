#include "apps/view/printed_planes.h"

#include "apps/view/progress.h"
#include "pavane/axes/maps/MapLook.h"
#include "pavane/axes/maps/MapPicture.h"
#include "pavane/axes/windows/AChannelMapsWnd.h"
#include "tessel/plain_text.h"

#include <cmath>
#include <numeric>

namespace pavane
{

PrintedPlanes::PrintedPlanes(const ViewOptions& options, const ViewInputs& inputs)
    : options_(options), sky_(inputs.sky), areas_(inputs.areas), model_(inputs.model, inputs.frame),
      marks_(inputs.marks)
{
    areas_.setNames(options.areaNames);
    if (!options_.inPerCent)
        return;
    // one range for all, from the first
    const TMnMx range = rangeOf(options_, AFloatMatrixAccess(inputs.map.cells));
    options_.inPerCent = 0;
    options_.hasRange = range.min < range.max;
    options_.low = range.min;
    options_.high = range.max;
}

int PrintedPlanes::open(std::string& error)
{
    const PrintWish& print = options_.print;
    std::vector<int> planes(static_cast<std::size_t>(print.lastPlane - print.firstPlane) + 1);
    std::iota(planes.begin(), planes.end(), print.firstPlane);
    ProgressLine progress("Reading " + plainText(options_.map));
    if (!maps_.open(options_.map, planes, error,
                    [&](double fraction) { return progress.show(fraction); })) {
        error = options_.map + ": " + error;
        return 0;
    }
    // without a wish all of them stand on one page, as many across as down
    const int across =
        print.gridColumns
            ? print.gridColumns
            : static_cast<int>(std::ceil(std::sqrt(static_cast<double>(maps_.count()))));
    maps_.setGrid(print.gridRows ? print.gridRows : (maps_.count() + across - 1) / across, across);
    if (options_.hasRange)
        maps_.setRange({options_.low, options_.high});
    maps_.setPrepare([this](MapPicture& picture, int) {
        applyLook(picture, options_);
        if (sky_.isSet())
            applySkyGrid(*addSkyGrid(picture, sky_), options_.skyGrid, sky_);
        picture.figure().addLayer(&areas_);
        picture.figure().addLayer(&model_);
        picture.figure().addLayer(&marks_);
    });
    return 1;
}

std::unique_ptr<ABWindow> PrintedPlanes::newWindow()
{
    auto window = std::make_unique<AChannelMapsWnd>();
    window->SetMaps(&maps_);
    return window;
}

}  // namespace pavane
