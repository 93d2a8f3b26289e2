// Feeds any profile to the list of recent maps and to the place of a window.
#include "apps/view/recent_files.h"
#include "apps/view/window_place.h"
#include "platform/profile.h"
#include "tests/fuzz/input_file.h"

extern "C" int LLVMFuzzerTestOneInput(const std::uint8_t* data, std::size_t size)
{
    using namespace pavane;
    const InputFile input(data, size);
    SetProfileFile(input.name());
    RecentFiles recent("Recent");
    recent.load();
    if (recent.files().size() > static_cast<std::size_t>(RecentFiles::most))
        std::abort();
    for (const std::string& file : recent.files())
        (void)recentFileLabel(1, file);
    return 0;
}
