// Feeds any text to the reader of CRTF region files and writes what it gives.
#include "pavane/trackers/regions/region_crtf.h"
#include "tests/fuzz/region_loop.h"

extern "C" int LLVMFuzzerTestOneInput(const std::uint8_t* data, std::size_t size)
{
    pavane::loopRegions(data, size, pavane::parseCrtfRegions, pavane::crtfRegionText);
    return 0;
}
