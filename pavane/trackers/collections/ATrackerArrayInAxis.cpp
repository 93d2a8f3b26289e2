#include "pavane/trackers/collections/ATrackerArrayInAxis.h"

#include "pavane/trackers/AAreaTrackerInAxis.h"
#include "pavane/trackers/AEllipseTrackerInAxis.h"
#include "pavane/trackers/ARectTrackerInAxis.h"
#include "pavane/trackers/ARotateRectTrackerInAxis.h"
#include "pavane/trackers/collections/tool_trackers.h"
#include "pavane/trackers/tracker_registry.h"

#include <new>

namespace pavane
{

namespace
{

template <typename T>
ATracker* makeOne()
{
    return new (std::nothrow) T;
}

/// Stored collections name these classes, so they are known as soon as there is a collection.
void registerInAxisTrackers()
{
    (void)RegisterTrackerClass("ARectTrackerInAxis", makeOne<ARectTrackerInAxis>);
    (void)RegisterTrackerClass("ARotateRectTrackerInAxis", makeOne<ARotateRectTrackerInAxis>);
    (void)RegisterTrackerClass("AEllipseTrackerInAxis", makeOne<AEllipseTrackerInAxis>);
    (void)RegisterTrackerClass("AAreaTrackerInAxis", makeOne<AAreaTrackerInAxis>);
}

}  // namespace

ARectTrackerInAxis* ARectTrackerInAxis::Duplicate() const
{
    return new (std::nothrow) ARectTrackerInAxis(*this);
}

ARotateRectTrackerInAxis* ARotateRectTrackerInAxis::Duplicate() const
{
    return new (std::nothrow) ARotateRectTrackerInAxis(*this);
}

AEllipseTrackerInAxis* AEllipseTrackerInAxis::Duplicate() const
{
    return new (std::nothrow) AEllipseTrackerInAxis(*this);
}

AAreaTrackerInAxis* AAreaTrackerInAxis::Duplicate() const
{
    return new (std::nothrow) AAreaTrackerInAxis(*this);
}

ATrackerArrayInAxis::ATrackerArrayInAxis()
{
    static const int once = (registerInAxisTrackers(), 1);
    (void)once;
}

CComboBox* ATrackerArrayInAxis::GetComboBox(CWnd*)
{
    return host_ ? host_->trackerComboBox() : nullptr;
}

CWnd* ATrackerArrayInAxis::GetToolBar(CWnd*) { return host_ ? host_->trackerToolBar() : nullptr; }

ABTracker* ATrackerArrayInAxis::GetNewTracker(int mode)
{
    return newForTool<ABTracker, ARectTrackerInAxis, ARotateRectTrackerInAxis,
                      AEllipseTrackerInAxis, AAreaTrackerInAxis>(mode);
}

void ATrackerArrayInAxis::SetNewMinMax(CWnd* window, TMinMax& range)
{
    if (host_)
        host_->showRange(range);
    else
        ARPTrackerArray::SetNewMinMax(window, range);
}

void ATrackerArrayInAxis::OnChanged()
{
    if (host_)
        host_->areasChanged();
}

void ATrackerArrayInAxis::OnChanging(ATracker& tracker)
{
    if (host_)
        host_->areaChanging(tracker);
}

}  // namespace pavane
