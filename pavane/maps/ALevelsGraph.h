#pragma once

#include "pavane/maps/ABMapGraph.h"
#include "pavane/maps/MapContours.h"

namespace pavane
{

/// The contours of a map. Levels are absolute, per cent of the peak or multiples of the noise, and
/// chosen from both when nothing is said; lines of negative levels are dashed.
class PAVANE_API ALevelsGraph : public ABMapGraph
{
public:
    using ABMapGraph::ABMapGraph;

    MapContours& contours() { return contours_; }
    const MapContours& contours() const { return contours_; }
    /// The levels as values of the map, rising.
    std::vector<double> levels() const { return contours_.levels(*this); }

    int isLevels() const override { return 1; }
    int getNLevels() const override { return static_cast<int>(levels().size()); }
    void cellsChanged() override;
    void draw(CDC& dc, CRect& rect, TMinMax& range) override;

private:
    MapContours contours_;
};

}  // namespace pavane
