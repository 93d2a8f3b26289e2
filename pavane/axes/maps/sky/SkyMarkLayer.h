#pragma once

#include "pavane/axes/maps/FigureLayer.h"
#include "pavane/axes/maps/MapFrame.h"
#include "platform/geometry.h"
#include "tessel/sky_marks.h"
#include "tessel/SkyCoordinates.h"

#include <vector>

namespace pavane
{

/// Named positions over a map: a cross each, and its name beside it where that covers no other name
/// and no cross. Crosses of places that the map does not show are left out.
class PAVANE_API SkyMarkLayer : public FigureLayer
{
public:
    /// Places marks in a map of this frame. Positions go through `sky`, which may have none: then
    /// only marks in pixels are shown.
    void setMarks(const std::vector<SkyMark>& marks, const SkyCoordinates& sky,
                  const MapFrame& frame);
    /// How many of the marks have a place in the plane of the map.
    int placed() const { return static_cast<int>(placed_.size()); }
    void draw(CDC& dc, const ABAxis& axis) override;

private:
    struct Placed {
        CString name;
        MapPlace at;  ///< on the axes
    };
    void drawNames(CDC& dc, const ABAxis& axis, const std::vector<int>& shown) const;

    std::vector<Placed> placed_;
};

}  // namespace pavane
