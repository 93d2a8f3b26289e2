#pragma once

#include "pavane/maps/AColorsGraph.h"
#include "pavane/maps/MapContours.h"

namespace pavane
{

/// A colour map with contours over it.
class PAVANE_API ALevelsColorGraph : public AColorsGraph
{
public:
    using AColorsGraph::AColorsGraph;

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
