#include "platform/core/whole_number.h"

#include <algorithm>
#include <cstdint>
#include <limits>

namespace pavane
{

int readWholeNumber(const CString& text, int& value)
{
    const std::size_t first = text.find_first_not_of(" \t");
    if (first == CString::npos)
        return 0;
    const std::size_t last = text.find_last_not_of(" \t");
    const bool hasSign = text[first] == '-' || text[first] == '+';
    const std::size_t digits = first + (hasSign ? 1 : 0);
    if (digits > last)
        return 0;
    constexpr std::int64_t beyond = std::int64_t{1} << 40;
    std::int64_t read = 0;
    for (std::size_t i = digits; i <= last; ++i) {
        if (text[i] < '0' || text[i] > '9')
            return 0;
        read = std::min(beyond, read * 10 + (text[i] - '0'));
    }
    using Limits = std::numeric_limits<int>;
    value = static_cast<int>(
        std::clamp<std::int64_t>(text[first] == '-' ? -read : read, Limits::min(), Limits::max()));
    return 1;
}

}  // namespace pavane
