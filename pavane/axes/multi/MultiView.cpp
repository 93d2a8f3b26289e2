#include "pavane/axes/multi/MultiView.h"

#include "pavane/axes/multi/A2DAxisMulti.h"
#include "pavane/axes/ranges/range_steps.h"

#include <algorithm>
#include <cmath>

namespace pavane
{

namespace
{

/// The closest look at a direction.
constexpr double smallestPart = 1e-9;

int isSpan(const TMnMx& span) { return span.min < span.max && std::isfinite(span.max - span.min); }

/// Null for a direction that is none, and for one without values.
template <class Ranges>
auto* spanOf(Ranges& ranges, int direction)
{
    auto* const span = direction == directionX ? &ranges.x
                       : direction >= 0 && direction < static_cast<int>(ranges.y.size())
                           ? &ranges.y[static_cast<std::size_t>(direction)]
                           : nullptr;
    return span && isSpan(*span) ? span : nullptr;
}

int put(TMnMx& shown, const TMnMx& wanted)
{
    if (!isSpan(wanted) || wanted == shown)
        return 0;
    shown = wanted;
    return 1;
}

}  // namespace

MultiRanges rangesOf(const A2DAxisMulti& axis)
{
    MultiRanges ranges;
    ranges.x = {axis.getMinMax().xMin, axis.getMinMax().xMax};
    for (int i = 0; i < axis.getScaleCount(); ++i)
        ranges.y.push_back(axis.getScale(i).range);
    return ranges;
}

int isLogarithmic(const A2DAxisMulti& axis, int direction)
{
    if (direction == directionX)
        return axis.getXDirect() == 0;
    return direction >= 0 && direction < axis.getScaleCount() &&
           axis.getScale(direction).direct == 0;
}

void MultiView::learn(const MultiRanges& shown)
{
    if (!isSpan(whole_.x))
        whole_.x = shown.x;
    whole_.y.resize(shown.y.size());
    for (std::size_t i = 0; i < shown.y.size(); ++i)
        if (!isSpan(whole_.y[i]))
            whole_.y[i] = shown.y[i];
}

int MultiView::isZoomed(const MultiRanges& shown, int direction, int logarithmic) const
{
    constexpr double all = 1 - 1e-9;
    const TMnMx* const span = spanOf(shown, direction);
    const TMnMx* const whole = spanOf(whole_, direction);
    return span && whole && spanPart(*span, *whole, logarithmic) < all;
}

int MultiView::zoom(MultiRanges& shown, int direction, double at, double factor,
                    int logarithmic) const
{
    TMnMx* const span = spanOf(shown, direction);
    const TMnMx* const whole = spanOf(whole_, direction);
    if (!span || !whole || !(factor > 0) || !std::isfinite(factor) || !std::isfinite(at))
        return 0;
    const TMnMx wanted =
        spanInside(zoomedSpan(*span, at, factor, logarithmic), *whole, logarithmic);
    if (factor > 1 && spanPart(wanted, *whole, logarithmic) < smallestPart)
        return 0;
    return put(*span, wanted);
}

int MultiView::shift(MultiRanges& shown, int direction, double fraction, int logarithmic) const
{
    TMnMx* const span = spanOf(shown, direction);
    const TMnMx* const whole = spanOf(whole_, direction);
    if (!span || !whole || !std::isfinite(fraction))
        return 0;
    return put(*span, spanInside(shiftedSpan(*span, fraction, logarithmic), *whole, logarithmic));
}

int MultiView::choose(MultiRanges& shown, int direction, double a, double b, int logarithmic) const
{
    TMnMx* const span = spanOf(shown, direction);
    const TMnMx* const whole = spanOf(whole_, direction);
    const TMnMx wanted{std::min(a, b), std::max(a, b)};
    if (!span || !whole || !isSpan(wanted) || (logarithmic && !(wanted.min > 0)) ||
        spanPart(wanted, *whole, logarithmic) < smallestPart)
        return 0;
    return put(*span, wanted);
}

int MultiView::showWhole(MultiRanges& shown, int direction) const
{
    TMnMx* const span = spanOf(shown, direction);
    const TMnMx* const whole = spanOf(whole_, direction);
    return span && whole && put(*span, *whole);
}

}  // namespace pavane
