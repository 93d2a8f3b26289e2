// Feeds any bytes to the reader of station gains.
#include "apps/simulate/gains.h"
#include "tests/fuzz/input_file.h"

extern "C" int LLVMFuzzerTestOneInput(const std::uint8_t* data, std::size_t size)
{
    const pavane::InputFile input(data, size);
    pavane::Gains gains;
    std::string error;
    if (!gains.read(input.name(), error) && error.empty())
        std::abort();
    for (const double hours : {-1.0, 0.5, 1e9})
        (void)gains.of("PT", 2, 'R', hours);
    return 0;
}
