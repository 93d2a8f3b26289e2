#include "pavane/dialogs/layout/dialog_layout.h"

#include <algorithm>
#include <cstdint>

namespace pavane
{

namespace
{

/// The share of a growth: rounded down, so that edges that follow alike stay as far apart as they
/// were, and one that follows less never overtakes one that follows more.
int shareOf(int growth, int percent)
{
    return static_cast<int>(std::int64_t{growth} * std::clamp(percent, 0, 100) / 100);
}

CSize growthOf(CSize least, CSize size)
{
    const auto grown = [](int from, int to) {
        return static_cast<int>(
            std::clamp<std::int64_t>(std::int64_t{to} - from, 0, INT32_MAX / 2));
    };
    return {grown(least.cx, size.cx), grown(least.cy, size.cy)};
}

CRect moved(const ResizeItem& item, const CRect& place, CSize growth, int sign)
{
    // a far edge that follows less than the near one would make the control smaller
    const int right = std::max(item.left, item.right);
    const int bottom = std::max(item.top, item.bottom);
    return {place.left + sign * shareOf(growth.cx, item.left),
            place.top + sign * shareOf(growth.cy, item.top),
            place.right + sign * shareOf(growth.cx, right),
            place.bottom + sign * shareOf(growth.cy, bottom)};
}

}  // namespace

CRect grownPlace(const ResizeItem& item, const CRect& place, CSize least, CSize size)
{
    return moved(item, place, growthOf(least, size), 1);
}

CRect ungrownPlace(const ResizeItem& item, const CRect& place, CSize least, CSize size)
{
    return moved(item, place, growthOf(least, size), -1);
}

std::vector<CRect> layOutDialog(std::span<const ResizeItem> items, std::span<const CRect> places,
                                CSize least, CSize size)
{
    std::vector<CRect> all;
    for (std::size_t i = 0; i < std::min(items.size(), places.size()); ++i)
        all.push_back(grownPlace(items[i], places[i], least, size));
    return all;
}

int growsAcross(std::span<const ResizeItem> items)
{
    return std::any_of(items.begin(), items.end(),
                       [](const ResizeItem& item) { return item.left > 0 || item.right > 0; });
}

int growsDown(std::span<const ResizeItem> items)
{
    return std::any_of(items.begin(), items.end(),
                       [](const ResizeItem& item) { return item.top > 0 || item.bottom > 0; });
}

CRect reachablePlace(const CRect& kept, CSize least, std::span<const CRect> screens)
{
    if (screens.empty())
        return kept;
    const auto overlap = [&](const CRect& screen) {
        CRect common;
        return common.IntersectRect(kept, screen) ? std::int64_t{common.Width()} * common.Height()
                                                  : std::int64_t{0};
    };
    const CRect& screen =
        *std::max_element(screens.begin(), screens.end(),
                          [&](const CRect& a, const CRect& b) { return overlap(a) < overlap(b); });
    const bool isOut = overlap(screen) == 0;
    const int cx = std::max(least.cx, std::min(kept.Width(), screen.Width()));
    const int cy = std::max(least.cy, std::min(kept.Height(), screen.Height()));
    const auto placed = [&](int at, int size, int first, int end) {
        if (isOut)
            at = first + (end - first - size) / 2;
        // what is larger than the screen begins where the screen does
        return std::max(first, std::min(at, end - size));
    };
    const int left = placed(kept.left, cx, screen.left, screen.right);
    const int top = placed(kept.top, cy, screen.top, screen.bottom);
    return {left, top, left + cx, top + cy};
}

}  // namespace pavane
