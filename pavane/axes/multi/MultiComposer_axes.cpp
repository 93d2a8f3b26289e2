// Which scales stand on which side, their ticks and their titles.
#include "pavane/axes/axis_options.h"
#include "pavane/axes/axis_titles.h"
#include "pavane/axes/multi/MultiComposer.h"
#include "pavane/axes/multi/period_ticks.h"
#include "pavane/axes/PlotLayout.h"
#include "pavane/axes/ranges/decimal_power.h"
#include "pavane/axes/ranges/ticks.h"
#include "platform/CDC.h"
#include "tessel/value_text.h"

#include <algorithm>
#include <cmath>

namespace pavane
{
namespace
{

TickSet ticksOf(const AYScale& scale, int intervals, int withoutMinor)
{
    const TickWish wish = wishOf(scale.name, scale.range.min, scale.range.max, intervals,
                                 scale.nPlus, scale.nMinus, withoutMinor);
    if (scale.direct == 0)
        return logarithmicTicks(wish);
    return scale.period > 0 && std::isfinite(scale.period) ? periodTicks(wish, scale.period)
                                                           : linearTicks(wish);
}

int isSet(const TMnMx& range) { return range.min < range.max; }

/// Decimals that write every multiple of `step`.
int decimalsOf(double step, int most)
{
    int decimals = 0;
    constexpr double rounding = 1e-6;
    for (double scaled = std::fabs(step); decimals < most; ++decimals, scaled *= 10)
        if (std::fabs(scaled - std::round(scaled)) <= rounding * scaled)
            break;
    return decimals;
}

/// The same ticks with another prefix; as they are where that would take too many digits.
void relabel(TickSet& set, const CString& name, int power)
{
    constexpr int mostDecimals = 3;
    const double divisor = powerOfTen(power);
    int decimals = 0;
    for (const TickSet::Tick& tick : set.major)
        decimals = std::max(decimals, decimalsOf(tick.value / divisor, mostDecimals + 1));
    if (decimals > mostDecimals)
        return;
    for (TickSet::Tick& tick : set.major)
        tick.label = nValToStr(tick.value / divisor, decimals);
    set.title = withPrefix(name, prefixText(power));
}

}  // namespace

void MultiComposer::choosePowers()
{
    struct Named {
        int count = 0;
        double greatest = 0;
    };
    std::map<CString, Named> names;
    for (const MultiWish::Scale& scale : wish_.scales) {
        const AYScale& of = scale.spec;
        if (!scale.isShown || of.direct == 0 || !hasPrefixMarker(of.name))
            continue;
        Named& named = names[of.name];
        ++named.count;
        if (isSet(of.range))
            named.greatest =
                std::max({named.greatest, std::fabs(of.range.min), std::fabs(of.range.max)});
    }
    powers_.clear();
    for (const auto& [name, named] : names) {
        if (named.count < 2 || !(named.greatest > 0) || !std::isfinite(named.greatest))
            continue;
        double low = 0, high = named.greatest, first = 0, step = 0;
        int intervals = 4, nPlus = 1, nMinus = 2, power = 0;
        (void)chooseTicks(low, high, intervals, nPlus, nMinus, first, step, power, 1);
        powers_[name] = power;
    }
}

TickSet MultiComposer::fittingTicks(const AYScale& scale, int height) const
{
    TickSet set;
    const auto shared = scale.direct == 0 ? powers_.end() : powers_.find(scale.name);
    if (!isSet(scale.range)) {
        set.title = linearTicks(wishOf(scale.name, 0, 1, 1, 1, 2, 1)).title;
        if (shared != powers_.end())
            set.title = withPrefix(scale.name, prefixText(shared->second));
        return set;
    }
    const DirectionMap map{scale.direct, scale.range};
    LabelSpans spans;
    const auto tryIntervals = [&](int n) {
        set = ticksOf(scale, n, wish_.options & axisNoMinorTicks);
        if (shared != powers_.end())
            relabel(set, scale.name, shared->second);
        spans = {};
        for (const TickSet::Tick& tick : set.major) {
            if (tick.label.empty())
                continue;
            spans.centres.push_back(map.fraction(tick.value) * height);
            spans.lengths.push_back(h_);
        }
    };
    int n = startIntervals(scale.intervals, height, h_);
    for (tryIntervals(n); n > 1 && !spans.areApart(0); tryIntervals(n))
        n = fewerIntervals(n);
    thinLabels(set, spans, 0);
    // one label tells no scale: finer ticks, of which thinned out labels are left
    TickSet best = set;
    const int wanted = height > h_ ? leastLabels : 1;
    while (countLabels(best) < wanted && n < mostFlatIntervals) {
        tryIntervals(++n);
        thinLabels(set, spans, 0);
        if (countLabels(set) > countLabels(best))
            best = set;
    }
    return best;
}

void MultiComposer::shareSides(const MultiWish& wish, const MultiLayout::Panel& panel,
                               std::array<std::vector<int>, 2>& sides)
{
    for (const int scale : panel.scales) {
        const int side = wish.scales[static_cast<std::size_t>(scale)].spec.side;
        const bool isRight = side == 2 || (side != 1 && sides[1].size() < sides[0].size());
        sides[isRight].push_back(scale);
    }
}

void MultiComposer::hangAxes()
{
    for (Column& column : columns_) {
        std::vector<std::array<std::vector<int>, 2>> sides(column.panels.size());
        for (std::size_t p = 0; p < column.panels.size(); ++p)
            shareSides(wish_, out_.panels[column.panels[p]], sides[p]);
        std::array<bool, 2> isOpen{true, true};
        int rooms = 0;
        for (std::size_t place = 0; isOpen[0] || isOpen[1]; ++place)
            for (const std::size_t side : {std::size_t{0}, std::size_t{1}})
                isOpen[side] = isOpen[side] && hangSlot(column, sides, side, place, rooms);
        for (const std::size_t side : {std::size_t{0}, std::size_t{1}})
            for (const Slot& slot : column.slots[side])
                column.margin[side] += slot.room;
    }
}

bool MultiComposer::hangSlot(Column& column,
                             const std::vector<std::array<std::vector<int>, 2>>& sides,
                             std::size_t side, std::size_t place, int& rooms)
{
    Slot slot;
    std::vector<MultiLayout::YAxis> axes;
    bool isTitled = false;
    for (std::size_t p = 0; p < column.panels.size(); ++p) {
        if (place >= sides[p][side].size())
            continue;
        const int scale = sides[p][side][place];
        const MultiLayout::Panel& panel = out_.panels[column.panels[p]];
        MultiLayout::YAxis axis;
        axis.scale = scale;
        axis.panel = static_cast<int>(column.panels[p]);
        axis.isRight = side == 1;
        axis.slot = static_cast<int>(place);
        axis.map = {spec(scale).direct, spec(scale).range};
        axis.ticks = fittingTicks(spec(scale), panel.plot.Height());
        axis.color = wish_.scales[static_cast<std::size_t>(scale)].color;
        axis.isColored = wish_.scales[static_cast<std::size_t>(scale)].isColored;
        if (wish_.options & axisNoYLabels) {
            axis.ticks.title.clear();
            for (TickSet::Tick& tick : axis.ticks.major)
                tick.label.clear();
        }
        for (const TickSet::Tick& tick : axis.ticks.major)
            slot.width = std::max(slot.width, dc_.GetTextExtent(tick.label).cx);
        isTitled = isTitled || !axis.ticks.title.empty();
        axes.push_back(std::move(axis));
    }
    if (axes.empty())
        return false;
    slot.room = wish_.options & axisNoYLabels ? majorTickLength(h_) + 1
                                              : slot.width + h_ + (isTitled ? titleRoom(h_) : 0);
    const int width = out_.picture.Width() / wish_.columns;
    if (place > 0 && rooms + slot.room > width / 2)
        return false;
    rooms += slot.room;
    for (MultiLayout::YAxis& axis : axes) {
        slot.axes.push_back(out_.axes.size());
        axis.labelWidth = slot.width;
        out_.panels[static_cast<std::size_t>(axis.panel)].axes.push_back(
            static_cast<int>(out_.axes.size()));
        out_.axes.push_back(std::move(axis));
    }
    column.slots[side].push_back(std::move(slot));
    return true;
}

void MultiComposer::placeAxes()
{
    for (Column& column : columns_)
        for (const std::size_t side : {std::size_t{0}, std::size_t{1}}) {
            int offset = 0;
            for (const Slot& slot : column.slots[side]) {
                for (const std::size_t a : slot.axes) {
                    MultiLayout::YAxis& axis = out_.axes[a];
                    const CRect& plot = out_.panels[static_cast<std::size_t>(axis.panel)].plot;
                    axis.line = side == 0 ? plot.left - offset : plot.right + offset;
                    axis.rect = side == 0 ? CRect(axis.line - slot.room, plot.top, axis.line,
                                                  plot.bottom + 1)
                                          : CRect(axis.line + 1, plot.top,
                                                  axis.line + slot.room + 1, plot.bottom + 1);
                }
                offset += slot.room;
            }
        }
}

void MultiComposer::shareTitles()
{
    for (const Column& column : columns_)
        for (const std::vector<Slot>& slots : column.slots)
            for (const Slot& slot : slots)
                shareTitle(slot);
}

void MultiComposer::shareTitle(const Slot& slot)
{
    const CString title = out_.axes[slot.axes[0]].ticks.title;
    const int length = dc_.GetTextExtent(title).cx;
    bool isTooLong = false;
    for (const std::size_t a : slot.axes) {
        const MultiLayout::YAxis& axis = out_.axes[a];
        if (axis.ticks.title != title)
            return;
        const CRect& plot = out_.panels[static_cast<std::size_t>(axis.panel)].plot;
        isTooLong = isTooLong || length > plot.Height();
    }
    if (slot.axes.size() < 2 || !isTooLong || title.empty())
        return;
    MultiLayout::ColumnTitle shared;
    shared.axis = static_cast<int>(slot.axes[0]);
    shared.text = title;
    const auto plotOf = [&](std::size_t a) {
        return out_.panels[static_cast<std::size_t>(out_.axes[a].panel)].plot;
    };
    shared.top = plotOf(slot.axes.front()).top;
    shared.bottom = plotOf(slot.axes.back()).bottom;
    for (const std::size_t a : slot.axes)
        out_.axes[a].ticks.title.clear();
    out_.titles.push_back(shared);
}

}  // namespace pavane
