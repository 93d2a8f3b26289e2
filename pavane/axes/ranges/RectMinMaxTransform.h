#pragma once

#include "pavane/axes/ranges/TMinMax.h"
#include "platform/api.h"
#include "platform/geometry.h"

namespace pavane
{

/// Linear conversions between device pixels (GP) of a rectangle and data values (RP) of a range,
/// where no axis is at hand; WP is the fraction of the span. Only the x and y pairs of the range
/// count. A plain value.
///
/// A mode of 0 or more means that values grow to the right or upwards, a negative one that they
/// grow to the left or downwards: the signs of an axis's scale codes, so these can be passed on.
/// Deliberate: the code 0 of a logarithmic direction is linear here; a map has no such direction.
class PAVANE_API RectMinMaxTransform
{
public:
    RectMinMaxTransform(const CRect& rect, const TMinMax& range, int modeX, int modeY);

    /// A rectangle without width or height, or a range without span, gives an infinity or
    /// not-a-number.
    double GPXtoWPX(int gx) const;
    double GPYtoWPY(int gy) const;
    double GPXtoRPX(int gx) const;
    double GPYtoRPY(int gy) const;
    double RPXtoWPX(const double& x) const;
    double RPYtoWPY(const double& y) const;
    /// Pixels beyond the rectangle for values beyond the range, saturated at offsets of 2^30;
    /// not-a-number gives the edge that values grow from.
    int RPXtoGPX(const double& x) const;
    int RPYtoGPY(const double& y) const;

private:
    CRect rect_;
    TMinMax range_;
    int modeX_;
    int modeY_;
};

}  // namespace pavane
