#pragma once

#include "pavane/trackers/ABTracker.h"
#include "pavane/trackers/collections/TrackerArrayOf.h"
#include "pavane/trackers/masks/LoadReport.h"

namespace pavane
{

class ABAxis;
class AFile;

/// Areas in data values (RP), drawn and dragged through an axis. Masks and files need no axis.
class PAVANE_API ARPTrackerArray : public TrackerArrayOf<ABTracker>
{
public:
    ARPTrackerArray() = default;

    /// The axis of all trackers, not owned; null takes it away. Changes of its range and
    /// graph rectangle are noticed.
    void SetAxis(ABAxis* axis);
    ABAxis* GetAxis() const { return axis_; }

    /// Ellipses have 8 points for each cell of the larger semi-axis, 16 to 65536, so that masks do
    /// not depend on the zoom.
    int GetAreaCells(int i, AArray<CPoint>& cells, int nx, int ny,
                     const TMinMax& mapRange) const override;
    /// The same of a tracker that may be in no collection.
    static int GetAreaCells(const ABTracker& tracker, AArray<CPoint>& cells, int nx, int ny,
                            const TMinMax& mapRange);

    /// Writes the current index, the count, and each tracker's class name (32 bytes) and record.
    /// Results as in ATrackerArray.
    int Store(AFile& file) const;
    /// Writes what Store would if a drag that runs were cancelled, and behind the areas the polygon
    /// under construction as one that is not ready: ReopenLast makes it that again after Load.
    int StoreKept(AFile& file) const;
    /// Reads what Store wrote in place of what there is; rules as in ATrackerArray. The trackers
    /// get the axis of the collection.
    int Load(AFile& file);
    int Load(AFile& file, LoadReport& report);
    ABTracker* LoadObject(const CString& className, AFile& file);

    virtual ABTracker* GetNewTracker(int mode);
    /// Gives the range to the axis and repaints; windows that lay out anew override it.
    void SetNewMinMax(CWnd* window, TMinMax& range) override;

protected:
    /// Hands the axis to every tracker.
    void SetAxisItems();
    ATracker* makeTracker(int mode) override;
    ATracker* makeTrackerOfClass(const std::string& name) override;
    void adopt(ATracker& tracker) override;
    int takesPress(CPoint p) const override;
    TMinMax shownRange() const override;
    int zoomedRange(CPoint p, TMinMax& range) const override;
    APoint<double> shapePoint(CPoint pixel) const override;
    CPoint pixelPoint(const APoint<double>& point) const override;
    APoint<double> shapeOffset(APoint<double> value) override { return value; }
    int shapeBounds(CWnd* window, ATracker& tracker, ARect<double>& bounds) const override;
    int pixelsMoved() override;

private:
    /// What decides where values are on the screen.
    struct AxisState {
        CRect rect;
        TMinMax range;
        TMnMx logX;
        TMnMx logY;
        int xDirect = 0;
        int yDirect = 0;
        friend bool operator==(const AxisState&, const AxisState&) = default;
    };

    ABAxis* axis_ = nullptr;
    AxisState shownThrough_;
};

}  // namespace pavane
