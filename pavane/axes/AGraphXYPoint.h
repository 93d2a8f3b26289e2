#pragma once

#include "pavane/axes/AGraphXYLine.h"

namespace pavane
{

/// The same data as a set of points, each with a marker: `style1` is a GraphPoint, `style2` the
/// width of its strokes; see graph_styles.h. Points outside the plot are left out.
class PAVANE_API AGraphXYPoint : public AGraphXYLine
{
public:
    using AGraphXYLine::AGraphXYLine;
    void draw(CDC& dc, CRect& rect, TMinMax& range) override;
    int overhang(const ABAxis& axis) const override;
    void drawSample(CDC& dc, const CRect& box) override;
};

}  // namespace pavane
