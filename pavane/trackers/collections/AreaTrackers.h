#pragma once

#include "pavane/trackers/collections/TrackerCollection.h"
#include "pavane/trackers/tracker_shape.h"

#include <string>
#include <string_view>

namespace pavane
{

/// The trackers of a collection and the coordinates of their shapes, as its eye, hand and keys see
/// them: what each kind of collection answers in its own way, and nothing else of it.
class AreaTrackers
{
public:
    explicit AreaTrackers(TrackerCollection& of) : of_(of) {}

    int count() const { return of_.trackerCount(); }
    /// Null outside the collection.
    ATracker* at(int i) const { return of_.trackerAt(i); }
    int shapeAt(int i, ShapeValues& shape) const
    {
        const ATracker* const tracker = at(i);
        return tracker && shapeOf(*tracker, shape);
    }
    /// The polygon that is being drawn, null for none.
    ATracker* open() const { return of_.workingTracker(); }
    void setOpen(ATracker* tracker) const { of_.setWorking(tracker); }

    /// For the tools of a mode, or of a stored class name; null for none.
    ATracker* make(int mode) const { return of_.makeTracker(mode); }
    ATracker* makeOfClass(const std::string& name) const { return of_.makeTrackerOfClass(name); }
    /// Sets what a tracker does not store.
    void adopt(ATracker& tracker) const { of_.adopt(tracker); }
    /// Takes ownership when the result is non-zero; `take` gives it back.
    int put(int i, ATracker* tracker) const { return of_.putTracker(i, tracker); }
    ATracker* take(int i) const { return of_.takeTracker(i); }
    /// For one that was taken: collections that do not own their trackers leave them to the host.
    void giveUp(ATracker* tracker) const
    {
        if (of_.ownsItems())
            delete tracker;
        else
            tracker->SetListener(nullptr);
    }

    int takesPress(CPoint p) const { return of_.takesPress(p); }
    int zoomedRange(CPoint p, TMinMax& range) const
    {
        range = of_.shownRange();
        return of_.zoomedRange(p, range);
    }
    APoint<double> shapePoint(CPoint pixel) const { return of_.shapePoint(pixel); }
    CPoint pixelPoint(const APoint<double>& point) const { return of_.pixelPoint(point); }
    APoint<double> shapeOffset(APoint<double> value) const { return of_.shapeOffset(value); }
    void forgetParts() const { of_.pixelSteps_.reset(); }
    int shapeBounds(CWnd* window, ATracker& tracker, ARect<double>& bounds) const
    {
        return of_.shapeBounds(window, tracker, bounds);
    }
    int pixelsMoved() const { return of_.pixelsMoved(); }
    int mappingNumber() const { return of_.mappingNumber(); }
    void rescale(ATracker& tracker, int fromMapping, int toMapping) const
    {
        of_.rescale(tracker, fromMapping, toMapping);
    }
    std::string mappingBytes() const { return of_.mappingBytes(); }
    int setMappingBytes(std::string_view bytes) const { return of_.setMappingBytes(bytes); }

private:
    TrackerCollection& of_;
};

}  // namespace pavane
