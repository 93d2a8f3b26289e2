// Feeds any text to the reader of a window's place and starts a window there.
#include "apps/view/window_place.h"

#include <cstdint>
#include <cstdlib>

extern "C" int LLVMFuzzerTestOneInput(const std::uint8_t* data, std::size_t size)
{
    using namespace pavane;
    const std::string_view text(reinterpret_cast<const char*>(data), size);
    PlacementRecord record;
    PlacementRecord again;
    if (readPlacement(text, record) &&
        (!readPlacement(placementText(record), again) || !(again == record)))
        std::abort();
    (void)startPlacement(text, {0, 0, 800, 600}, {{0, 0, 1920, 1080}, {-1280, 0, 0, 1024}});
    return 0;
}
