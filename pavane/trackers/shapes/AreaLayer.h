#pragma once

#include "pavane/axes/maps/FigureLayer.h"
#include "pavane/containers/APoint.h"
#include "pavane/trackers/shapes/area_label.h"

#include <utility>
#include <vector>

namespace pavane
{

/// A closed curve in data values (RP), from the last point back to the first.
struct AreaOutline {
    std::vector<APoint<double>> points;
    int isNeverClean = 0;  ///< drawn as area_look.h says
    AreaLabel label = {};
    friend bool operator==(const AreaOutline&, const AreaOutline&) = default;
};

/// Draws the outlines of areas over a map that is laid out for the context: what windows, pictures
/// and pages show of areas that nobody works on.
PAVANE_API void drawAreaOutlines(CDC& dc, const ABAxis& axis,
                                 const std::vector<AreaOutline>& outlines);

/// Writes the names of those that have one over them, in their colours.
PAVANE_API void drawAreaNames(CDC& dc, const ABAxis& axis,
                              const std::vector<AreaOutline>& outlines);

/// Areas over the map of a figure.
class PAVANE_API AreaLayer : public FigureLayer
{
public:
    AreaLayer() = default;
    explicit AreaLayer(std::vector<AreaOutline> outlines) : outlines_(std::move(outlines)) {}
    void setOutlines(std::vector<AreaOutline> outlines) { outlines_ = std::move(outlines); }
    /// Non-zero writes the names of the areas too.
    void setNames(int on) { hasNames_ = on; }
    void draw(CDC& dc, const ABAxis& axis) override
    {
        drawAreaOutlines(dc, axis, outlines_);
        if (hasNames_)
            drawAreaNames(dc, axis, outlines_);
    }

private:
    std::vector<AreaOutline> outlines_;
    int hasNames_ = 0;
};

}  // namespace pavane
