// Where panels, axes and plots of several scales stand.
#include "pavane/axes/ABAxis.h"
#include "pavane/axes/figure_units.h"
#include "pavane/axes/fitted_text.h"
#include "pavane/axes/label_spans.h"
#include "pavane/axes/multi/MultiLayout.h"
#include "pavane/axes/multi/period_ticks.h"
#include "pavane/axes/PlotLayout.h"
#include "pavane/axes/SelectedObject.h"
#include "platform/picture.h"
#include "tessel/rounding.h"

#include <algorithm>
#include <array>
#include <cmath>

namespace pavane
{
namespace
{

/// Gaps take at most this part of the height, whatever number of panels there is.
constexpr int mostGapPart = 3;

double weightOf(double weight)
{
    constexpr double greatest = 1e6;
    return weight > 0 ? std::min(weight, greatest) : 0;
}

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

class Composer
{
public:
    Composer(CDC& dc, const CRect& rect, const MultiWish& wish, MultiLayout& layout)
        : dc_(dc), wish_(wish), out_(layout), h_(wish.fHeight),
          columns_(static_cast<std::size_t>(wish.columns))
    {
        out_ = {};
        out_.picture = rect;
    }

    int compose()
    {
        CFont font;
        if (!ABAxis::CreateAxisFont(font, h_, 0, 0.0))
            return 0;
        const CRect rect = out_.picture;
        isXTitled_ = !xTicks(wish_.x.intervals).title.empty();
        compose(rect, font);
        if (!isXTitled_ && !out_.x.title.empty()) {  // with fewer ticks than were wanted
            isXTitled_ = true;
            compose(rect, font);
        }
        return !out_.panels.empty() && out_.panels[0].plot.right > out_.panels[0].plot.left;
    }

private:
    /// The axes of one side and place of a column: their labels end in one line.
    struct Slot {
        std::vector<std::size_t> axes;
        int width = 0;  ///< of the widest label
        int room = 0;
    };
    struct Column {
        std::vector<std::size_t> panels;
        std::array<std::vector<Slot>, 2> slots;  ///< left and right
        std::array<int, 2> margin{};
    };
    struct Content {
        std::vector<int> scales;
        double weight = 0;
    };

    void compose(const CRect& rect, const CFont& font)
    {
        out_ = {};
        out_.picture = rect;
        out_.fHeight = h_;
        out_.xMap = {wish_.xDirect, wish_.x.range};
        columns_.assign(columns_.size(), {});
        contents_.clear();
        placeHeader();
        const SelectedObject<CFont> selected(dc_, font);
        gatherPanels();
        stackPanels();
        hangAxes();
        chooseX();
        placeColumns();
        placeAxes();
        shareTitles();
    }

    const AYScale& spec(int scale) const
    {
        return wish_.scales[static_cast<std::size_t>(scale)].spec;
    }

    void placeHeader()
    {
        top_ = out_.picture.top + (h_ + 1) / 2;
        CFont bold;
        if (wish_.header.empty() || !ABAxis::CreateAxisFont(bold, h_, 1, 0.0))
            return;
        const SelectedObject<CFont> selected(dc_, bold);
        const CRect& rect = out_.picture;
        out_.header = fittedLines(dc_, wish_.header, rect.Width(), rect.Height() / 3);
        CRect box(rect.left, rect.top + h_ / 4, rect.right, rect.top + h_ / 4);
        const int width = box.Width();
        dc_.DrawText(out_.header, box, DT_CENTER | DT_WORDBREAK | DT_NOPREFIX | DT_CALCRECT);
        out_.headerBox = CRect(rect.left, box.top, rect.left + width, box.bottom);
        top_ += h_ / 4 + box.Height();
    }

    void gatherPanels()
    {
        for (std::size_t i = 0; i < wish_.scales.size(); ++i) {
            if (!wish_.scales[i].isShown)
                continue;
            Content& content = contents_[wish_.scales[i].spec.panel];
            content.scales.push_back(static_cast<int>(i));
            content.weight = std::max(content.weight, weightOf(wish_.scales[i].spec.weight));
        }
        const bool isWeightless =
            std::none_of(contents_.begin(), contents_.end(),
                         [](const auto& item) { return item.second.weight > 0; });
        for (auto& [number, content] : contents_)
            content.weight = isWeightless ? 1 : content.weight;
    }

    double panelWeight(long long number) const
    {
        const auto found = contents_.find(static_cast<int>(number));
        return found == contents_.end() ? 0 : found->second.weight;
    }

    /// Rows of a column that the last panel leaves free keep the room that they have on a full one.
    double rowWeight(long long number, int row) const
    {
        if (number < wish_.panels())
            return panelWeight(number);
        const double before = panelWeight(row);
        return before > 0 ? before : 1;
    }

    void stackPanels()
    {
        const int titleHeight = isXTitled_ ? titleRoom(h_) : 0;
        const int belowTicks =
            wish_.options & axisNoYLabels ? majorTickLength(h_) + 1 : (h_ + 1) / 2;
        const int below = wish_.options & axisNoXLabels ? belowTicks : 2 * h_ + titleHeight;
        const CRect& border = wish_.border;
        bottom_ = out_.picture.bottom - below;
        if (border.top != -1)
            top_ = std::max(top_, border.top);
        if (border.bottom != -1)
            bottom_ = std::min(bottom_, out_.picture.bottom - border.bottom);
        const int rows = wish_.rowsOfPage();
        for (int c = 0; c < wish_.columns; ++c) {
            const long long first = (static_cast<long long>(wish_.page) * wish_.columns + c) * rows;
            if (first < wish_.panels())
                stackColumn(c, first, rows);
        }
    }

    void stackColumn(int column, long long first, int rows)
    {
        double total = 0;
        int stacked = 0;
        for (int r = 0; r < rows; ++r) {
            const double weight = rowWeight(first + r, r);
            total += weight;
            stacked += weight > 0;
        }
        const int height = bottom_ - top_;
        int gap = truncated(std::clamp(wish_.gap, 0.0, 100.0) * h_ + 0.5);
        if (stacked > 1)
            gap = std::min(gap, height / mostGapPart / (stacked - 1));
        const double room = std::max(0, height - gap * std::max(stacked - 1, 0));
        double above = 0;
        int place = 0;
        for (int r = 0; r < rows && first + r < wish_.panels(); ++r) {
            const double weight = rowWeight(first + r, r);
            if (!(weight > 0))
                continue;
            const int before = top_ + place++ * gap;
            MultiLayout::Panel panel;
            panel.plot.top = before + truncated(above / total * room + 0.5);
            above += weight;
            panel.plot.bottom = before + truncated(above / total * room + 0.5);
            if (panel.plot.bottom <= panel.plot.top)
                continue;
            panel.number = static_cast<int>(first + r);
            panel.column = column;
            panel.scales = contents_.at(panel.number).scales;
            const auto caption = wish_.captions.find(panel.number);
            if (caption != wish_.captions.end())
                panel.caption = caption->second;
            columns_[static_cast<std::size_t>(column)].panels.push_back(out_.panels.size());
            out_.panels.push_back(panel);
        }
        const std::vector<std::size_t>& own = columns_[static_cast<std::size_t>(column)].panels;
        if (!own.empty())
            out_.panels[own.back()].isLowest = 1;
    }

    /// Ticks whose labels do not touch in a plot of that height.
    TickSet fittingTicks(const AYScale& scale, int height) const
    {
        TickSet set;
        if (!isSet(scale.range)) {
            set.title = linearTicks(wishOf(scale.name, 0, 1, 1, 1, 2, 1)).title;
            return set;
        }
        const DirectionMap map{scale.direct, scale.range};
        LabelSpans spans;
        const auto tryIntervals = [&](int n) {
            set = ticksOf(scale, n, wish_.options & axisNoMinorTicks);
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
        while (spans.centres.empty() && n < std::min(scale.intervals, mostFlatIntervals))
            tryIntervals(++n);
        thinLabels(set, spans, 0);
        return set;
    }

    /// For every panel of a column the scale in each place of each side.
    static void shareSides(const MultiWish& wish, const MultiLayout::Panel& panel,
                           std::array<std::vector<int>, 2>& sides)
    {
        for (const int scale : panel.scales) {
            const int side = wish.scales[static_cast<std::size_t>(scale)].spec.side;
            const bool isRight = side == 2 || (side != 1 && sides[1].size() < sides[0].size());
            sides[isRight].push_back(scale);
        }
    }

    void hangAxes()
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

    /// False when the column has nothing there, or no room for it.
    bool hangSlot(Column& column, const std::vector<std::array<std::vector<int>, 2>>& sides,
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
        slot.room = wish_.options & axisNoYLabels
                        ? majorTickLength(h_) + 1
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

    TickSet xTicks(int intervals) const
    {
        TickWish wish = wish_.x;
        wish.intervals = intervals;
        if (wish_.xDirect == 2)
            return timeTicks(wish);
        return wish_.xDirect == 0 ? logarithmicTicks(wish) : linearTicks(wish);
    }

    /// What is left of the picture for each plot.
    double plotWidth(double leftLabels, double rightLabels) const
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
    double leftMargin(const Column& column, double labels) const
    {
        return std::max(std::max(1.0 * column.margin[0], h_ / 2 + 1.0), std::ceil(labels));
    }
    double rightMargin(const Column& column, double labels) const
    {
        return std::max(std::max(1.0 * column.margin[1], h_ / 2 + 1.0), std::ceil(labels) + 1);
    }

    /// X ticks whose labels do not touch, and the width of the plots that has all of them inside.
    void chooseX()
    {
        const double gap = h_ * 0.5;
        const double widest = plotWidth(0, 0);
        int n = startIntervals(wish_.x.intervals, truncated(widest), h_);
        LabelSpans spans;
        for (;; n = fewerIntervals(n)) {
            out_.x = xTicks(n);
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
            if (n <= 1 || spans.areApart(gap))
                break;
        }
        thinLabels(out_.x, spans, gap);
        if (wish_.options & axisNoXLabels) {
            out_.x.title.clear();
            for (TickSet::Tick& tick : out_.x.major)
                tick.label.clear();
        }
    }

    /// Narrows the plots until the outermost labels fit beside them.
    void fitPlots(const std::vector<double>& fractions, LabelSpans& spans)
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

    void placeColumns()
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

    void placeAxes()
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

    /// Where a title does not fit its panel and all of the column are the same, one stands for all.
    void shareTitles()
    {
        for (const Column& column : columns_)
            for (const std::vector<Slot>& slots : column.slots)
                for (const Slot& slot : slots)
                    shareTitle(slot);
    }
    void shareTitle(const Slot& slot)
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

    CDC& dc_;
    const MultiWish& wish_;
    MultiLayout& out_;
    int h_;
    std::vector<Column> columns_;
    std::map<int, Content> contents_;  ///< by panel, of the scales that are shown
    bool isXTitled_ = false;
    int top_ = 0, bottom_ = 0;
    double xLeft_ = 0, xRight_ = 0;  ///< what the outermost x labels need beside the plots
};

/// Makes the rectangles of a layout in pixels those of a context that is finer.
void makeFiner(const FigureUnits& units, const CRect& rect, MultiLayout& layout)
{
    const CPoint origin = rect.TopLeft();
    layout.picture = rect;
    layout.fHeight = units.units(layout.fHeight);
    layout.headerBox = units.units(layout.headerBox, origin);
    for (MultiLayout::Panel& panel : layout.panels)
        panel.plot = units.units(panel.plot, origin);
    for (MultiLayout::YAxis& axis : layout.axes) {
        axis.line = origin.x + units.units(axis.line);
        axis.labelWidth = units.units(axis.labelWidth);
        axis.rect = units.units(axis.rect, origin);
    }
    for (MultiLayout::ColumnTitle& title : layout.titles) {
        title.top = origin.y + units.units(title.top);
        title.bottom = origin.y + units.units(title.bottom);
    }
}

}  // namespace

int composeMulti(CDC& dc, const CRect& rect, const MultiWish& wish, MultiLayout& layout)
{
    const FigureUnits units(dc);
    if (units.arePixels())
        return Composer(dc, rect, wish, layout).compose();
    CPicture ruler(1, 1);
    MultiWish inPixels = wish;
    CRect& border = inPixels.border;
    const auto toPixels = [&units](int& length, int origin) {
        if (length != -1)
            length = units.pixels(length - origin);
    };
    toPixels(border.left, rect.left);
    toPixels(border.top, rect.top);
    toPixels(border.right, 0);
    toPixels(border.bottom, 0);
    const CRect pixels(0, 0, units.pixels(rect.Width()), units.pixels(rect.Height()));
    const int hasRoom = Composer(*ruler.dc(), pixels, inPixels, layout).compose();
    makeFiner(units, rect, layout);
    return hasRoom;
}

}  // namespace pavane
