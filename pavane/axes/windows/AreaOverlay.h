#pragma once

#include "pavane/trackers/ABTracker.h"
#include "pavane/trackers/masks/CellOverlay.h"
#include "pavane/trackers/masks/overlay_picture.h"
#include "platform/geometry.h"

#include <cstddef>
#include <optional>
#include <vector>

namespace pavane
{

class ABMapGraph;
class ARPTrackerArray;
class CBitmap;
class CDC;

/// The cells that the areas of a window hold, followed through edits and drags, and drawn over the
/// window's picture of the map. Belongs to one window.
class AreaOverlay
{
public:
    /// The map, not owned; null for none. Areas are taken at the next `follow`. 0 without memory.
    int setMap(const ABMapGraph* map);
    void valuesChanged() { cells_.valuesChanged(); }

    // Areas change more often than anybody looks: changes are noted, and followed when somebody
    // does.
    /// Any of the areas may be others now.
    void note() { allBehind_ = 1; }
    /// One that is dragged has another shape; with `several` all that are selected have.
    void noteDrag(const ABTracker& dragged, int several)
    {
        allBehind_ = allBehind_ || (dragged_ && dragged_ != &dragged);
        dragged_ = &dragged;
        draggedLife_.emplace(dragged.life());
        severalDragged_ = several;
    }
    /// Follows what was noted.
    void catchUp(const ARPTrackerArray& areas);

    /// Takes the areas as they are; only what changed since the last call is filled again. The
    /// polygon under construction counts as one more area.
    void follow(const ARPTrackerArray& areas);
    /// One of the areas, or one that is being drawn and will be of them, has another shape.
    void followDrag(const ARPTrackerArray& areas, const ABTracker& changed);
    /// The same of several areas, by index.
    void followDrag(const ARPTrackerArray& areas, const std::vector<int>& items);
    /// Number of cells and sum of their values, of the mask of all areas.
    CellSum total() { return cells_.total(); }
    const ABitMatrix& mask() const { return cells_.mask(); }

    /// Where the map is shown: the graph rectangle of its axis, `ratio` pixels to a unit.
    void setPlot(const CRect& plot, int ratio);
    /// Client pixels in which cells changed since the last call; empty for none.
    CRect takeChangedPixels();
    /// Blends the cells into what `content`, the window's picture, shows in `update`.
    void draw(CDC& dc, const CRect& update, const CBitmap& content);

private:
    void replaceAll(const ARPTrackerArray& areas);
    void replaceFrom(const ARPTrackerArray& areas, std::size_t first, std::size_t oldEnd,
                     std::size_t newEnd, const std::vector<std::size_t>& marks);
    int putArea(const ABTracker& tracker, int at, int replacing);
    void drawTile(CDC& dc, const CRect& tile, const CBitmap& content);
    const ABTracker* shape(const ARPTrackerArray& areas, std::size_t i) const;

    const ABMapGraph* map_ = nullptr;
    int allBehind_ = 0;
    const ABTracker* dragged_ = nullptr;  ///< noted, null for none; it may be gone
    std::optional<LifeWatch> draggedLife_;
    int severalDragged_ = 0;
    CellOverlay cells_;
    OverlayPicture picture_;
    CRect plot_;  ///< units that pixels of picture_ belong to; right and bottom excluded
    int ratio_ = 1;
    std::vector<std::size_t> marks_;  ///< a number for the shape of each area, as last taken
};

}  // namespace pavane
