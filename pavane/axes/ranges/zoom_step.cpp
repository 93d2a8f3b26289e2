#include "pavane/axes/ranges/zoom_step.h"

#include <cmath>

namespace pavane
{

namespace
{

/// The fewest steps of a double that a zoomed range may be long; closer, axes cannot label it.
constexpr double leastLength = 1e-13;

int zoomLinear(TMnMx& span, double at, double factor)
{
    const double length = (span.max - span.min) / factor;
    if (!(span.max > span.min) || !std::isfinite(length) || !std::isfinite(at))
        return 0;
    if (length <= leastLength * std::fmax(std::abs(span.min), std::abs(span.max)))
        return 0;
    double min = at - length / 2;
    double max = at + length / 2;
    if (max > span.max) {
        min = span.max - length;
        max = span.max;
    }
    if (min < span.min) {
        max = span.min + length;
        min = span.min;
    }
    span = {min, max};
    return 1;
}

}  // namespace

int zoomSpan(TMnMx& span, double at, double factor, int logarithmic)
{
    if (!logarithmic)
        return zoomLinear(span, at, factor);
    if (!(span.min > 0) || !(at > 0))
        return 0;
    TMnMx decades{std::log10(span.min), std::log10(span.max)};
    if (!zoomLinear(decades, std::log10(at), factor))
        return 0;
    span = {std::pow(10.0, decades.min), std::pow(10.0, decades.max)};
    return 1;
}

}  // namespace pavane
