#pragma once

#include "pavane/axes/maps/cells/map_scale.h"
#include "pavane/axes/ranges/TMinMax.h"
#include "pavane/images/AColorPlay.h"
#include "platform/api.h"
#include "platform/types.h"

#include <vector>

namespace pavane
{

class AColorsGraph;

/// How a map shows its values in colours, as a value: to be kept, compared, put back and given to
/// other maps.
struct PAVANE_API ColorLook {
    TMnMx range;  ///< of values to draw; unset for that of the cells
    MapScaleKind scale = MapScaleKind::linear;
    AColorPlay play;
    std::vector<COLORREF> colours;  ///< the map's own, none for the palette of the module

    ColorLook() = default;
    explicit ColorLook(const AColorsGraph& graph);
    /// Draws nothing.
    void give(AColorsGraph& graph) const;
    /// As numbers, for a history; and back. Numbers that are no look leave a look as at first.
    std::vector<double> values() const;
    static ColorLook of(const std::vector<double>& values);
    friend bool operator==(const ColorLook&, const ColorLook&) = default;
};

}  // namespace pavane
