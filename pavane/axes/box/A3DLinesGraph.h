#pragma once

#include "pavane/axes/AGraph.h"

#include <vector>

namespace pavane
{

struct BoxCurtain;
struct BoxPoint;

/// Curves one behind another in a box: spectra in time, a baseline a row. Each stands at its own y
/// and hides, down to the floor, what is behind it.
class PAVANE_API A3DLinesGraph : public AGraph
{
public:
    using AGraph::AGraph;

    /// A curve through (x[i], z[i]) at `y`; the arrays are not owned. A point that is not finite is
    /// a gap. Returns its index, or -1 without points or with a y that is not finite.
    int AddCurve(double y, const double* x, const double* z, int count, COLORREF color);
    int GetCurveCount() const { return static_cast<int>(curves_.size()); }
    void DeleteCurves() { curves_.clear(); }
    /// In frame widths (graph_styles.h), 1 at first.
    void SetLineWidth(int width) { width_ = width; }
    /// 0: curves hide nothing. 1 at first.
    void SetFilled(int on) { filled_ = on; }
    int GetFilled() const { return filled_; }
    /// Titles with the markers of AB2DAxis.
    void setNames(const CString& x, const CString& y, const CString& z);

    CString GetOXName() const override { return nameX_; }
    CString GetOYName() const override { return nameY_; }
    CString GetOZName() const override { return nameZ_; }
    void getMinMax(TMinMax& range) const override;
    void draw3D(CDC& dc, A2_3DAxis& axis) override;
    int isIn3D() const override { return 1; }
    /// What the curves hide in `axis` as it is laid out.
    void addCurtains(const A2_3DAxis& axis, std::vector<BoxCurtain>& curtains) const;

private:
    void addCurtain(const A2_3DAxis& axis, const std::vector<BoxPoint>& run,
                    std::vector<BoxCurtain>& curtains) const;
    struct Curve {
        double y;
        const double* x;
        const double* z;
        int count;
        COLORREF color;
    };
    std::vector<Curve> curves_;
    int width_ = 1;
    int filled_ = 1;
    CString nameX_, nameY_, nameZ_;
};

}  // namespace pavane
