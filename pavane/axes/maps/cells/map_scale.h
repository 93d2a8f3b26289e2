#pragma once

#include "pavane/axes/maps/cells/AMatrixAccess.h"
#include "tessel/api.h"

#include <array>

namespace pavane
{

enum class MapScaleKind { linear, squareRoot, logarithmic, equalized };

/// How map values become colours: a rising function from the range of values to 0..1.
///
/// Linear and square root run from the low end to the high end. The logarithm needs a low end above
/// 0: one that is not becomes a thousandth of the high end, and values below it get the first
/// colour; without a high end above 0 the scale is linear. The equalized scale gives every colour
/// the same share of the cells. An empty range is widened by half its value to both sides (0 by 1),
/// a reversed one is put in order.
class PAVANE_API MapScale
{
public:
    MapScale() { setRange(MapScaleKind::linear, 0, 1); }
    /// An equalized scale is linear until `equalize` has seen the cells.
    MapScale(MapScaleKind kind, double low, double high) { setRange(kind, low, high); }
    void setRange(MapScaleKind kind, double low, double high);
    /// Takes the shares from the finite cells inside the range, as equalShares does. Non-zero on
    /// success; 0 when there are no cells.
    int equalize(const AMatrixAccess& cells);

    MapScaleKind kind() const { return kind_; }
    double low() const { return low_; }
    double high() const { return high_; }
    /// Place of a value, 0 at the low end and 1 at the high end, cut to these.
    double position(double value) const;
    /// The value at a place 0..1.
    double value(double position) const;

private:
    /// As many as the colours of a map, so that each of them has its share and no less.
    static constexpr int knotSteps = 226;

    MapScaleKind kind_ = MapScaleKind::linear;
    double low_ = 0;
    double high_ = 1;
    /// The values at places i / knotSteps of an equalized scale.
    std::array<double, knotSteps + 1> knots_{};
};

}  // namespace pavane
