#pragma once

#include "pavane/axes/maps/MapContours.h"

#include <vector>

namespace pavane
{

/// What map graphs with contours share; `Graph` is the kind of map graph below them.
template <typename Graph>
class PAVANE_API ContouredGraph : public Graph
{
public:
    using Graph::Graph;

    MapContours& contours() { return contours_; }
    const MapContours& contours() const { return contours_; }
    /// The levels as values of the map, rising.
    std::vector<double> levels() const { return contours_.levels(*this); }

    int isLevels() const override { return 1; }
    int getNLevels() const override { return static_cast<int>(levels().size()); }
    void cellsChanged() override
    {
        Graph::cellsChanged();
        contours_.forget();
    }

private:
    MapContours contours_;
};

}  // namespace pavane
