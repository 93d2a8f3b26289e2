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

/// Draws the whole figure: header line, frame with ticks and titles, colour map, contours, beam,
/// areas, model outlines and the colour bar.
void drawFigure(CDC& dc, const CRect& all, const ViewOptions& options, const ViewInputs& inputs,
                const FigureView& view = {});

/// What a page of the figure is called: the object, or "map".
std::string figureTitle(const ViewInputs& inputs);

/// Title of the map's values: their unit, with the marker of the prefix.
std::string valueTitle(const ViewInputs& inputs);

/// The header line: object, frequency, date, peak and noise, as far as they are known.
std::string headerLine(const ViewInputs& inputs);

}  // namespace pavane
