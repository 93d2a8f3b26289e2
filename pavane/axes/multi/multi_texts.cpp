// The texts of a layout of several scales.
#include "pavane/axes/ABAxis.h"
#include "pavane/axes/figure_units.h"
#include "pavane/axes/fitted_text.h"
#include "pavane/axes/multi/MultiLayout.h"
#include "pavane/axes/PlotLayout.h"
#include "pavane/axes/SelectedObject.h"
#include "pavane/resources/axis_messages.h"

#include <algorithm>
#include <limits>
#include <map>
#include <tuple>
#include <utility>

namespace pavane
{
namespace
{

class TextPlacer
{
public:
    TextPlacer(CDC& dc, const MultiWish& wish, MultiLayout& layout)
        : dc_(dc), wish_(wish), out_(layout), h_(layout.fHeight),
          gap_(FigureUnits(dc).ofFont(h_, labelGap)),
          half_(FigureUnits(dc).ofFont(h_, [](int height) { return (height + 1) / 2; }))
    {
    }

    void place()
    {
        CFont font;
        if (!ABAxis::CreateAxisFont(font, h_, 0, 0.0))
            return;
        const SelectedObject<CFont> selected(dc_, font);
        placeYLabels();
        placeYTitles();
        for (const MultiLayout::Panel& panel : out_.panels) {
            if (panel.isLowest)
                placeX(panel);
            placeCaption(panel);
            placeNoData(panel);
        }
    }

private:
    const MultiLayout::Panel& panelOf(const MultiLayout::YAxis& axis) const
    {
        return out_.panels[static_cast<std::size_t>(axis.panel)];
    }

    MultiLayout::Text& add(const CString& text, const CRect& box, MultiPart part, int panel,
                           int scale)
    {
        MultiLayout::Text item;
        item.text = text;
        item.box = box;
        item.part = part;
        item.panel = panel;
        item.scale = scale;
        out_.texts.push_back(item);
        return out_.texts.back();
    }

    void addOfAxis(const MultiLayout::YAxis& axis, const CString& text, const CRect& box,
                   MultiPart part)
    {
        MultiLayout::Text& item = add(text, box, part, panelOf(axis).number, axis.scale);
        item.isTurned = part == MultiPart::title;
        item.color = axis.color;
        item.isColored = axis.isColored;
    }

    /// Labels of one line of axes from the top: one that would touch the one above is left out.
    void placeYLabels()
    {
        std::map<std::tuple<int, int, int>, int> ends;
        for (const MultiLayout::YAxis& axis : out_.axes) {
            const MultiLayout::Panel& panel = panelOf(axis);
            const auto [end, isFirst] = ends.try_emplace({panel.column, axis.isRight, axis.slot},
                                                         std::numeric_limits<int>::min());
            std::vector<std::pair<int, const CString*>> labels;
            for (const TickSet::Tick& tick : axis.ticks.major)
                if (!tick.label.empty())
                    labels.emplace_back(
                        std::clamp(axis.map.yPixel(tick.value, panel.plot.top, panel.plot.bottom),
                                   panel.plot.top, panel.plot.bottom),
                        &tick.label);
            std::sort(labels.begin(), labels.end(),
                      [](const auto& a, const auto& b) { return a.first < b.first; });
            for (const auto& [y, label] : labels) {
                const int top = y - half_;
                if (top < end->second)
                    continue;
                end->second = top + h_;
                const int width = dc_.GetTextExtent(*label).cx;
                const int left = axis.isRight ? axis.line + 1 + gap_ : axis.line - gap_ - width;
                addOfAxis(axis, *label, CRect(left, top, left + width, top + h_), MultiPart::yAxis);
            }
        }
    }

    /// A title that is cut keeps its unit, without which labels are no values.
    CString fittedTitle(const CString& whole, int room) const
    {
        const auto width = [&](const CString& text) { return dc_.GetTextExtent(text).cx; };
        const auto unit = whole.rfind('[');
        if (width(whole) <= room || unit == CString::npos || whole.back() != ']')
            return fittedLine(dc_, whole, room);
        const CString end = whole.substr(unit);
        CString start = fittedLine(dc_, whole.substr(0, unit), room - width(' ' + end));
        while (!start.empty() && start.back() == ' ')
            start.pop_back();
        const CString text = start.empty() ? end : start + ' ' + end;
        return width(text) <= room ? text : fittedLine(dc_, whole, room);
    }

    void placeTitle(const MultiLayout::YAxis& axis, const CString& whole, int top, int bottom,
                    int room, bool isShared)
    {
        const CString title = fittedTitle(whole, room);
        if (title.empty())
            return;
        const int length = dc_.GetTextExtent(title).cx;
        const int left =
            axis.isRight ? axis.line + axis.labelWidth + h_ : axis.line - axis.labelWidth - 2 * h_;
        const int low = (top + bottom + length) / 2;
        addOfAxis(axis, title, CRect(left, low - length, left + h_, low), MultiPart::title);
        if (isShared)
            out_.texts.back().panel = out_.texts.back().scale = -1;
    }

    /// With no panel above or below, whose titles begin where its own ends.
    bool isAlone(const MultiLayout::YAxis& axis) const
    {
        return std::count_if(out_.panels.begin(), out_.panels.end(), [&](const auto& panel) {
                   return panel.column == panelOf(axis).column;
               }) == 1;
    }

    void placeYTitles()
    {
        for (const MultiLayout::YAxis& axis : out_.axes) {
            const CRect& plot = panelOf(axis).plot;
            if (!axis.ticks.title.empty())
                placeTitle(axis, axis.ticks.title, plot.top, plot.bottom,
                           plot.Height() + (isAlone(axis) ? h_ : 0), false);
        }
        for (const MultiLayout::ColumnTitle& shared : out_.titles)
            placeTitle(out_.axes[static_cast<std::size_t>(shared.axis)], shared.text, shared.top,
                       shared.bottom, shared.bottom - shared.top + h_, true);
    }

    /// How far x titles may reach beyond their plots, in each column the same: where its y axes
    /// are, since those of its neighbours may go on further down.
    int besideX() const
    {
        std::map<int, std::pair<int, int>> reach;  // to the left and right, by column
        for (const MultiLayout::YAxis& axis : out_.axes) {
            const MultiLayout::Panel& panel = panelOf(axis);
            auto& [left, right] = reach[panel.column];
            left = std::max(left, panel.plot.left - axis.rect.left);
            right = std::max(right, axis.rect.right - panel.plot.right);
        }
        int most = std::numeric_limits<int>::max();
        for (const MultiLayout::Panel& panel : out_.panels)
            most = std::min({most, reach[panel.column].first, reach[panel.column].second});
        return out_.panels.empty() ? 0 : std::max(0, most - (h_ + 1) / 2);
    }

    void placeX(const MultiLayout::Panel& panel)
    {
        const CRect& plot = panel.plot;
        for (const TickSet::Tick& tick : out_.x.major) {
            if (tick.label.empty())
                continue;
            const int width = dc_.GetTextExtent(tick.label).cx;
            const int centred = out_.xMap.xPixel(tick.value, plot.left, plot.right) - width / 2;
            // Letters of a page may be a part of a pixel wider than those it was laid out with.
            const int left =
                std::max(std::min(centred, out_.picture.right - width), out_.picture.left);
            const int top = plot.bottom + gap_;
            add(tick.label, CRect(left, top, left + width, top + h_), MultiPart::xAxis,
                panel.number, -1);
        }
        const CString title = fittedTitle(out_.x.title, plot.Width() + 2 * besideX());
        if (title.empty())
            return;
        const int width = dc_.GetTextExtent(title).cx;
        const int left = (plot.left + plot.right - width) / 2;
        const int top = plot.bottom + 2 * h_;
        add(title, CRect(left, top, left + width, top + h_), MultiPart::title, panel.number, -1);
    }

    void placeCaption(const MultiLayout::Panel& panel)
    {
        const CRect& plot = panel.plot;
        if (!panel.caption.empty() && panel.captionRoom > 0) {
            const CString over = fittedLine(dc_, panel.caption, plot.Width());
            const int top = plot.top - panel.captionRoom + h_ / 8;
            if (!over.empty())
                add(over, CRect(plot.left, top, plot.left + dc_.GetTextExtent(over).cx, top + h_),
                    MultiPart::gap, panel.number, -1);
            return;
        }
        if (panel.caption.empty() || plot.Height() < h_ + h_ / 2)
            return;
        const CString text = fittedLine(dc_, panel.caption, plot.Width() - h_);
        if (text.empty())
            return;
        const int left = plot.left + h_ / 2;
        const int top = plot.top + h_ / 4;
        add(text, CRect(left, top, left + dc_.GetTextExtent(text).cx, top + h_), MultiPart::plot,
            panel.number, -1)
            .isCaption = 1;
    }

    /// A panel none of whose graphs has a point says so, and one without graphs or ranges.
    void placeNoData(const MultiLayout::Panel& panel)
    {
        const CRect& plot = panel.plot;
        bool isUsed = false;
        bool isRanged = false;
        for (const int index : panel.scales) {
            const MultiWish::Scale& scale = wish_.scales[static_cast<std::size_t>(index)];
            if (scale.hasPoints)
                return;
            isUsed = isUsed || scale.hasGraphs;
            isRanged = isRanged || scale.spec.range.min < scale.spec.range.max;
        }
        if (isRanged && !isUsed)
            return;
        const int width = dc_.GetTextExtent(noData).cx;
        const CPoint centre = plot.CenterPoint();
        const int top = centre.y - h_ / 2;
        const int isInside = !panel.caption.empty() && panel.captionRoom == 0;
        const int captionEnd = isInside ? plot.top + h_ / 4 + h_ : plot.top;
        if (width <= plot.Width() && top >= captionEnd && top + h_ <= plot.bottom)
            add(noData, CRect(centre.x - width / 2, top, centre.x - width / 2 + width, top + h_),
                MultiPart::plot, panel.number, -1);
    }

    CDC& dc_;
    const MultiWish& wish_;
    MultiLayout& out_;
    int h_;
    int gap_;
    int half_;  ///< of a label that stands beside its tick, what lies above
};

}  // namespace

void placeMultiTexts(CDC& dc, const MultiWish& wish, MultiLayout& layout)
{
    layout.texts.clear();
    TextPlacer(dc, wish, layout).place();
}

}  // namespace pavane
