// Lists of names and positions: what is read lies on the sky, or in pixels that are numbers.
#include "tessel/sky_marks.h"
#include "tests/fuzz/input_file.h"

#include <cmath>
#include <cstdlib>

using namespace pavane;

extern "C" int LLVMFuzzerTestOneInput(const std::uint8_t* data, std::size_t size)
{
    const InputFile file(data, size);
    SkyMarks marks;
    std::string error;
    if (!readSkyMarks(file.name(), {}, marks, error)) {
        if (error.empty() || !marks.marks.empty())
            std::abort();
        return 0;
    }
    for (const SkyMark& mark : marks.marks)
        if (mark.isPixel ? !std::isfinite(mark.x + mark.y)
                         : !(std::fabs(mark.position.latitude) <= 90))
            std::abort();
    return 0;
}
