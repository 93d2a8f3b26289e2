#pragma once

#include "apps/view/inputs.h"
#include "apps/view/options.h"
#include "pavane/axes/ranges/TMinMax.h"
#include "platform/geometry.h"

#include <string>

namespace pavane
{

class CDC;

/// What a window shows otherwise than its inputs say. Not owned.
struct FigureView {
    const TMinMax* range = nullptr;                   ///< x and y (RP), of a zoomed map
    const std::vector<AreaOutline>* areas = nullptr;  ///< in place of those of the inputs
    std::vector<std::string>* notes = nullptr;        ///< gets what is to be said of the picture
};

/// Draws the map of the inputs as the options say, with areas and model over it.
void drawFigure(CDC& dc, const CRect& all, const ViewOptions& options, const ViewInputs& inputs,
                const FigureView& view = {});

}  // namespace pavane
