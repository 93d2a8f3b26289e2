// Feeds any bytes to the readers of gain tables and gain texts, and writes what they give.
#include "pavane/calibration/gains/GainChain.h"
#include "tessel/gains/gain_files.h"
#include "tests/fuzz/input_file.h"

extern "C" int LLVMFuzzerTestOneInput(const std::uint8_t* data, std::size_t size)
{
    using namespace pavane;
    const InputFile input(data, size);
    AGains gains;
    std::vector<std::string> notes;
    std::string error;
    if (!readGainTable(input.name(), gains, notes, error) &&
        !readGainText(input.name(), gains, error))
        return 0;
    const std::string again = input.name() + "-again";
    (void)writeGainTable(again, gains, error);
    (void)writeGainText(again, gains, error);
    std::remove(again.c_str());
    for (const GainInterval& interval : gains.intervals()) {
        std::complex<double> factor;
        (void)gainFactor(gains, {interval.subarray, 1, 2, interval.middle(), interval.source},
                         factor);
    }
    return 0;
}
