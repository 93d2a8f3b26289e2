#pragma once

#include "pavane/axes/AGraph.h"
#include "pavane/axes/maps/cells/level_list.h"
#include "pavane/axes/maps/MapContent.h"
#include "pavane/axes/maps/MapContours.h"
#include "tessel/CellMapping.h"
#include "tessel/SkyCoordinates.h"

namespace pavane
{

/// Contours of one map over the colours of another, of any cell size, place, frame and projection:
/// the points of the lines go through both positions, no cell is sampled anew. Dark lines with a
/// light edge, those of negative levels dashed.
class PAVANE_API AOtherContours : public AGraph
{
public:
    /// `map` is the graph of the map that is shown, in the same axis, and has to outlive this.
    AOtherContours(ABAxis* axis, const ABMapGraph& map);

    /// Takes the contours of `other`, which lies at `own`, over the map at `shown`; none of them is
    /// needed afterwards. `moved` is added to the positions of the other map, in its own frame.
    /// Non-zero on success; 0 with `error`, and without contours, for maps that have no sky in
    /// common or no value, without memory and when `progress` gave up.
    int setMap(const MapContent& other, const SkyCoordinates& own, const SkyCoordinates& shown,
               const LevelChoice& levels, SkyShift moved, CString& error,
               const ProgressFunction& progress = {});

    /// Why the contours of a map cannot lie over one of so many rows and columns, to be read behind
    /// its name; empty where they can.
    static CString faultOf(const MapContent& other, const SkyCoordinates& own,
                           const SkyCoordinates& shown, int rows, int columns, SkyShift moved);

    /// Draws none until the next setMap.
    void clear();
    void setColors(COLORREF line, COLORREF edge);

    void draw(CDC& dc, CRect& rect, TMinMax& range) override;

private:
    const ABMapGraph& map_;
    MapContours contours_;
    COLORREF line_ = RGB(0, 0, 0), edge_ = RGB(255, 255, 255);
};

}  // namespace pavane
