#include "pavane/axes/AStatHistGraph.h"

#include "pavane/axes/ABAxis.h"
#include "pavane/axes/axis_curve.h"
#include "pavane/axes/figure_units.h"
#include "pavane/axes/normality.h"
#include "pavane/axes/SelectedObject.h"
#include "pavane/images/ADIBase.h"
#include "tessel/rounding.h"
#include "tessel/value_text.h"

#include <algorithm>
#include <cmath>

namespace pavane
{
namespace
{

constexpr int curveSegments = 64;
constexpr int headerDigits = 3;
constexpr double leastExponent = -600;  ///< exp of it is still above 0

int curveWidth(const ABAxis& axis)
{
    return FigureUnits(axis.dc()).ofFont(
        axis.getFHeight(), [](int height) { return truncated(height * 0.125 + 0.5); });
}

}  // namespace

AStatHistGraph::AStatHistGraph(ABAxis* axis, int asItem) : AGraph(axis, asItem) {}

void AStatHistGraph::SetParameters(AArray<double>* bins, TMnMx& range, double mean, double variance,
                                   COLORREF barColor, COLORREF curveColor)
{
    bins_ = bins;
    binRange_ = range;
    mean_ = mean;
    variance_ = variance;
    barColor_ = barColor;
    curveColor_ = curveColor;
    gaussian_ = bins ? looksGaussian(bins->lpArray(), bins->count(), mean, variance) : 0;
}

int AStatHistGraph::hasHeaderText(int index) const { return index == 0; }

CString AStatHistGraph::getHeaderText(int index) const
{
    if (index != 0)
        return {};
    return "Mean = " + valToStr(mean_, headerDigits) +
           ", RMS = " + valToStr(std::sqrt(variance_), headerDigits) + ", Distribution is " +
           (gaussian_ ? "" : " not ") + "Gaussian";
}

void AStatHistGraph::getMinMax(TMinMax& range) const
{
    range = TMinMax();
    range.xMin = binRange_.min;
    range.xMax = binRange_.max;
    bool any = false;
    for (int i = 0; bins_ && i < bins_->count(); ++i) {
        const double height = (*bins_)(i);
        if (!std::isfinite(height))
            continue;
        range.yMin = any ? std::min(range.yMin, height) : height;
        range.yMax = any ? std::max(range.yMax, height) : height;
        any = true;
    }
}

void AStatHistGraph::draw(CDC& dc, CRect&, TMinMax& range)
{
    if (!axis() || !bins_ || bins_->count() < 1)
        return;
    drawBars(dc);
    drawNormalCurve(dc, range.yMax);
}

void AStatHistGraph::drawBars(CDC& dc) const
{
    const ABAxis& plot = *axis();
    const SelectedObject<CPen> pen(dc, CPen(PS_SOLID, 0, plot.workColor(1)));
    const SelectedObject<CBrush> brush(dc, CBrush(barColor_));
    const double width = (binRange_.max - binRange_.min) / bins_->count();
    const int floor = plot.RPYtoGPY(plot.getMinMax().yMin);
    int left = plot.RPXtoGPX(binRange_.min);
    for (int i = 0; i < bins_->count(); ++i) {
        const int right = plot.RPXtoGPX(binRange_.min + (i + 1) * width);
        CRect bar(left, plot.RPYtoGPY((*bins_)(i)), right, floor);
        left = right;
        bar.NormalizeRect();
        if (std::isfinite((*bins_)(i)))
            drawBar(dc, bar);
    }
}

void AStatHistGraph::drawBar(CDC& dc, const CRect& bar) const
{
    const ABAxis& plot = *axis();
    if (!plot.isFlagSet(axisBitmapMode)) {
        dc.Rectangle(bar);
        return;
    }
    ADIBase* const dib = plot.dib();
    if (!dib || bar.IsRectEmpty())
        return;
    const CRect edges(bar.left, bar.top, bar.right - 1, bar.bottom - 1);
    const short color = dib->GetColor();
    dib->FillRect(edges, static_cast<short>(plot.paletteIndex(barColor_)));
    dib->SetColor(static_cast<short>(plot.paletteIndex(plot.workColor(1))));
    dib->Rectangle(edges);
    dib->SetColor(color);
}

void AStatHistGraph::drawNormalCurve(CDC& dc, double peak) const
{
    ABAxis& plot = *axis();
    const int width = plot.getLineWidth();
    plot.setColor(curveColor_);
    plot.setLineWidth(curveWidth(plot));
    CPointF fine[curveSegments + 1];
    CPoint last;
    const bool fractions = !plot.isFlagSet(axisBitmapMode) && drawsFractions(dc);
    for (int i = 0; i <= curveSegments; ++i) {
        const double x = binRange_.min + (binRange_.max - binRange_.min) * i / curveSegments;
        const double d = x - mean_;
        const double y = std::exp(std::max(leastExponent, -0.5 * (d * d) / variance_)) * peak;
        const CPoint point(plot.RPXtoGPX(x), plot.RPYtoGPY(y));
        fine[i] = plot.RPtoGPF(x, y);
        if (i > 0 && !fractions)
            plot.line(last.x, last.y, point.x, point.y);
        last = point;
    }
    if (fractions) {
        const SelectedObject<CPen> pen(dc, CPen(PS_SOLID, plot.getLineWidth(), curveColor_));
        dc.PolylineF(fine, curveSegments + 1);
    }
    plot.setLineWidth(width);
}

int AStatHistGraph::overhang(const ABAxis& axis) const { return curveWidth(axis) / 2; }

}  // namespace pavane
