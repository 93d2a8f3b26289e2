// Feeds any bytes to the reader of flags; what it takes is written, read back the same, and asked.
#include "tessel/flags/FlagQuery.h"
#include "tests/fuzz/input_file.h"

extern "C" int LLVMFuzzerTestOneInput(const std::uint8_t* data, std::size_t size)
{
    using namespace pavane;
    const InputFile input(data, size);
    VisibilityFlags flags, again;
    std::string error;
    if (!readFlags(input.name(), flags, error)) {
        if (error.empty() || !flags.lines.empty())
            std::abort();
        return 0;
    }
    const std::string copy = input.name() + "-again";
    if (!writeFlags(copy, flags, error) || !readFlags(copy, again, error) ||
        again.lines != flags.lines || again.referenceDay != flags.referenceDay)
        std::abort();
    std::remove(copy.c_str());
    FlagQuery query(flags, 4, {-1, -2}, 2455554.5);
    for (const FlagLine& line : flags.lines)
        (void)query.of(line.subarray, line.first, line.second, line.start, line.source);
    return 0;
}
