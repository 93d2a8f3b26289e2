// Feeds any bytes to the loaders of stored rasters and arrays.
#include "pavane/containers/AObjArray.h"
#include "pavane/images/ADIBase.h"
#include "platform/message.h"
#include "tests/fuzz/input_file.h"

extern "C" int LLVMFuzzerTestOneInput(const std::uint8_t* data, std::size_t size)
{
    using namespace pavane;
    static const int quiet = (SetMessageFunction([](const CString&, unsigned) { return IDOK; }), 1);
    (void)quiet;
    const InputFile input(data, size);
    AFile file(input.name(), AFile::readOnly);
    ADIBase raster(file);
    raster.Line(-5, -5, 100000, 100000);
    (void)file.seek(0);
    AArray<double> numbers(0, 0, 1);
    (void)numbers.Load(file);
    (void)file.seek(0);
    AObjArray<CString> texts(0, 0, 1);
    (void)texts.Load(file);
    return 0;
}
