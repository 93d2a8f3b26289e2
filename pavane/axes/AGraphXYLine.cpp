#include "pavane/axes/AGraphXYLine.h"

#include "pavane/axes/ABAxis.h"
#include "pavane/axes/axis_curve.h"
#include "pavane/axes/graph_styles.h"
#include "pavane/axes/point_range.h"

namespace pavane
{

AGraphXYLine::AGraphXYLine(ABAxis* axis, double* x, double* y, int n, TMinMax* range, int style1,
                           int style2, COLORREF color, int asItem)
    : AGraph(axis, asItem), x_(x), y_(y), count_(x ? n : 0), style1_(style1), style2_(style2),
      color_(color)
{
    if (range)
        ownRange_ = *range;
}

void AGraphXYLine::getMinMax(TMinMax& range) const
{
    if (ownRange_.xMin != unsetMinimum)
        range = ownRange_;
    else
        rangeOfPoints({x_, y_, count_}, range);
}

void AGraphXYLine::draw(CDC& dc, CRect&, TMinMax&)
{
    if (axis())
        drawAxisCurve(*axis(), dc, {x_, y_, count_}, style1_, style2_, color_);
}

int AGraphXYLine::overhang(const ABAxis& axis) const { return axis.graphLine(style2_) / 2; }

int AGraphXYLine::getGraphColor(COLORREF& color) const
{
    color = color_;
    return 1;
}

void AGraphXYLine::drawSample(CDC&, const CRect& box)
{
    if (axis())
        drawLineSample(*axis(), box, style1_, style2_, color_);
}

}  // namespace pavane
