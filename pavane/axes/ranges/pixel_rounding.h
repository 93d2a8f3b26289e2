#pragma once

#include "tessel/rounding.h"

namespace pavane
{

// The rounding between data values (RP), fractions of the span (WP) and device pixels (GP). Axes,
// transforms and curves share it, so that they meet on the same pixel.

/// Fraction of the span `min`..`max` at `value`. Beyond the ends it leaves 0..1; an empty span
/// gives an infinity or not-a-number, which the pixels below saturate.
constexpr double spanFraction(double value, double min, double max)
{
    return (value - min) / (max - min);
}

/// Pixels from the start of an axis `length` pixels long to the fraction `wp` of its span.
/// Deliberate: adds a half and cuts towards zero, so that a point just before the start lands on
/// the edge and not one pixel outside; selection shapes and masks round the same way. Saturates at
/// plus or minus 2^30; not-a-number gives 0.
constexpr int pixelOffset(double wp, int length)
{
    return truncated(wp * static_cast<double>(length) + 0.5);
}

/// Pixel at the fraction `wp` of an axis from `start` to `end` that grows from start to end when
/// `forward`, otherwise from end to start.
constexpr int pixelAt(double wp, int start, int end, bool forward)
{
    const int offset = pixelOffset(wp, saturatedSum(end, -static_cast<long long>(start)));
    return forward ? saturatedSum(start, offset)
                   : saturatedSum(end, -static_cast<long long>(offset));
}

/// Fraction of the span at pixel `pixel` of the same axis. A length of 0 gives an infinity or
/// not-a-number.
constexpr double fractionAt(int pixel, int start, int end, bool forward)
{
    const long long distance =
        forward ? static_cast<long long>(pixel) - start : static_cast<long long>(end) - pixel;
    return static_cast<double>(distance) / static_cast<double>(static_cast<long long>(end) - start);
}

}  // namespace pavane
