#pragma once

#include "pavane/axes/ranges/TMinMax.h"

namespace pavane
{

class ATracker;
class CComboBox;
class CWnd;

/// What a collection bound to an axis asks of the window that shows it; the axis window is one.
/// Any of these may be called while the pointer drags an area.
class TrackerHost
{
public:
    virtual ~TrackerHost() = default;
    /// The list of areas and the toolbar of tools; null for none.
    virtual CComboBox* trackerComboBox() = 0;
    virtual CWnd* trackerToolBar() = 0;
    /// Show another range (RP, x and y pairs). The collection keeps the history.
    virtual void showRange(const TMinMax& range) = 0;
    /// The areas, the current one or the selection are not what they were.
    virtual void areasChanged() = 0;
    /// The tracker has another shape in the middle of a drag; the window is not painted yet.
    virtual void areaChanging(ATracker& tracker) = 0;
};

}  // namespace pavane
