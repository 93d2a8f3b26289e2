#pragma once

#include "pavane/containers/APoint.h"
#include "pavane/containers/ARect.h"
#include "platform/api.h"
#include "platform/geometry.h"

namespace pavane
{

class ABAxis;

/// How shapes in data values (RP) meet the screen (GP): through an axis, or, without one, a value
/// cut towards zero is a pixel. A plain value; the axis is not owned and may be null.
class PAVANE_API AxisPixels
{
public:
    explicit AxisPixels(const ABAxis* axis) : axis_(axis) {}

    CPoint pixel(const APoint<double>& p) const;
    /// Where a value lies between pixels, whole numbers being their middles; without an axis, or
    /// where that is no number, its pixel.
    CPointF finePixel(const APoint<double>& p) const;
    ARect<double> finePixels(const ARect<double>& rect) const;
    APoint<double> value(CPoint p) const;
    CRect pixels(const ARect<double>& rect) const;

    /// Non-zero when pixels and values can be turned into each other: without an axis, or when its
    /// graph rectangle and its range span something (an unset range does not).
    int usable() const;
    /// The graph rectangle, right and bottom included, in order; 0 without an axis.
    int bounds(CRect& rect) const;
    /// Data units that a pixel spans at `p`, both positive; 0 when that cannot be told.
    APoint<double> unitsPerPixel(CPoint p) const;
    /// Whether both go through the same axis, or through none.
    friend bool operator==(const AxisPixels&, const AxisPixels&) = default;

private:
    const ABAxis* axis_;
};

/// Whether all numbers are finite.
PAVANE_API bool isFinite(const APoint<double>& p);
PAVANE_API bool isFinite(const ARect<double>& r);

}  // namespace pavane
