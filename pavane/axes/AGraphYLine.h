#pragma once

#include "pavane/axes/AGraph.h"

namespace pavane
{

/// A curve of y values at equal x steps: value i lies at x0 + i * dx (RP). The array is the host's
/// and must outlive the graph. Values that are not finite are gaps.
class PAVANE_API AGraphYLine : public AGraph
{
public:
    /// `range` is copied and stands for the data's own range; null leaves that to the data.
    /// `setting1` is the pen style, `setting2` the width; see graph_styles.h.
    AGraphYLine(ABAxis* axis, double* y, int n, TMinMax* range, int setting1, double x0, double dx,
                int setting2, COLORREF color, int asItem);

    /// The name of what the curve shows, proposed as the y title; empty at first.
    void setName(const CString& name) { name_ = name; }
    CString& getOY(CString& name) const override;
    CString GetOYName() const override;
    /// The given range, or that of the finite values; unset without any.
    void getMinMax(TMinMax& range) const override;
    void draw(CDC& dc, CRect& rect, TMinMax& range) override;
    int overhang(const ABAxis& axis) const override;
    CurvePoints getPoints() const override { return {nullptr, y_, count_, x0_, dx_}; }
    int getGraphColor(COLORREF& color) const override;
    void drawSample(CDC& dc, const CRect& box) override;

private:
    CString name_;
    double* y_;
    int count_;
    double x0_;
    double dx_;
    int setting1_;
    int setting2_;
    COLORREF color_;
    TMinMax ownRange_;
};

}  // namespace pavane
