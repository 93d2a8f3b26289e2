// Feeds any bytes to the FITS reader, packed images among them, each in a process of its own.
#include "tessel/fits_map.h"
#include "tests/fuzz/input_file.h"

extern "C" int LLVMFuzzerTestOneInput(const std::uint8_t* data, std::size_t size)
{
    const pavane::InputFile input(data, size);
    pavane::FitsMap map;
    std::string error;
    (void)pavane::readFitsMap(input.name(), 0, map, error);
    return 0;
}
