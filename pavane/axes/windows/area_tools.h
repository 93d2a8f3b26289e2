#pragma once

#include "pavane/resources/resource_ids.h"
#include "pavane/trackers/collections/tool_modes.h"

#include <algorithm>
#include <iterator>

namespace pavane
{

/// A tool and the command that chooses it.
struct AreaTool {
    unsigned command;
    int mode;
};
/// In the order of their keys, from 1.
inline constexpr AreaTool areaTools[] = {
    {ID_TRACK_ARROW, toolArrow},
    {ID_TRACK_RECT, toolRect},
    {ID_TRACK_ROTATE_RECT, toolRotateRect},
    {ID_TRACK_ELLIPSE, toolEllipse},
    {ID_TRACK_AREA, toolArea},
    {ID_ZOOM_PLUS, toolZoomIn},
};

/// Null where the command chooses none.
inline const AreaTool* toolOf(unsigned command)
{
    const auto* const found = std::find_if(std::begin(areaTools), std::end(areaTools),
                                           [=](const AreaTool& t) { return t.command == command; });
    return found == std::end(areaTools) ? nullptr : found;
}

}  // namespace pavane
