#include "apps/view/window_place.h"

#include "platform/messages.h"

#include <algorithm>
#include <cstdint>

namespace pavane
{

namespace
{

/// Room for the frame and the caption around the client area.
constexpr int caption = 32;
constexpr int edge = 4;
/// What has to be seen of a caption to drag the window by it.
constexpr int leastSeen = 120;
constexpr unsigned comesBackMaximised = 2;
/// A window below it shows too little to be taken for the program's.
constexpr int leastWidth = 200;
constexpr int leastHeight = 150;

/// Whether the strip above the client area lies on the screen and the rest is no larger.
int isReachable(const CRect& place, const CRect& screen)
{
    const std::int64_t left = std::max(place.left, screen.left);
    const std::int64_t right = std::min(place.right, screen.right);
    return right - left >= leastSeen && std::int64_t{place.top} - edge >= screen.top &&
           std::int64_t{place.top} + edge <= screen.bottom &&
           std::int64_t{place.right} - place.left <= screen.Width() &&
           std::int64_t{place.bottom} - place.top <= screen.Height();
}

/// Moves [first, first + length) into [from, to), shortening it when it is too long.
void fit(int& first, int& last, int from, int to)
{
    const auto length = std::clamp<std::int64_t>(std::int64_t{last} - first, 1, to - from);
    const auto start = std::clamp<std::int64_t>(first, from, to - length);
    first = static_cast<int>(start);
    last = static_cast<int>(start + length);
}

}  // namespace

CRect reachablePlace(const CRect& place, const std::vector<CRect>& screens)
{
    for (const CRect& screen : screens)
        if (isReachable(place, screen))
            return place;
    if (screens.empty() || screens[0].Width() <= 2 * edge || screens[0].Height() <= caption + edge)
        return place;
    CRect moved = place;
    const CRect& screen = screens[0];
    fit(moved.left, moved.right, screen.left + edge, screen.right - edge);
    fit(moved.top, moved.bottom, screen.top + caption, screen.bottom - edge);
    return moved;
}

PlacementRecord startPlacement(std::string_view kept, const CRect& first,
                               const std::vector<CRect>& screens)
{
    PlacementRecord record;
    if (!readPlacement(kept, record) || record.normal.Width() < leastWidth ||
        record.normal.Height() < leastHeight)
        record.normal = first;
    record.normal = reachablePlace(record.normal, screens);
    const bool maximised =
        record.showCommand == SW_SHOWMAXIMIZED ||
        (record.showCommand != SW_SHOWNORMAL && record.flags & comesBackMaximised);
    record.showCommand = maximised ? SW_SHOWMAXIMIZED : SW_SHOWNORMAL;
    record.flags = 0;
    return record;
}

}  // namespace pavane
