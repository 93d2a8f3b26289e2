#include "pavane/axes/box/A2_3D2ZAxis.h"

#include <algorithm>

namespace pavane
{
namespace
{

/// Air between the lower part of a stacked box and the floor of the upper one, as a share of the
/// height.
constexpr double stackGap = 0.08;

}  // namespace

int A2_3D2ZAxis::GetAxisType() const { return 15; }

int A2_3D2ZAxis::addChildItem(AGraph* graph)
{
    items_.push_back(graph);
    return A2_3DAxis::addChildItem(graph);
}

int A2_3D2ZAxis::DeleteGraph(const AGraph* graph)
{
    std::erase(items_, graph);
    return A2_3DAxis::DeleteGraph(graph);
}

void A2_3D2ZAxis::SetStacked(int on) { stacked_ = on != 0; }

void A2_3D2ZAxis::setMinMaxZ2(const TMnMx& range)
{
    z2_.range = range;
    z2Wish_.ask(range);
}

CString A2_3D2ZAxis::getNameOZ2() const { return nameOfZ(1, z2_.name); }

int A2_3D2ZAxis::zIndexOf(const AGraph& graph) const
{
    return std::find(items_.begin(), items_.end(), &graph) != items_.end();
}

BoxZ A2_3D2ZAxis::zAxis(int index) const
{
    BoxZ z = A2_3DAxis::zAxis(0);
    if (index == 1) {
        z = z2_;
        z.name = getNameOZ2();
    }
    const double middle = isStacked() ? stackGap / 2 : 0.5;
    placeZ(z, index == 1 && isStacked() ? middle : -0.5,
           index == 1    ? 0.5
           : isStacked() ? -middle
                         : 0.5);
    return z;
}

void A2_3D2ZAxis::setUpParameters()
{
    A2_3DAxis::setUpParameters();
    z2_.range = z2Wish_.found = rangeOfZ(1, z2Wish_.of(z2_.range, 0));
}

double A2_3D2ZAxis::RPZ2toWPZ(const double& z) const
{
    return (z - z2_.range.min) / (z2_.range.max - z2_.range.min);
}

int A2_3D2ZAxis::GPtoRP2(CPoint point, double& x, double& y, double& z) const
{
    int second = 0;
    BoxCell cell;
    if (!hitAt(point, second, cell) || second != 1)
        return 0;
    x = cell.x;
    y = cell.y;
    z = cell.z;
    return 1;
}

}  // namespace pavane
