// Work files: what is read is written as a file that is read as the same.
#include "apps/view/work/WorkFile.h"
#include "tests/fuzz/input_file.h"

#include <cstdlib>

using namespace pavane;

extern "C" int LLVMFuzzerTestOneInput(const std::uint8_t* data, std::size_t size)
{
    std::string text(reinterpret_cast<const char*>(data), size);
    if (size && data[0] % 8)  // the first line has to be right before anything else is looked at
        text = "# pavane work 1\n[map]\nfile=a\n" + text.substr(1);
    Work work;
    std::vector<std::string> notes;
    std::string error;
    const InputFile file(reinterpret_cast<const std::uint8_t*>(text.data()), text.size());
    if (!readWork(file.name(), work, notes, error)) {
        if (error.empty() || !work.maps.empty())
            std::abort();
        return 0;
    }
    const std::string written = workText(file.name(), work);
    Work again;
    const InputFile other(reinterpret_cast<const std::uint8_t*>(written.data()), written.size());
    if (!readWork(other.name(), again, notes, error) || !notes.empty() ||
        workText(other.name(), again) != written)
        std::abort();
    return 0;
}
