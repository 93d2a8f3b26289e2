#pragma once

#include "pavane/trackers/collections/ARPTrackerArray.h"
#include "pavane/trackers/collections/TrackerHost.h"

namespace pavane
{

/// The areas of an axis window: shapes stay inside the graph rectangle of the axis, the list and
/// the toolbar are the window's, and ranges go to the window.
class PAVANE_API ATrackerArrayInAxis : public ARPTrackerArray
{
public:
    ATrackerArrayInAxis();

    /// The window, not owned; it takes itself away (null) before it goes.
    void SetHost(TrackerHost* host) { host_ = host; }
    TrackerHost* GetHost() const { return host_; }

    CComboBox* GetComboBox(CWnd* window) override;
    CWnd* GetToolBar(CWnd* window) override;
    /// The variants for axes: ARectTrackerInAxis, ARotateRectTrackerInAxis, AEllipseTrackerInAxis,
    /// AAreaTrackerInAxis.
    ABTracker* GetNewTracker(int mode) override;
    void SetNewMinMax(CWnd* window, TMinMax& range) override;
    void OnChanged() override;
    void OnChanging(ATracker& tracker) override;

private:
    TrackerHost* host_ = nullptr;
};

}  // namespace pavane
