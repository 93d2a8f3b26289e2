#pragma once

#include <algorithm>
#include <cstdint>

namespace pavane
{

/// Places of a scroll bar have 16 bits: a table that scrolls further is scaled down to them.
/// Positions are 1 to `last`, thumbs 1 to barEnd(last).
inline constexpr int longestBar = 32767;

constexpr int barEnd(int last) { return std::min(std::max(last, 1), longestBar); }

namespace scroll_detail
{
/// a * b / c + 1, halves up; none of them negative.
constexpr std::int64_t scaled(std::int64_t a, std::int64_t b, std::int64_t c)
{
    return (2 * a * b + 3 * c) / (2 * c);
}
}  // namespace scroll_detail

/// Where the thumb stands at a position; beyond the ends, that of the end.
constexpr int thumbOf(int position, int last)
{
    const int p = std::clamp(position, 1, std::max(last, 1));
    if (last <= longestBar)
        return p;
    return static_cast<int>(
        scroll_detail::scaled(std::int64_t{p} - 1, longestBar - 1, std::int64_t{last} - 1));
}

/// The position of a thumb.
constexpr int positionOf(int thumb, int last)
{
    const int t = std::clamp(thumb, 1, barEnd(last));
    if (last <= longestBar)
        return t;
    return static_cast<int>(
        scroll_detail::scaled(std::int64_t{last} - 1, std::int64_t{t} - 1, longestBar - 1));
}

}  // namespace pavane
