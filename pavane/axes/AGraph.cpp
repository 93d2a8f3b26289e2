#include "pavane/axes/AGraph.h"

#include "pavane/axes/ABAxis.h"

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

void AGraph::drawIn(ABAxis& axis, CDC& dc, CRect& rect, TMinMax& range)
{
    ABAxis* const owner = axis_;
    axis_ = &axis;
    draw(dc, rect, range);
    axis_ = owner;
}

}  // namespace pavane
