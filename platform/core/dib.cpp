#include "platform/core/dib.h"

#include <algorithm>
#include <cstring>
#include <limits>

namespace pavane
{

namespace
{

std::uint32_t field32(const unsigned char* at)
{
    return at[0] | static_cast<std::uint32_t>(at[1]) << 8 |
           static_cast<std::uint32_t>(at[2]) << 16 | static_cast<std::uint32_t>(at[3]) << 24;
}

}  // namespace

int readDIB(const void* header, const void* bits, DIBView& view)
{
    if (!header || !bits)
        return 0;
    const auto* const h = static_cast<const unsigned char*>(header);
    const std::uint32_t size = field32(h);
    view.width = static_cast<int>(field32(h + 4));
    const int height = static_cast<int>(field32(h + 8));
    view.bitCount = h[14] | h[15] << 8;
    const std::uint32_t compression = field32(h + 16);
    const std::uint32_t used = field32(h + 32);
    if (size < 40 || size > 1024 || view.width < 1 || height == 0 || compression != 0 ||
        height == std::numeric_limits<int>::min() || (view.bitCount != 8 && view.bitCount != 32))
        return 0;
    view.bottomUp = height > 0;
    view.height = height > 0 ? height : -height;
    const auto bitsPerRow =
        static_cast<std::size_t>(view.width) * static_cast<std::size_t>(view.bitCount);
    view.stride = (bitsPerRow + 31) / 32 * 4;
    view.table = h + size;
    view.tableSize =
        view.bitCount == 8 ? static_cast<int>(used == 0 ? 256 : std::min(used, 256u)) : 0;
    view.bits = static_cast<const unsigned char*>(bits);
    return 1;
}

}  // namespace pavane
