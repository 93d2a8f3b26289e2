// Feeds any text as the filters of a file dialog and names files by them.
#include "platform/core/file_filter.h"

#include <cstdint>

extern "C" int LLVMFuzzerTestOneInput(const std::uint8_t* data, std::size_t size)
{
    using namespace pavane;
    const CString text(reinterpret_cast<const char*>(data), size);
    const std::vector<FileFilter> filters = fileFilters(text);
    for (const FileFilter& filter : filters) {
        const CString extension = extensionOf(filter);
        for (const char* name : {"", "map", "map.fits", "/a.b/c", "."}) {
            (void)withTypeOf(name, extension, filters);
            (void)withExtension(name, extension);
        }
    }
    return 0;
}
