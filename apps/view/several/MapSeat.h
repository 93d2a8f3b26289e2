#pragma once

#include "apps/view/AreaSession.h"
#include "apps/view/MapDocument.h"
#include "apps/view/MapWindow.h"

#include <memory>
#include <optional>
#include <string>
#include <utility>
#include <vector>

namespace pavane
{

/// A map of a main window with its window and what is its own. What the main window works on, it
/// has itself: of the current map `map` is empty here and the rest is that of no map.
struct MapSeat {
    MapSeat(MapWindowOwner& owner, std::string folder) : session(std::move(folder)), window(owner)
    {
    }

    std::unique_ptr<MapDocument> map;
    AreaSession session;
    std::vector<std::string> agreedLosses;
    /// As they came over a link, or went there, last; none since the link became another one.
    std::optional<std::vector<AreaShape>> linkedAreas;
    MapWindow window;  ///< goes first: it shows the map
};

}  // namespace pavane
