#pragma once

#include "pavane/axes/AGraph.h"

namespace pavane
{

/// A curve through (x, y) pairs (RP). The arrays are the host's and must outlive the graph. Points
/// with a value that is not finite are gaps.
class PAVANE_API AGraphXYLine : public AGraph
{
public:
    /// `range` is copied and stands for the data's own range; null leaves that to the data.
    /// `style1` is the pen style, `style2` the width; see graph_styles.h.
    AGraphXYLine(ABAxis* axis, double* x, double* y, int n, TMinMax* range, int style1, int style2,
                 COLORREF color, int asItem);

    /// The given range, or the least and greatest x and y of the finite points; unset without any.
    void getMinMax(TMinMax& range) const override;
    void draw(CDC& dc, CRect& rect, TMinMax& range) override;
    int overhang(const ABAxis& axis) const override;
    CurvePoints getPoints() const override { return {x_, y_, count_}; }
    int getGraphColor(COLORREF& color) const override;
    void drawSample(CDC& dc, const CRect& box) override;

protected:
    double* x_;
    double* y_;
    int count_;
    int style1_;
    int style2_;
    COLORREF color_;
    TMinMax ownRange_;
};

}  // namespace pavane
