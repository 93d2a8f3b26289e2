#include "pavane/history/ViewHistory.h"

#include <algorithm>

namespace pavane
{

namespace
{

/// What a step of a zoom history is about.
int isZoomed(ViewPart part) { return part == ViewPart::range || part == ViewPart::scales; }

}  // namespace

int sameValues(const ViewValues& a, const ViewValues& b)
{
    return std::equal(a.begin(), a.end(), b.begin(), b.end(),
                      [](double x, double y) { return x == y || (x != x && y != y); });
}

int ViewHistory::record(const View& before, const View& after, int isZoom)
{
    Step step;
    for (std::size_t i = 0; i < viewParts; ++i)
        if (!before[i].empty() && !after[i].empty() && !sameValues(before[i], after[i]))
            step.parts.push_back({static_cast<ViewPart>(i), before[i]});
    if (step.parts.empty())
        return 0;
    step.isZoom = isZoom != 0;
    zooms_ += step.isZoom;
    steps_.resize(position_);
    // the zoom of a step that goes is one which is known only to the other history from now on
    if (steps_.size() == mostSteps)
        steps_.erase(steps_.begin());
    steps_.push_back(std::move(step));
    position_ = steps_.size();
    return 1;
}

void ViewHistory::begin(const View& shown)
{
    if (depth_++ == 0)
        opened_ = shown;
}

int ViewHistory::end(const View& shown, int isZoom)
{
    if (depth_ == 0 || --depth_ > 0)
        return 0;
    const View before = std::exchange(opened_, View());
    return record(before, shown, isZoom);
}

/// The numbers of both sides change places, so that what was shown without a step of its own can be
/// gone back to as well.
int ViewHistory::walk(View& view, int forward)
{
    int changed = 0;
    while (!changed && (forward ? canGoForward() : canGoBack())) {
        Step& step = steps_[forward ? position_ : position_ - 1];
        for (Part& part : step.parts) {
            ViewValues& shown = view[static_cast<std::size_t>(part.part)];
            if (shown.empty())
                continue;  // nobody has this part now
            changed = changed || !sameValues(shown, part.other);
            std::swap(shown, part.other);
        }
        position_ = forward ? position_ + 1 : position_ - 1;
        zooms_ += forward ? step.isZoom : -step.isZoom;
    }
    return changed;
}

void ViewHistory::clear()
{
    steps_.clear();
    position_ = 0;
    zooms_ = 0;
    depth_ = 0;
}

void ViewHistory::forgetRanges()
{
    dropRanges(0, steps_.size());
    zooms_ = 0;
    for (std::size_t i = 0; i < viewParts; ++i)
        if (isZoomed(static_cast<ViewPart>(i)))
            opened_[i].clear();
}

/// Steps that were about nothing else go.
void ViewHistory::dropRanges(std::size_t from, std::size_t to)
{
    for (std::size_t i = to; i-- > from;) {
        Step& step = steps_[i];
        step.isZoom = 0;
        std::erase_if(step.parts, [](const Part& part) { return isZoomed(part.part); });
        if (!step.parts.empty())
            continue;
        steps_.erase(steps_.begin() + static_cast<std::ptrdiff_t>(i));
        position_ -= i < position_;
    }
}

void ViewHistory::replacePair(ViewPart part, std::size_t pair, const std::array<double, 2>& from,
                              const std::array<double, 2>& to)
{
    const std::size_t at = 2 * pair;
    const auto replaceIn = [&](ViewValues& values) {
        if (at + 1 < values.size() && values[at] == from[0] && values[at + 1] == from[1])
            std::copy(to.begin(), to.end(), values.begin() + static_cast<std::ptrdiff_t>(at));
    };
    replaceIn(opened_[static_cast<std::size_t>(part)]);
    for (Step& step : steps_)
        for (Part& each : step.parts)
            if (each.part == part)
                replaceIn(each.other);
}

void ViewHistory::setZooms(int count)
{
    while (zooms_ > count)
        forgetLastZoom();
    zooms_ = std::max(count, 0);
}

/// Without it nothing of the ranges after it can be brought back as it was.
void ViewHistory::forgetLastZoom()
{
    --zooms_;
    std::size_t last = position_;
    while (last > 0 && !steps_[last - 1].isZoom)
        --last;
    if (last > 0)
        dropRanges(last - 1, position_);
}

void ViewHistory::zoomTakenBack(const View& shown)
{
    const auto isOfZoom = [](const Part& part) { return isZoomed(part.part) != 0; };
    Step* const last = canGoBack() ? &steps_[position_ - 1] : nullptr;
    if (!last || !last->isZoom || !std::ranges::all_of(last->parts, isOfZoom))
        return setZooms(zooms_ - 1);
    for (Part& part : last->parts)
        part.other = shown[static_cast<std::size_t>(part.part)];
    --position_;
    --zooms_;
}

}  // namespace pavane
