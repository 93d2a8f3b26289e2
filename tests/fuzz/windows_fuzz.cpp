// Feeds any text to the reader of CLEAN windows and writes what it gives: what is written comes
// back.
#include "pavane/trackers/regions/region_windows.h"
#include "tests/tessel/sin_map.h"

#include <cstdint>
#include <cstdlib>

extern "C" int LLVMFuzzerTestOneInput(const std::uint8_t* data, std::size_t size)
{
    using namespace pavane;
    static const SkyCoordinates* const skies = [] {
        auto* const made = new SkyCoordinates[2];
        std::string error;
        if (!made[0].init(sinMap(10, 40, 1e-4), error) ||
            !made[1].init(sinMap(10, 40, 1e-4, 20), error))
            std::abort();
        return made;
    }();
    for (int turned = 0; turned < 2; ++turned) {
        std::vector<AreaShape> shapes;
        std::vector<AreaShape> back;
        RegionNotes notes;
        parseWindowRegions({reinterpret_cast<const char*>(data), size}, &skies[turned], shapes,
                           notes);
        RegionNotes writing;
        parseWindowRegions(windowRegionText(shapes, &skies[turned], writing), &skies[turned], back,
                           writing);
        if (back.size() + static_cast<std::size_t>(writing.leftOut + writing.damaged) !=
            shapes.size())
            std::abort();
    }
    return 0;
}
