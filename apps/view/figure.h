#pragma once

#include "apps/view/inputs.h"
#include "apps/view/options.h"
#include "pavane/axes/maps/MapPicture.h"
#include "pavane/tables/components/ModelLayer.h"
#include "pavane/trackers/shapes/AreaLayer.h"

#include <string>
#include <vector>

namespace pavane
{

/// The map of the inputs as the options say, with areas and model over it. Inputs and options have
/// to outlive it.
class InputsFigure
{
public:
    InputsFigure(const ViewOptions& options, const ViewInputs& inputs);

    void draw(CDC& dc, const CRect& rect) { picture_.draw(dc, rect); }
    /// What is to be said of what was drawn.
    std::vector<std::string> notes();

private:
    const ViewOptions& options_;
    const ViewInputs& inputs_;
    MapPicture picture_;
    AreaLayer areas_;
    ModelLayer model_;
    SkyMarkLayer marks_;
};

}  // namespace pavane
