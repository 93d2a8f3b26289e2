#pragma once

#include "pavane/trackers/collections/tool_modes.h"

#include <new>

namespace pavane
{

/// A new shape for the first of the tools rectangle, rotated rectangle, ellipse, area in a mode;
/// null for none.
template <typename Base, typename Rect, typename RotateRect, typename Ellipse, typename Area>
Base* newForTool(int mode)
{
    if (mode & toolRect)
        return new (std::nothrow) Rect;
    if (mode & toolRotateRect)
        return new (std::nothrow) RotateRect;
    if (mode & toolEllipse)
        return new (std::nothrow) Ellipse;
    return mode & toolArea ? new (std::nothrow) Area : nullptr;
}

}  // namespace pavane
