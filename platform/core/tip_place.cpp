#include "platform/core/tip_place.h"

#include <algorithm>
#include <cstdint>

namespace pavane
{

namespace
{

constexpr int gap = 4;
constexpr int leastSide = 12;

/// A stretch of `length` that begins at `wanted`, moved into from..to and cut there.
void fit(int wanted, int length, int from, int to, int& begin, int& end)
{
    begin = std::max(from, std::min(wanted, to - length));
    end = std::min(to, begin + length);
}

}  // namespace

CRect placeTip(CSize size, const CRect& around, const CRect& screen)
{
    const CRect sides[4] = {
        {screen.left, std::max(screen.top, around.bottom + gap), screen.right, screen.bottom},
        {screen.left, screen.top, screen.right, std::min(screen.bottom, around.top - gap)},
        {std::max(screen.left, around.right + gap), screen.top, screen.right, screen.bottom},
        {screen.left, screen.top, std::min(screen.right, around.left - gap), screen.bottom}};
    const auto shown = [&](const CRect& side) {
        const std::int64_t width = std::min(size.cx, side.Width());
        const std::int64_t height = std::min(size.cy, side.Height());
        return width < leastSide || height < leastSide ? std::int64_t{0} : width * height;
    };
    int best = 0;
    for (int i = 1; i < 4; ++i) {
        if (shown(sides[i]) > shown(sides[best]))
            best = i;
    }
    if (shown(sides[best]) == 0)
        return {};
    const CRect& side = sides[best];
    CRect at;
    fit(around.left, size.cx, side.left, side.right, at.left, at.right);
    fit(around.top, size.cy, side.top, side.bottom, at.top, at.bottom);
    // above and to the left it stands close to what it explains
    if (best == 1)
        fit(side.bottom - size.cy, size.cy, side.top, side.bottom, at.top, at.bottom);
    if (best == 3)
        fit(side.right - size.cx, size.cx, side.left, side.right, at.left, at.right);
    return at;
}

}  // namespace pavane
