#pragma once

#include "pavane/trackers/regions/area_polygons.h"
#include "pavane/trackers/regions/region_place.h"
#include "tests/tessel/sin_map.h"

#include <cstdint>
#include <cstdlib>
#include <string_view>

namespace pavane
{

/// Reads the text on a map, writes what was found in both systems, and ends the program when pixels
/// do not come back as many as they were.
template <typename Parse, typename Write>
void loopRegions(const std::uint8_t* data, std::size_t size, Parse parse, Write write)
{
    static const SkyCoordinates* const sky = [] {
        auto* const made = new SkyCoordinates;
        std::string error;
        if (!made->init(sinMap(10, 40, 1e-4), error))
            std::abort();
        return made;
    }();
    std::vector<AreaShape> shapes;
    std::vector<AreaShape> back;
    RegionNotes notes;
    parse({reinterpret_cast<const char*>(data), size}, sky, shapes, notes);
    (void)write(shapes, RegionSystem::sky, sky, notes);
    RegionNotes writing;
    parse(write(shapes, RegionSystem::image, sky, writing), nullptr, back, writing);
    if (back.size() + static_cast<std::size_t>(writing.damaged) != shapes.size())
        std::abort();
    if (shapes.size() < 20)
        for (AreaShape& shape : shapes)
            shape.width = shape.height = 4;  // the outline of a large ellipse would only take time
    AAreaArray areas;
    if (polygonsOf(shapes, areas, notes))
        (void)shapesOf(areas, notes);
}

}  // namespace pavane
