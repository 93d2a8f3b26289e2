#pragma once

#include "pavane/axes/AGraph.h"
#include "pavane/containers/AArray.h"

namespace pavane
{

/// A histogram with the normal curve of its sample and a verdict whether it is Gaussian.
class PAVANE_API AStatHistGraph : public AGraph
{
public:
    AStatHistGraph(ABAxis* axis, int asItem);

    /// `bins`: heights, not owned, must outlive the graph; they divide `range` evenly. `mean` and
    /// `variance` are those of the sample. Computes the verdict.
    void SetParameters(AArray<double>* bins, TMnMx& range, double mean, double variance,
                       COLORREF barColor, COLORREF curveColor);
    /// 1 when the bins pass for a Gaussian distribution (looksGaussian).
    int isGaussian() const { return gaussian_; }

    int hasHeaderText(int index) const override;
    /// For index 0 "Mean = ..., RMS = ..., Distribution is ...".
    CString getHeaderText(int index) const override;
    /// x: the range of the bins; y: the least and greatest bin; z stays unset.
    void getMinMax(TMinMax& range) const override;
    /// Bars from the y minimum of the axis; the curve's peak touches the y maximum of `range`. The
    /// colour of the axis is the curve's afterwards.
    void draw(CDC& dc, CRect& rect, TMinMax& range) override;
    int overhang(const ABAxis& axis) const override;

private:
    void drawBars(CDC& dc) const;
    void drawBar(CDC& dc, const CRect& bar) const;
    void drawNormalCurve(CDC& dc, double peak) const;

    AArray<double>* bins_ = nullptr;
    TMnMx binRange_;
    double mean_ = 0;
    double variance_ = 0;
    COLORREF barColor_ = 0;
    COLORREF curveColor_ = 0;
    int gaussian_ = 0;
};

}  // namespace pavane
