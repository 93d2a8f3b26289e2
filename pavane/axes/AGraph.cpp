#include "pavane/axes/AGraph.h"

#include "pavane/axes/ABAxis.h"
#include "pavane/axes/nearest_point.h"

namespace pavane
{

AGraph::AGraph(ABAxis* axis, int asItem) : axis_(axis)
{
    if (!axis)
        return;
    if (asItem)
        axis->addChildItem(this);
    else
        axis->addChild(this);
}

AGraph::~AGraph() = default;

int AGraph::isLevels() const { return 0; }
int AGraph::getNLevels() const { return 0; }
int AGraph::isColors() const { return 0; }
int AGraph::getNColors() const { return 0; }
int AGraph::getFirstColor() const { return 0; }
int AGraph::getPlusColor() const { return 0; }
CString& AGraph::getOY(CString& name) const { return name; }
CString AGraph::GetOXName() const { return {}; }
CString AGraph::GetOYName() const { return {}; }
CString AGraph::GetOZName() const { return {}; }
int AGraph::hasHeaderText(int) const { return 0; }
CString AGraph::getHeaderText(int) const { return {}; }
void AGraph::getMinMax(TMinMax&) const {}
void AGraph::draw(CDC&, CRect&, TMinMax&) {}
int AGraph::overhang(const ABAxis&) const { return 0; }
void AGraph::draw3D(CDC&, A2_3DAxis&) {}
int AGraph::isIn3D() const { return 0; }
CurvePoints AGraph::getPoints() const { return {}; }
int AGraph::getGraphColor(COLORREF&) const { return 0; }
void AGraph::drawSample(CDC&, const CRect&) {}
void AGraph::followModule() {}
void AGraph::setPaletteColors(const SharedPalette&) {}

int AGraph::nearestPoint(double x) const
{
    const CurvePoints points = getPoints();
    if (!points.y)
        return -1;
    if (order_ == PointOrder::unknown)
        order_ = pointsRise(points) ? PointOrder::rising : PointOrder::any;
    return nearestInX(points, x, order_ == PointOrder::rising);
}

void AGraph::drawIn(ABAxis& axis, CDC& dc, CRect& rect, TMinMax& range)
{
    ABAxis* const owner = axis_;
    axis_ = &axis;
    draw(dc, rect, range);
    axis_ = owner;
}

void AGraph::drawSampleIn(ABAxis& axis, CDC& dc, const CRect& box)
{
    ABAxis* const owner = axis_;
    axis_ = &axis;
    drawSample(dc, box);
    axis_ = owner;
}

}  // namespace pavane
