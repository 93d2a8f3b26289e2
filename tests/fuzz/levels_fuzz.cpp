// Feeds any text to the reader of contour levels and makes the levels of several maps of it.
#include "pavane/axes/maps/cells/level_list.h"

#include <cstdint>
#include <limits>

extern "C" int LLVMFuzzerTestOneInput(const std::uint8_t* data, std::size_t size)
{
    using namespace pavane;
    LevelChoice choice;
    std::string error;
    if (!parseLevels({reinterpret_cast<const char*>(data), size}, choice, error))
        return 0;
    for (const double peak : {0.0, 1.5, -3.0, 1e300, std::numeric_limits<double>::infinity()})
        for (const double noise : {0.0, 1e-3, 1e300}) {
            (void)levelValues(choice, peak, noise);
            (void)levelNote(choice, peak, noise);
        }
    return 0;
}
