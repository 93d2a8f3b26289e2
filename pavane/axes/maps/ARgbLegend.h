#pragma once

#include "pavane/axes/AGraph.h"
#include "pavane/axes/maps/RgbImage.h"

namespace pavane
{

/// Says in the upper left corner of a plot which map is red, green and blue, between which values:
/// a line each, on a dark ground, with the ramp of its colour. Names that are too long for the plot
/// lose their middle; without room for all lines there are none. Counts in no range.
class PAVANE_API ARgbLegend : public AGraph
{
public:
    /// `image` has to outlive the graph or its next setImage; null: nothing is drawn.
    explicit ARgbLegend(ABAxis* axis, const RgbImage* image = nullptr)
        : AGraph(axis, 0), image_(image)
    {
    }
    void setImage(const RgbImage* image) { image_ = image; }

    void draw(CDC& dc, CRect& rect, TMinMax& range) override;

private:
    const RgbImage* image_;
};

}  // namespace pavane
