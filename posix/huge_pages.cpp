#include "posix/huge_pages.h"

#ifdef __linux__
#include <sys/mman.h>
#endif

namespace pavane
{

void hintHugePages([[maybe_unused]] void* buffer, [[maybe_unused]] std::int64_t bytes)
{
#ifdef __linux__
    constexpr std::uintptr_t hugePage = std::uintptr_t{2} << 20;
    if (bytes < static_cast<std::int64_t>(2 * hugePage))
        return;
    const auto address = reinterpret_cast<std::uintptr_t>(buffer);
    const std::uintptr_t first = (address + hugePage - 1) / hugePage * hugePage;
    const std::uintptr_t end = (address + static_cast<std::uintptr_t>(bytes)) / hugePage * hugePage;
    if (first < end)
        (void)madvise(reinterpret_cast<void*>(first), end - first, MADV_HUGEPAGE);
#endif
}

}  // namespace pavane
