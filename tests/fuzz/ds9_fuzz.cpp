// Feeds any text to the reader of DS9 region files and writes what it gives.
#include "pavane/trackers/regions/region_ds9.h"
#include "tests/fuzz/region_loop.h"

extern "C" int LLVMFuzzerTestOneInput(const std::uint8_t* data, std::size_t size)
{
    pavane::loopRegions(data, size, pavane::parseDs9Regions, pavane::ds9RegionText);
    return 0;
}
