#include "pavane/trackers/tracker_registry.h"

#include "pavane/trackers/AAreaTracker.h"
#include "pavane/trackers/AEllipseTracker.h"
#include "pavane/trackers/areas/area_classes.h"
#include "pavane/trackers/ARectTracker.h"
#include "pavane/trackers/ARPAreaTracker.h"
#include "pavane/trackers/ARPEllipseTracker.h"
#include "pavane/trackers/ARPRectTracker.h"
#include "tessel/ForkGate.h"

#include <memory>
#include <mutex>
#include <new>
#include <vector>

namespace pavane
{

namespace
{

struct TrackerClass {
    CString name;
    TrackerMaker maker;
};

template <typename Tracker>
ATracker* make()
{
    return new (std::nothrow) Tracker();
}

/// Of the list below, which hosts add to.
std::mutex classLock;

std::vector<TrackerClass>& classes()
{
    static std::vector<TrackerClass> known = {
        {"ARectTracker", make<ARectTracker>},
        {"ARotateRectTracker", make<ARotateRectTracker>},
        {"AEllipseTracker", make<AEllipseTracker>},
        {"AAreaTracker", make<AAreaTracker>},
        {"ARPRectTracker", make<ARPRectTracker>},
        {"ARPRotateRectTracker", make<ARPRotateRectTracker>},
        {"ARPEllipseTracker", make<ARPEllipseTracker>},
        {"ARPAreaTracker", make<ARPAreaTracker>},
    };
    return known;
}

TrackerClass* find(const CString& name)
{
    for (TrackerClass& c : classes())
        if (c.name == name)
            return &c;
    return nullptr;
}

}  // namespace

ATracker* CreateTracker(const CString& className)
{
    TrackerMaker maker = nullptr;
    {
        const ForkGate gate;
        const std::lock_guard locked(classLock);
        if (const TrackerClass* const found = find(className))
            maker = found->maker;
    }
    return maker ? maker() : nullptr;
}

int RegisterTrackerClass(const CString& name, TrackerMaker maker)
{
    if (!maker)
        return 0;
    // its records are read without a window too, by a tracker that is made for the moment
    const AreaClass* const area = areaClassOf(name);
    AreaClass records = area ? *area : AreaClass{name, 0, {}, {}, {}};
    records.pass = [maker](AFile& file) {
        const std::unique_ptr<ATracker> tracker(maker());
        return tracker && tracker->Load(file);
    };
    if (!RegisterAreaClass(records))
        return 0;
    const ForkGate gate;
    const std::lock_guard locked(classLock);
    if (TrackerClass* const known = find(name))
        known->maker = maker;
    else
        classes().push_back({name, maker});
    return 1;
}

}  // namespace pavane
