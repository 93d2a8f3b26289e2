#pragma once

#include "pavane/trackers/collections/AreaEye.h"
#include "platform/messages.h"

#include <cstddef>
#include <memory>
#include <string>
#include <vector>

namespace pavane
{

/// The drag that runs: of which tracker, how that was before, and the areas that move with it.
/// Places of areas are followed; the tracker itself may go at any time.
class AreaDrag
{
public:
    AreaDrag(AreaTrackers trackers, AreaEye& eye) : trackers_(trackers), eye_(eye) {}

    void begin(ATracker& tracker);
    /// The loop of the drag has returned; the tracker may be gone.
    void end(const ATracker* tracker);
    int isOn() const { return tracker_ != nullptr; }
    int isOf(const ATracker* tracker) const { return tracker_ && tracker_ == tracker; }
    /// Ends the drag that runs for something else: the shape is as before it, and the loop returns
    /// because its tracker is gone.
    void giveUp();
    /// The drag's tracker has another owner or none.
    void forget() { tracker_ = nullptr; }

    /// A new shape while it is drawn, owned; null for none.
    ATracker* drawn() const { return drawn_.get(); }
    void setDrawn(std::unique_ptr<ATracker> tracker) { drawn_ = std::move(tracker); }
    std::unique_ptr<ATracker> takeDrawn() { return std::move(drawn_); }
    /// A drag runs, or its new shape has not found its place yet.
    int isBusy() const { return tracker_ || drawn_; }

    /// Index of a tracker, -1 for none of the collection.
    int indexOf(const ATracker* tracker) const;
    /// The record of a tracker as it is when the drag is cancelled.
    std::string stateOf(const ATracker& tracker) const
    {
        return isOf(&tracker) ? before_ : tracker.State();
    }
    /// The same of area i, or with -1 of the open polygon; empty where there is none then.
    std::string keptState(int i) const;

    // Areas that move with the tracker
    void follow(int i, const ShapeValues& shape);
    /// All are known: `grabbed`, pressed at p, may go as far as all of them stay inside.
    void bindFollowers(CWnd* window, ATracker& grabbed, CPoint p);
    int hasFollowers() const { return !followers_.empty(); }
    int isCrowd() const { return followers_.size() >= manyFollowers; }
    /// They stay where they are now.
    void keepFollowers() { followers_.clear(); }
    /// They are again where they were. Their places have to be those of the begin still.
    void releaseFollowers();
    /// The pixels that the tracker is bound by; 0 for its own.
    int bounds(const ATracker& tracker, CRect& bounds) const;

    // Word of the loop
    void changed(const ATracker& tracker);
    void ended(const ATracker& tracker, DragEnd end);
    DragEnd lastEnd() const { return lastEnd_; }

    // There is an area more or less.
    void inserted(int i) { item_ += item_ >= i; }
    void removed(int i, const ATracker* tracker);

private:
    struct Follower {
        int item;
        std::string before;
        ShapeValues start;
    };
    /// From so many on they are boxed and repainted all together: one by one that takes longer than
    /// to draw them.
    static constexpr std::size_t manyFollowers = 64;

    void moveFollowers(const ATracker& grabbed);

    AreaTrackers trackers_;
    AreaEye& eye_;
    ATracker* tracker_ = nullptr;  ///< while its loop runs
    int item_ = -1;
    std::string before_;
    std::unique_ptr<ATracker> drawn_;
    std::vector<Follower> followers_;
    CRect followBounds_;
    APoint<double> followFrom_;
    HWND window_ = 0;
    DragEnd lastEnd_ = DragEnd::refused;
};

}  // namespace pavane
