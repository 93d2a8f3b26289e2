#include "tessel/large_buffer.h"

#include "posix/huge_pages.h"

#include <cstdlib>

namespace pavane
{

namespace
{

constexpr std::size_t cacheLine = 64;
constexpr std::size_t hugePage = std::size_t{2} << 20;
constexpr std::int64_t hugeFrom = std::int64_t{4} << 20;

}  // namespace

void* allocateLarge(std::int64_t bytes)
{
    if (bytes < 1)
        return nullptr;
    const std::size_t alignment = bytes >= hugeFrom ? hugePage : cacheLine;
    if (static_cast<std::uint64_t>(bytes) > SIZE_MAX - alignment)
        return nullptr;
    const auto wanted = static_cast<std::size_t>(bytes);
    void* buffer = nullptr;
    if (posix_memalign(&buffer, alignment, wanted) != 0)
        return nullptr;
    // The last part of a huge page stays small pages, so that touching the end of the data does not
    // cost up to 2 MiB more.
    if (alignment == hugePage)
        adviseHugePages(buffer, bytes);
    return buffer;
}

void freeLarge(void* buffer) { std::free(buffer); }

void adviseHugePages(void* buffer, std::int64_t bytes) { hintHugePages(buffer, bytes); }

}  // namespace pavane
