#pragma once

#include "apps/view/inputs.h"
#include "apps/view/options.h"
#include "pavane/axes/maps/ChannelMaps.h"
#include "pavane/tables/components/ModelLayer.h"
#include "pavane/trackers/shapes/AreaLayer.h"
#include "pavane/windows/ABWindow.h"

#include <memory>
#include <string>

namespace pavane
{

/// The planes of a cube that the options print beside each other, drawn as the options say, with
/// the areas and the model over each. Options and inputs have to outlive it.
class PrintedPlanes
{
public:
    PrintedPlanes(const ViewOptions& options, const ViewInputs& inputs);

    /// Reads them; non-zero on success, else one line in `error` that names the file.
    int open(std::string& error);
    /// What prints them; not longer than they live.
    std::unique_ptr<ABWindow> newWindow();

private:
    ViewOptions options_;
    const SkyCoordinates& sky_;  ///< of the inputs: all planes lie in one place
    ChannelMaps maps_;
    AreaLayer areas_;
    ModelLayer model_;
    SkyMarkLayer marks_;
};

}  // namespace pavane
