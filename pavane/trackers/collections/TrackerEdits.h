#pragma once

#include "pavane/trackers/collections/HandResult.h"
#include "pavane/trackers/collections/TrackerItems.h"

#include <functional>
#include <string>
#include <string_view>
#include <vector>

namespace pavane
{

/// Edits of the trackers of a collection, each a step of undo or a part of the one that is open.
/// Nothing of a host runs inside a step, and nobody is told.
class TrackerEdits
{
public:
    using Step = AreaEdits::Step;

    TrackerEdits(AreaTrackers trackers, TrackerItems& items, AreaEdits& areas, AreaEye& eye,
                 AreaFocus& focus, AreaDrag& drag)
        : trackers_(trackers), items_(items), areas_(areas), eye_(eye), focus_(focus), drag_(drag)
    {
    }

    /// Current area, flags, selection, steps.
    AreaEdits& areas() { return areas_; }
    const AreaEdits& areas() const { return areas_; }
    /// The current tracker where it is active, else null.
    ATracker* activeTracker() const;
    /// The open polygon, null for none.
    ATracker* open() const { return trackers_.open(); }
    int tool() const { return items_.tool(); }
    std::string recordOf(const ATracker& tracker, int i) const
    {
        return items_.recordOf(tracker, i);
    }
    /// Makes area i current and active and the old one inactive; -1 leaves none.
    void makeCurrent(int i);
    /// Takes area i into the selection, where it becomes current too, or out of it.
    void select(int i, int on);
    /// The area with the focus may have become another shape, with fewer handles, or have gone.
    void fitFocus();

    // Inside a step
    /// Takes ownership in any case. The flag `usual` is the one that the item counts as having.
    int insert(int i, ATracker* tracker, int usual);
    void erase(int i);
    /// Item i has changed; `before` is its record from before.
    void noteChange(int i, const std::string& before);
    /// Another open polygon, owned; null for none.
    void changeOpen(ATracker* tracker);
    void noteOpen(const ATracker& tracker, const std::string& before, const std::string& after);
    /// A tool that is chosen inside a step comes back with it.
    void setTool(int tool);
    void noteMapping(const std::string& before);

    // Steps of their own
    /// Owns the tracker when the result is non-zero.
    int add(int i, ATracker* tracker, int makeCurrent);
    /// n trackers behind the last; without memory they are deleted.
    void append(int n, const std::function<ATracker*(int)>& tracker);
    /// n areas from `first` on, or as many as there are.
    void eraseItems(int first, int n);
    void clear();
    /// The open polygon, else the selection or the current active area.
    HandResult eraseChosen();
    /// Copies ten pixels right and down; the last one becomes current. Non-zero when there is one.
    HandResult copyChosen(CWnd* window);
    /// A shape that was drawn becomes the current area; owned in any case.
    HandResult takeDrawn(ATracker* tracker);
    /// The open polygon, `before` its record while it was open, becomes the current area.
    HandResult takeOpen(const std::string& before);
    /// The last area, not ready, becomes the open polygon.
    int reopenLast();
    /// Calls `change` on tracker i; with a result of 0 the tracker is put back.
    int change(int i, std::string_view label, const std::function<int(ATracker&)>& change);

private:
    int place(int i, ATracker* tracker, int usual);
    int copy(CWnd* window, int i);
    void becomeCurrent(ATracker* tracker);

    AreaTrackers trackers_;
    TrackerItems& items_;
    AreaEdits& areas_;
    AreaEye& eye_;
    AreaFocus& focus_;
    AreaDrag& drag_;
    LifeToken life_;
};

}  // namespace pavane
