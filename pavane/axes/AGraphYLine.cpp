#include "pavane/axes/AGraphYLine.h"

#include "pavane/axes/ABAxis.h"
#include "pavane/axes/axis_curve.h"
#include "pavane/axes/graph_styles.h"
#include "pavane/axes/point_range.h"

namespace pavane
{

AGraphYLine::AGraphYLine(ABAxis* axis, double* y, int n, TMinMax* range, int setting1, double x0,
                         double dx, int setting2, COLORREF color, int asItem)
    : AGraph(axis, asItem), y_(y), count_(n), x0_(x0), dx_(dx), setting1_(setting1),
      setting2_(setting2), color_(color)
{
    if (range)
        ownRange_ = *range;
}

CString& AGraphYLine::getOY(CString& name) const
{
    if (!name_.empty())
        name = name_;
    return name;
}

CString AGraphYLine::GetOYName() const { return name_; }

void AGraphYLine::getMinMax(TMinMax& range) const
{
    if (ownRange_.xMin != unsetMinimum)
        range = ownRange_;
    else
        rangeOfPoints({nullptr, y_, count_, x0_, dx_}, range);
}

void AGraphYLine::draw(CDC& dc, CRect&, TMinMax&)
{
    if (axis())
        drawAxisCurve(*axis(), dc, {nullptr, y_, count_, x0_, dx_}, setting1_, setting2_, color_);
}

int AGraphYLine::overhang(const ABAxis& axis) const { return axis.graphLine(setting2_) / 2; }

int AGraphYLine::getGraphColor(COLORREF& color) const
{
    color = color_;
    return 1;
}

void AGraphYLine::drawSample(CDC&, const CRect& box)
{
    if (axis())
        drawLineSample(*axis(), box, setting1_, setting2_, color_);
}

}  // namespace pavane
