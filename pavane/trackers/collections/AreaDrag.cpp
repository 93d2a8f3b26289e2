#include "pavane/trackers/collections/AreaDrag.h"

#include "pavane/trackers/areas/record_layouts.h"
#include "pavane/trackers/shapes/rect_handles.h"
#include "pavane/trackers/shapes/shape_handles.h"
#include "platform/CWnd.h"
#include "tessel/rounding.h"

#include <algorithm>
#include <cstdint>
#include <utility>

namespace pavane
{

namespace
{

/// The first point of a shape: a move changes it by the move.
APoint<double> anchorOf(const ShapeValues& shape)
{
    return shape.points.empty() ? APoint<double>{shape.rect.left, shape.rect.top}
                                : shape.points.front();
}

}  // namespace

void AreaDrag::begin(ATracker& tracker)
{
    before_ = tracker.State();
    item_ = indexOf(&tracker);
    tracker_ = &tracker;
}

void AreaDrag::end(const ATracker* tracker)
{
    if (tracker_ == tracker)
        tracker_ = nullptr;
    item_ = -1;
}

int AreaDrag::indexOf(const ATracker* tracker) const
{
    if (!tracker)
        return -1;
    if (isOf(tracker) && trackers_.at(item_) == tracker)
        return item_;
    for (int i = 0; i < trackers_.count(); ++i)
        if (trackers_.at(i) == tracker)
            return i;
    return -1;
}

void AreaDrag::giveUp()
{
    ATracker* const tracker = std::exchange(tracker_, nullptr);
    releaseFollowers();
    if (!tracker)
        return;
    if (tracker == drawn_.get()) {
        drawn_.reset();
        return;
    }
    std::unique_ptr<ATracker> twin(tracker->Duplicate());
    if (!twin || !twin->SetState(before_))
        return;
    trackers_.adopt(*twin);
    const int i = indexOf(tracker);
    if (i >= 0) {
        trackers_.giveUp(trackers_.take(i));
        (void)trackers_.put(i, twin.release());
        eye_.forget();
    } else if (tracker == trackers_.open()) {
        trackers_.setOpen(twin.release());
        delete tracker;
    }
}

std::string AreaDrag::keptState(int i) const
{
    const ATracker* const tracker = i < 0 ? trackers_.open() : trackers_.at(i);
    if (!tracker)
        return {};
    const auto follower = std::find_if(followers_.begin(), followers_.end(),
                                       [=](const Follower& f) { return f.item == i; });
    const std::string state =
        !isOf(tracker) && follower != followers_.end() ? follower->before : stateOf(*tracker);
    const int isOpenedNow = i < 0 && state.size() <= recordHeadBytes + sizeof(std::int32_t);
    return isOpenedNow ? std::string() : state;
}

void AreaDrag::follow(int i, const ShapeValues& shape)
{
    followers_.push_back({i, trackers_.at(i)->State(), shape});
}

void AreaDrag::bindFollowers(CWnd* window, ATracker& grabbed, CPoint p)
{
    ShapeValues shape;
    if (!shapeOf(grabbed, shape))
        followers_.clear();
    followFrom_ = anchorOf(shape);
    window_ = window ? window->GetSafeHwnd() : 0;
    if (window)
        grabbed.GetValidRect(window);
    CRect own;
    grabbed.GetTrueRect(&own);
    CRect all = own;
    for (const Follower& follower : followers_) {
        CRect box;
        trackers_.at(follower.item)->GetTrueRect(&box);
        all = {std::min(all.left, box.left), std::min(all.top, box.top),
               std::max(all.right, box.right), std::max(all.bottom, box.bottom)};
    }
    const CRect valid = grabbed.validRect();
    const auto edge = [](int bound, int ownEdge, int outermost) {
        return saturatedSum(bound, static_cast<long long>(ownEdge) - outermost);
    };
    followBounds_ = {std::min({edge(valid.left, own.left, all.left), own.left, p.x}),
                     std::min({edge(valid.top, own.top, all.top), own.top, p.y}),
                     std::max({edge(valid.right, own.right, all.right), own.right, p.x}),
                     std::max({edge(valid.bottom, own.bottom, all.bottom), own.bottom, p.y})};
}

int AreaDrag::bounds(const ATracker& tracker, CRect& bounds) const
{
    if (followers_.empty() || !isOf(&tracker))
        return 0;
    bounds = followBounds_;
    return 1;
}

void AreaDrag::releaseFollowers()
{
    for (const Follower& follower : followers_) {
        (void)trackers_.at(follower.item)->SetState(follower.before);
        eye_.boxChanged(follower.item);
    }
    followers_.clear();
}

void AreaDrag::removed(int i, const ATracker* tracker)
{
    if (item_ > i)
        --item_;
    if (tracker == tracker_)
        tracker_ = nullptr;
}

void AreaDrag::changed(const ATracker& tracker)
{
    if (!isOf(&tracker))
        return;
    if (item_ >= 0)
        eye_.boxChanged(item_);
    if (!followers_.empty())
        moveFollowers(tracker);
}

/// With the capture the drag is lost at once: whoever took it may edit the areas before the loop of
/// the drag wakes.
void AreaDrag::ended(const ATracker& tracker, DragEnd end)
{
    lastEnd_ = end;
    if (end != DragEnd::lost || !isOf(&tracker))
        return;
    tracker_ = nullptr;
    releaseFollowers();
}

void AreaDrag::moveFollowers(const ATracker& grabbed)
{
    ShapeValues shape;
    if (!shapeOf(grabbed, shape))
        return;
    const APoint<double> to = anchorOf(shape);
    const APoint<double> offset{to.x - followFrom_.x, to.y - followFrom_.y};
    CWnd* const window = CWnd::FromHandle(window_);
    const int each = !isCrowd();
    const auto invalidate = [&](const ATracker& tracker) {
        CRect box;
        tracker.GetTrueRect(&box);
        if (window && each)
            window->InvalidateRect(grown(box, 2));  // handles reach out
    };
    for (const Follower& follower : followers_) {
        ATracker* const tracker = trackers_.at(follower.item);
        if (!tracker)
            continue;
        if (each)
            invalidate(*tracker);
        shape = follower.start;
        moveShape(shape, offset);
        (void)setShapeOf(*tracker, shape);
        if (each) {
            eye_.boxChanged(follower.item);
            invalidate(*tracker);
        }
    }
    if (each)
        return;
    eye_.forget();
    if (window)
        window->Invalidate();
}

}  // namespace pavane
