// X ticks, and how wide the plots are.
#include "pavane/axes/axis_options.h"
#include "pavane/axes/axis_titles.h"
#include "pavane/axes/multi/MultiComposer.h"
#include "pavane/axes/ranges/decimal_power.h"
#include "pavane/axes/ranges/ticks.h"
#include "platform/CDC.h"
#include "tessel/rounding.h"
#include "tessel/value_text.h"

#include <algorithm>
#include <cmath>

namespace pavane
{

namespace
{

CString plainTitle(const CString& name)
{
    return hasPrefixMarker(name) ? withPrefix(name, {}) : withMultiplier(name, {});
}

/// Ticks at whole numbers alone, and no power of ten in the title.
TickSet wholeTicks(const TickWish& wish)
{
    TickSet set;
    set.title = plainTitle(wish.name);
    constexpr int factors[] = {1, 2, 5};
    constexpr double farthest = 1e15;  // whole numbers that a double tells apart
    const double span = wish.range.max - wish.range.min;
    if (!(std::fabs(wish.range.min) < farthest && std::fabs(wish.range.max) < farthest))
        return set;
    double step = 1;
    int factor = 1;
    for (int i = 0; span > step * (std::max(wish.intervals, 1) + tickAllowance); ++i) {
        const int decade = (i + 1) / 3;
        factor = factors[(i + 1) % 3];
        step = factor * powerOfTen(decade);
    }
    const double minor = step == 1 ? 1 : step == 2 ? 1 : factor == 2 ? step / 4 : step / 5;
    const double parts = step / minor;
    double k = std::ceil(wish.range.min / minor - tickAllowance);
    while (k <= wish.range.max / minor + tickAllowance) {
        if (std::fmod(k, parts) == 0)
            set.major.push_back({k * minor, nValToStr(k * minor + 0.0, 0)});
        else if (wish.minor)
            set.minor.push_back(k * minor);
        ++k;
    }
    return set;
}

}  // namespace

TickSet MultiComposer::xTicks(int intervals) const
{
    if (!(wish_.x.range.min < wish_.x.range.max)) {
        TickSet none;
        none.title = plainTitle(wish_.x.name);
        return none;
    }
    TickWish wish = wish_.x;
    wish.intervals = intervals;
    if (wish_.xDirect == 2)
        return timeTicks(wish);
    if (wish_.isXWhole && wish_.xDirect != 0)
        return wholeTicks(wish);
    return wish_.xDirect == 0 ? logarithmicTicks(wish) : linearTicks(wish);
}

double MultiComposer::plotWidth(double leftLabels, double rightLabels) const
{
    double margins = 0;
    for (const Column& column : columns_)
        margins += leftMargin(column, leftLabels) + rightMargin(column, rightLabels);
    const CRect& border = wish_.border;
    if (border.left != -1)
        margins += std::max(0.0, border.left - out_.picture.left -
                                     leftMargin(columns_.front(), leftLabels));
    if (border.right != -1)
        margins += std::max(0.0, border.right - rightMargin(columns_.back(), rightLabels));
    return (out_.picture.Width() - margins) / wish_.columns;
}

double MultiComposer::leftMargin(const Column& column, double labels) const
{
    const int least = h_ / 2 + 1;
    return std::max<double>(std::max<double>(column.margin[0], least), std::ceil(labels));
}

double MultiComposer::rightMargin(const Column& column, double labels) const
{
    const int between = wish_.columns > 1 ? h_ / 4 : 0;  // labels of neighbours do not meet
    const int least = h_ / 2 + 1;
    return std::max<double>(std::max<double>(column.margin[1], least),
                            std::ceil(labels) + 1 + between);
}

void MultiComposer::chooseX()
{
    const double gap = h_ * 0.5;
    const double widest = plotWidth(0, 0);
    int n = startIntervals(wish_.x.intervals, truncated(widest), h_);
    LabelSpans spans;
    const auto tryIntervals = [&](int intervals) {
        out_.x = xTicks(intervals);
        spans = {};
        std::vector<double> fractions;
        for (const TickSet::Tick& tick : out_.x.major) {
            if (tick.label.empty())
                continue;
            const double along = out_.xMap.fraction(tick.value);
            fractions.push_back(wish_.xDirect < 0 ? 1 - along : along);
            spans.lengths.push_back(dc_.GetTextExtent(tick.label).cx);
        }
        fitPlots(fractions, spans);
    };
    for (tryIntervals(n); n > 1 && !spans.areApart(gap); tryIntervals(n))
        n = fewerIntervals(n);
    thinLabels(out_.x, spans, gap);
    // one label tells no scale: finer ticks, of which thinned out labels are left
    const int coarse = n;
    while (countLabels(out_.x) < leastLabels && n < mostFlatIntervals) {
        tryIntervals(++n);
        thinLabels(out_.x, spans, gap);
    }
    if (countLabels(out_.x) < leastLabels && n > coarse) {
        tryIntervals(coarse);
        thinLabels(out_.x, spans, gap);
    }
    if (wish_.options & axisNoXLabels) {
        out_.x.title.clear();
        for (TickSet::Tick& tick : out_.x.major)
            tick.label.clear();
    }
}

void MultiComposer::fitPlots(const std::vector<double>& fractions, LabelSpans& spans)
{
    xLeft_ = xRight_ = 0;
    constexpr int mostRounds = 8;
    for (int round = 0; round < mostRounds; ++round) {
        const double width = plotWidth(xLeft_, xRight_);
        double left = xLeft_;
        double right = xRight_;
        for (std::size_t i = 0; i < fractions.size() && !(wish_.options & axisNoXLabels); ++i) {
            left = std::max(left, spans.lengths[i] * 0.5 - fractions[i] * width);
            right = std::max(right, spans.lengths[i] * 0.5 - (1 - fractions[i]) * width);
        }
        if (left == xLeft_ && right == xRight_)
            break;
        xLeft_ = std::ceil(left);
        xRight_ = std::ceil(right);
    }
    const double width = plotWidth(xLeft_, xRight_);
    spans.centres.clear();
    for (const double fraction : fractions)
        spans.centres.push_back(fraction * width);
}

void MultiComposer::placeColumns()
{
    const double width = plotWidth(xLeft_, xRight_);
    double x = out_.picture.left;
    for (std::size_t c = 0; c < columns_.size(); ++c) {
        x += leftMargin(columns_[c], xLeft_);
        if (c == 0 && wish_.border.left != -1)
            x = std::max(x, 1.0 * wish_.border.left);
        for (const std::size_t p : columns_[c].panels) {
            out_.panels[p].plot.left = truncated(std::ceil(x));
            out_.panels[p].plot.right = truncated(x + width);
        }
        x += width + rightMargin(columns_[c], xRight_);
    }
}

}  // namespace pavane
