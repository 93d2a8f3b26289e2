// Feeds any bytes to the reader of area files and fills what it gives.
#include "pavane/trackers/masks/cell_area_file.h"
#include "platform/message.h"
#include "tests/fuzz/input_file.h"

extern "C" int LLVMFuzzerTestOneInput(const std::uint8_t* data, std::size_t size)
{
    using namespace pavane;
    static const int quiet = (SetMessageFunction([](const CString&, unsigned) { return IDOK; }), 1);
    (void)quiet;
    const InputFile input(data, size);
    AAreaArray areas;
    std::string error;
    ABitMatrix mask(100, 130);
    if (readCellAreaFile(input.name(), areas, error))
        areas.FillBits(mask);
    return 0;
}
