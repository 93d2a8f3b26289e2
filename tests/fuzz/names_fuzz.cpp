// Names and colours of areas: whatever is read is written again as the same names.
#include "pavane/trackers/areas/area_names.h"

#include <cstdint>
#include <cstdlib>

using namespace pavane;

extern "C" int LLVMFuzzerTestOneInput(const std::uint8_t* data, std::size_t size)
{
    const std::string checksum = areaChecksum("areas");
    // the second line has to be right before anything else is looked at
    const int count = size ? data[0] % 8 : 0;
    std::string text(reinterpret_cast<const char*>(data), size);
    if (size > 1 && data[1] % 4)
        text =
            "# pavane areas 1\n" + std::to_string(count) + ' ' + checksum + '\n' + text.substr(2);
    std::vector<AreaLabel> labels;
    std::string error;
    if (!readNames(text, checksum, count, labels, error)) {
        if (error.empty() || !labels.empty())
            std::abort();
        return 0;
    }
    if (labels.size() != static_cast<std::size_t>(count))
        std::abort();
    const std::string written = namesText(checksum, labels);
    std::vector<AreaLabel> again;
    if (!written.empty() && (!readNames(written, checksum, count, again, error) || again != labels))
        std::abort();
    return 0;
}
