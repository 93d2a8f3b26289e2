#include "tessel/large_buffer.h"

#include <cstdlib>

#ifdef __linux__
#include <sys/mman.h>
#endif

namespace pavane
{

namespace
{

constexpr std::size_t cacheLine = 64;
constexpr std::size_t hugePage = std::size_t{2} << 20;
constexpr std::int64_t hugeFrom = std::int64_t{4} << 20;

} // namespace

void* allocateLarge(std::int64_t bytes)
{
    if (bytes < 1)
        return nullptr;
    const std::size_t alignment = bytes >= hugeFrom ? hugePage : cacheLine;
    if (static_cast<std::uint64_t>(bytes) > SIZE_MAX - alignment)
        return nullptr;
    const std::size_t padded = (static_cast<std::size_t>(bytes) + alignment - 1) / alignment * alignment;
    void* const buffer = std::aligned_alloc(alignment, padded);
#ifdef __linux__
    if (buffer && alignment == hugePage)
        (void)madvise(buffer, padded, MADV_HUGEPAGE); // a hint: without it the memory is only slower
#endif
    return buffer;
}

void freeLarge(void* buffer) { std::free(buffer); }

} // namespace pavane
