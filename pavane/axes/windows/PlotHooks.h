#pragma once

#include "pavane/containers/APoint.h"
#include "platform/geometry.h"

namespace pavane
{

/// What happens to the plot of a window, for heirs that lay something over it; each does nothing by
/// itself.
class PlotHooks
{
public:
    PlotHooks(const PlotHooks&) = delete;
    PlotHooks& operator=(const PlotHooks&) = delete;

protected:
    PlotHooks() = default;
    virtual ~PlotHooks() = default;

    // In this order; new ones go to the end.
    /// The layout of the axis is that of the window, maybe another than before.
    virtual void plotLaidOut() {}
    /// The content of the window was drawn, with so many pixels to a unit.
    virtual void contentDrawn(int ratio) { (void)ratio; }
    /// The axis goes; another is there (or null), or it has other data.
    virtual void plotGoes() {}
    virtual void plotCame() {}
    /// Another range is shown; hosts are not told yet.
    virtual void rangeIsNew() {}
    /// The size of a cell in data values, which a zoom keeps two of; 0 for none.
    virtual APoint<double> cellStep() const { return {0, 0}; }
    /// The outermost press has been followed to its end.
    virtual void pressEnded() {}
    /// Non-zero when it chose a cursor.
    virtual int chooseCursor(unsigned hitArea, unsigned message)
    {
        (void)hitArea;
        (void)message;
        return 0;
    }
    /// The context menu is asked for at a client point.
    virtual void menuAsked(CPoint point) { (void)point; }
    /// A picture for a file, the clipboard or a page is drawn: before it with 1, after it with 0.
    virtual void pictureComing(int begins) { (void)begins; }
};

}  // namespace pavane
