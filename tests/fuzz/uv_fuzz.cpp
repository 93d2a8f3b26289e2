// Feeds any bytes to the reader of u,v points.
#include "apps/view/uv_points.h"
#include "tests/fuzz/input_file.h"

extern "C" int LLVMFuzzerTestOneInput(const std::uint8_t* data, std::size_t size)
{
    const pavane::InputFile input(data, size);
    pavane::UvPoints points;
    std::string error;
    if (pavane::readUvPoints(input.name(), points, error) && points.u.size() != points.v.size())
        std::abort();
    return 0;
}
