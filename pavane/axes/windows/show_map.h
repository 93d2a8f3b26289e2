#pragma once

#include "pavane/axes/A2DAxis.h"
#include "pavane/axes/maps/AAxisColorOP.h"
#include "pavane/axes/maps/ALevelsColorGraph.h"
#include "pavane/axes/maps/MapPicture.h"
#include "pavane/axes/windows/AAxisWnd.h"

namespace pavane
{

/// Shows a map that is open in a window; the picture has to outlive its use there.
inline void showMap(AAxisWnd& window, MapPicture& map)
{
    window.SetAxis(&map.axis(), 0);
    window.SetMap(&map.graph());
    window.SetColorBar(map.rgb() ? nullptr : &map.bar(), 0);
}

}  // namespace pavane
