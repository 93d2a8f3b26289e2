// Feeds any text to the profile, then changes it: what was set is read back and another entry
// stays.
#include "platform/core/IniText.h"

#include <cstdint>
#include <cstdlib>

extern "C" int LLVMFuzzerTestOneInput(const std::uint8_t* data, std::size_t size)
{
    pavane::IniText text(std::string(reinterpret_cast<const char*>(data), size));
    const auto other = text.value("View", "WindowPos");
    if (!text.set("Recent", "File1", "a b"))
        return 0;
    if (text.value("Recent", "File1") != "a b" || text.value("View", "WindowPos") != other)
        std::abort();
    return 0;
}
