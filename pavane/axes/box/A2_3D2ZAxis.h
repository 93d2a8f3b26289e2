#pragma once

#include "pavane/axes/box/A2_3DAxis.h"

#include <vector>

namespace pavane
{

/// A box with two Z axes, the second at the rightmost upright edge. Graphs that registered as items
/// (asItem non-zero) belong to the second.
class PAVANE_API A2_3D2ZAxis : public A2_3DAxis
{
public:
    using A2_3DAxis::A2_3DAxis;

    int GetAxisType() const override;
    int addChildItem(AGraph* graph) override;
    int DeleteGraph(const AGraph* graph) override;

    /// Non-zero (at first): what belongs to the second Z stands above the first, with a floor of
    /// its own. 0: both share the box, and their surfaces hide each other.
    void SetStacked(int on);
    int GetStacked() const { return stacked_; }

    void setNameOZ2(const CString& name) { z2_.name = name; }
    CString getNameOZ2() const;
    /// The range of the second Z; it follows the graphs until it is set.
    TMnMx& getMinMaxZ2() { return z2_.range; }
    const TMnMx& getMinMaxZ2() const { return z2_.range; }
    void setMinMaxZ2(const TMnMx& range);
    int nz2pDigit() const { return z2_.nPlus; }
    int nz2mDigit() const { return z2_.nMinus; }
    int z2Intervals() const { return z2_.intervals; }
    void setNz2pDigit(int digits) { z2_.nPlus = digits; }
    void setNz2mDigit(int digits) { z2_.nMinus = digits; }
    void setZ2Intervals(int n) { z2_.intervals = n; }

    /// Linear, as RPZtoWPZ.
    double RPZ2toWPZ(const double& z) const;
    /// As GPtoRP, where it is the second surface that is seen.
    int GPtoRP2(CPoint point, double& x, double& y, double& z) const;

protected:
    void setUpParameters() override;
    int zCount() const override { return items_.empty() ? 1 : 2; }
    BoxZ zAxis(int index) const override;
    int zIndexOf(const AGraph& graph) const override;
    int isStacked() const override { return stacked_ && !items_.empty(); }

private:
    BoxZ z2_;
    RangeWish z2Wish_;
    int stacked_ = 1;
    std::vector<const AGraph*> items_;
};

}  // namespace pavane
