#include "pavane/axes/ranges/RangeView.h"

#include "pavane/axes/ranges/range_steps.h"
#include "tessel/rounding.h"

#include <algorithm>
#include <cmath>

namespace pavane
{

namespace
{

/// The closest look: so many cells of a map across the plot, or this part of a whole range.
constexpr double fewestCells = 2;
constexpr double smallestPart = 1e-9;

TMnMx xOf(const TMinMax& range) { return {range.xMin, range.xMax}; }
TMnMx yOf(const TMinMax& range) { return {range.yMin, range.yMax}; }

void put(TMinMax& range, const TMnMx& x, const TMnMx& y)
{
    range.xMin = x.min;
    range.xMax = x.max;
    range.yMin = y.min;
    range.yMax = y.max;
}

int isSpan(const TMnMx& span) { return span.min < span.max && std::isfinite(span.max - span.min); }

int reachesBeyond(const TMnMx& span, const TMnMx& whole)
{
    const double tremble = 1e-9 * (whole.max - whole.min);
    return isSpan(span) && isSpan(whole) &&
           (span.min < whole.min - tremble || span.max > whole.max + tremble);
}

TMnMx spanBetween(double a, double b) { return {std::min(a, b), std::max(a, b)}; }

}  // namespace

int isShowable(const TMinMax& range) { return isSpan(xOf(range)) && isSpan(yOf(range)); }

TMinMax withPairs(TMinMax range, const TMinMax& pairs)
{
    put(range, xOf(pairs), yOf(pairs));
    return range;
}

int samePairs(const TMinMax& a, const TMinMax& b) { return xOf(a) == xOf(b) && yOf(a) == yOf(b); }

void RangeView::forget() { *this = RangeView(); }

int RangeView::isZoomed(const TMinMax& shown, PlotDirections directions) const
{
    if (!isKnown())
        return 0;
    constexpr double all = 1 - 1e-9;
    return spanPart(xOf(shown), xOf(whole_), directions.x == 0) < all ||
           spanPart(yOf(shown), yOf(whole_), directions.y == 0) < all ||
           reachesBeyond(xOf(shown), xOf(whole_)) || reachesBeyond(yOf(shown), yOf(whole_));
}

int RangeView::isWideEnough(const TMinMax& range, APoint<double> cell,
                            PlotDirections directions) const
{
    const TMnMx x = xOf(range);
    const TMnMx y = yOf(range);
    if (cell.x > 0 && cell.y > 0 && directions.x != 0 && directions.y != 0)
        return x.max - x.min >= fewestCells * cell.x && y.max - y.min >= fewestCells * cell.y;
    return spanPart(x, xOf(whole_), directions.x == 0) >= smallestPart &&
           spanPart(y, yOf(whole_), directions.y == 0) >= smallestPart;
}

int RangeView::zoomed(const TMinMax& shown, APoint<double> at, double factor, APoint<double> cell,
                      PlotDirections directions, TMinMax& range) const
{
    if (!isKnown())
        return 0;
    const int logX = directions.x == 0;
    const int logY = directions.y == 0;
    range = shown;
    put(range, spanInside(zoomedSpan(xOf(shown), at.x, factor, logX), xOf(whole_), logX),
        spanInside(zoomedSpan(yOf(shown), at.y, factor, logY), yOf(whole_), logY));
    return !samePairs(range, shown) && (factor <= 1 || isWideEnough(range, cell, directions));
}

int RangeView::between(const TMinMax& shown, APoint<double> from, APoint<double> to,
                       APoint<double> cell, PlotDirections directions, TMinMax& range) const
{
    if (!isKnown())
        return 0;
    range = shown;
    put(range, spanBetween(from.x, to.x), spanBetween(from.y, to.y));
    return isShowable(range) && !samePairs(range, shown) && isWideEnough(range, cell, directions);
}

TMinMax RangeView::shifted(const TMinMax& shown, double right, double down,
                           PlotDirections directions) const
{
    const int logX = directions.x == 0;
    const int logY = directions.y == 0;
    const double x = directions.x < 0 ? -right : right;
    const double y = directions.y < 0 ? down : -down;
    TMinMax range = shown;
    put(range, spanInside(shiftedSpan(xOf(shown), x, logX), xOf(whole_), logX),
        spanInside(shiftedSpan(yOf(shown), y, logY), yOf(whole_), logY));
    return range;
}

int RangeView::goBack(TMinMax& range)
{
    if (steps_.empty())
        return 0;
    range = steps_.back();
    steps_.pop_back();
    return 1;
}

void RangeView::replaceWhole(const TMinMax& whole)
{
    for (TMinMax& step : steps_)
        put(step, xOf(step) == xOf(whole_) ? xOf(whole) : xOf(step),
            yOf(step) == yOf(whole_) ? yOf(whole) : yOf(step));
    whole_ = whole;
}

int RangeView::beginStep()
{
    const int first = !gesture_;
    gesture_ = 1;
    return first;
}

void RangeView::endGesture()
{
    gesture_ = 0;
    restRight_ = restDown_ = 0;
}

CPoint RangeView::wheelPixels(double right, double down)
{
    restRight_ += right;
    restDown_ += down;
    const CPoint whole(truncated(restRight_), truncated(restDown_));
    restRight_ -= whole.x;
    restDown_ -= whole.y;
    return whole;
}

}  // namespace pavane
