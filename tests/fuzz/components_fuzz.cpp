// Feeds any bytes to both readers of component files and computes with what they give.
#include "pavane/tables/components/component_file.h"
#include "tests/fuzz/input_file.h"

#include <sstream>

extern "C" int LLVMFuzzerTestOneInput(const std::uint8_t* data, std::size_t size)
{
    using namespace pavane;
    const InputFile input(data, size);
    AComponents model;
    std::string error;
    (void)readComponentFile(input.name(), model, error);
    std::istringstream text(std::string(reinterpret_cast<const char*>(data), size));
    model.Load(text);
    const double u[] = {0, 1e8}, v[] = {0, -3e7};
    std::complex<double> values[2];
    model.VfromUV(u, v, 2, values);
    AMatrix<float> map(20, 30);
    map.fill(0);
    TMinMax range;
    range.xMin = 0.01;
    range.xMax = -0.01;
    range.yMin = -0.01;
    range.yMax = 0.01;
    model.ToMap(map, range);
    return 0;
}
