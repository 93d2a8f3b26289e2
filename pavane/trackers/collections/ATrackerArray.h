#pragma once

#include "pavane/trackers/ABaseTracker.h"
#include "pavane/trackers/collections/TrackerArrayOf.h"
#include "pavane/trackers/masks/LoadReport.h"
#include "pavane/trackers/shapes/PixelMapping.h"

#include <vector>

namespace pavane
{

class AFile;

/// All areas drawn on one map, in window pixels. What the pixels stand for is kept beside them: a
/// device rectangle and the range (RP) that maps onto it, with the two mode words of
/// RectMinMaxTransform.
class PAVANE_API ATrackerArray : public TrackerArrayOf<ABaseTracker>
{
public:
    ATrackerArray() = default;

    /// (-1, -1, -1, -1) and an unset range at first.
    const CRect& deviceRect() const { return mapping_.rect; }
    const TMinMax& range() const { return mapping_.range; }
    int modeX() const { return mapping_.modeX; }
    int modeY() const { return mapping_.modeY; }

    /// Takes over a new device rectangle, range and mode words; when one differs, every tracker is
    /// rescaled from the old mapping to the new one. A mapping that is unset or has no width
    /// changes nothing; from an unset one nothing is rescaled.
    void CheckMinMax(const CRect& device, const TMinMax& range, int modeX, int modeY);

    int GetAreaCells(int i, AArray<CPoint>& cells, int nx, int ny,
                     const TMinMax& mapRange) const override;

    /// Writes the current index, the mapping, the count, and each tracker's class name (32 bytes)
    /// and record. 0 when the head or a name cannot be written.
    /// Deliberate: a tracker whose record cannot be written ends the writing, and the result is 1;
    /// hosts that store other things after a collection depend on it.
    int Store(AFile& file) const;
    /// Reads what Store wrote in place of what there is, as one step of undo. Entries of unknown
    /// classes are left out; their records are not skipped, so what follows is read as it comes.
    /// A failed read, or a record that is refused, gives 0 with the trackers read so far.
    int Load(AFile& file);
    /// The same, with what could not be read.
    int Load(AFile& file, LoadReport& report);
    /// A tracker of the class with its record; null for an unknown class or a bad record.
    ABaseTracker* LoadObject(const CString& className, AFile& file);

    /// A new tracker for the first of the bits rectangle, rotated rectangle, ellipse, area.
    virtual ABaseTracker* GetNewTracker(int mode);
    /// Takes the range over at once; hosts that draw the map anew override it.
    void SetNewMinMax(CWnd* window, TMinMax& range) override;

protected:
    ATracker* makeTracker(int mode) override;
    ATracker* makeTrackerOfClass(const std::string& name) override;
    int takesPress(CPoint p) const override { return mapping_.rect.PtInRect(p); }
    TMinMax shownRange() const override { return mapping_.range; }
    int zoomedRange(CPoint p, TMinMax& range) const override;
    APoint<double> shapePoint(CPoint pixel) const override;
    CPoint pixelPoint(const APoint<double>& point) const override;
    APoint<double> shapeOffset(APoint<double> value) override;
    int shapeBounds(CWnd* window, ATracker& tracker, ARect<double>& bounds) const override;
    int mappingNumber() override;
    std::string mappingBytes() const override;
    int setMappingBytes(std::string_view bytes) override;
    void rescale(ATracker& tracker, int fromMapping, int toMapping) override;

private:
    PixelMapping mapping_;
    /// Mappings that steps of undo were made under.
    std::vector<PixelMapping> mappings_;
};

}  // namespace pavane
