#pragma once

#include "pavane/axes/AGraph.h"
#include "pavane/axes/graph_styles.h"

namespace pavane
{

/// Points in a box, with stalks that stand on the floor of their Z.
class PAVANE_API A3DPointsGraph : public AGraph
{
public:
    using AGraph::AGraph;

    /// The arrays are not owned; a point that is not finite is left out.
    void SetPoints(const double* x, const double* y, const double* z, int count);
    /// `marker` is a GraphPoint; dots at first.
    void SetMarker(int marker, COLORREF color);
    /// Stalks, 1 at first, and their colour.
    void SetStalks(int on, COLORREF color = RGB(128, 128, 128));
    /// Titles with the markers of AB2DAxis.
    void setNames(const CString& x, const CString& y, const CString& z);

    CString GetOXName() const override { return nameX_; }
    CString GetOYName() const override { return nameY_; }
    CString GetOZName() const override { return nameZ_; }
    void getMinMax(TMinMax& range) const override;
    void draw3D(CDC& dc, A2_3DAxis& axis) override;
    int isIn3D() const override { return 1; }

private:
    const double* x_ = nullptr;
    const double* y_ = nullptr;
    const double* z_ = nullptr;
    int count_ = 0;
    int marker_ = graphPointDot;
    COLORREF color_ = RGB(0, 0, 255);
    int stalks_ = 1;
    COLORREF stalkColor_ = RGB(128, 128, 128);
    CString nameX_, nameY_, nameZ_;
};

}  // namespace pavane
