// Feeds any bytes to the palette reader.
#include "pavane/images/palettes.h"
#include "tests/fuzz/input_file.h"

extern "C" int LLVMFuzzerTestOneInput(const std::uint8_t* data, std::size_t size)
{
    const pavane::InputFile file(data, size);
    pavane::AArray<pavane::COLORREF> colors(0, 0, 1);
    if (pavane::LoadPalette(file.name()))
        pavane::GetGlobalPaletteColors(0, 256, colors);
    return 0;
}
