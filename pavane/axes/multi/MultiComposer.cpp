// The order of composing, the header, and the panels from top to bottom.
#include "pavane/axes/multi/MultiComposer.h"
#include "pavane/axes/ABAxis.h"
#include "pavane/axes/figure_units.h"
#include "pavane/axes/fitted_text.h"
#include "pavane/axes/PlotLayout.h"
#include "pavane/axes/SelectedObject.h"
#include "platform/picture.h"
#include "tessel/rounding.h"

#include <algorithm>
#include <utility>

namespace pavane
{
namespace
{

/// Gaps take at most this part of the height, whatever number of panels there is.
constexpr int mostGapPart = 3;
/// With captions in them.
constexpr int mostCaptionPart = 2;

double weightOf(double weight)
{
    constexpr double greatest = 1e6;
    return weight > 0 ? std::min(weight, greatest) : 0;
}

/// Makes the rectangles of a layout in pixels those of a context that is finer.
void makeFiner(const FigureUnits& units, const CRect& rect, MultiLayout& layout)
{
    const CPoint origin = rect.TopLeft();
    layout.picture = rect;
    layout.fHeight = units.units(layout.fHeight);
    layout.headerBox = units.units(layout.headerBox, origin);
    layout.legendBox = units.units(layout.legendBox, origin);
    for (MultiLayout::Panel& panel : layout.panels) {
        panel.plot = units.units(panel.plot, origin);
        panel.captionRoom = units.units(panel.captionRoom);
    }
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

int MultiComposer::compose()
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

void MultiComposer::compose(const CRect& rect, const CFont& font)
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
    choosePowers();
    stackPanels();
    hangAxes();
    chooseX();
    placeColumns();
    placeAxes();
    shareTitles();
}

void MultiComposer::placeHeader()
{
    top_ = out_.picture.top + (h_ + 1) / 2;
    const CRect& rect = out_.picture;
    CFont bold;
    if (!wish_.header.empty() && ABAxis::CreateAxisFont(bold, h_, 1, 0.0)) {
        const SelectedObject<CFont> selected(dc_, bold);
        out_.header = fittedLines(dc_, wish_.header, rect.Width(), rect.Height() / 3);
        CRect box(rect.left, rect.top + h_ / 4, rect.right, rect.top + h_ / 4);
        const int width = box.Width();
        dc_.DrawText(out_.header, box, DT_CENTER | DT_WORDBREAK | DT_NOPREFIX | DT_CALCRECT);
        out_.headerBox = CRect(rect.left, box.top, rect.left + width, box.bottom);
        top_ += h_ / 4 + box.Height();
    }
    if (wish_.legend.empty())
        return;
    const LegendRows rows = legendRows(dc_, wish_.legend, h_, rect.Width() - h_);
    const int height = static_cast<int>(rows.widths.size()) * rows.line;
    if (height > rect.Height() / 4)
        return;
    out_.legendBox = CRect(rect.left, top_, rect.right, top_ + height);
    top_ += height;
}

void MultiComposer::gatherPanels()
{
    for (std::size_t i = 0; i < wish_.scales.size(); ++i) {
        if (!wish_.scales[i].isShown)
            continue;
        Content& content = contents_[wish_.scales[i].spec.panel];
        content.scales.push_back(static_cast<int>(i));
        content.weight = std::max(content.weight, weightOf(wish_.scales[i].spec.weight));
    }
    const bool isWeightless = std::none_of(contents_.begin(), contents_.end(),
                                           [](const auto& item) { return item.second.weight > 0; });
    for (auto& [number, content] : contents_)
        content.weight = isWeightless ? 1 : content.weight;
}

double MultiComposer::panelWeight(long long number) const
{
    const auto found = contents_.find(static_cast<int>(number));
    return found == contents_.end() ? 0 : found->second.weight;
}

double MultiComposer::rowWeight(long long number, int row) const
{
    if (number < wish_.panels())
        return panelWeight(number);
    const double before = panelWeight(row);
    return before > 0 ? before : 1;
}

void MultiComposer::stackPanels()
{
    const int titleHeight = isXTitled_ ? titleRoom(h_) : 0;
    const int belowTicks = wish_.options & axisNoYLabels ? majorTickLength(h_) + 1 : (h_ + 1) / 2;
    const int below = wish_.options & axisNoXLabels ? belowTicks : 2 * h_ + titleHeight;
    const CRect& border = wish_.border;
    bottom_ = out_.picture.bottom - below;
    const int rows = wish_.rowsOfPage();
    const long long begin = 1LL * wish_.page * wish_.panelsOfPage();
    const long long end = std::min<long long>(wish_.panels(), begin + wish_.panelsOfPage());
    findCaptionRooms(begin, end, rows);
    if (border.top != -1)
        top_ = std::max(top_, border.top);
    if (border.bottom != -1)
        bottom_ = std::min(bottom_, out_.picture.bottom - border.bottom);
    for (int c = 0; c < wish_.columns; ++c)
        if (begin + 1LL * c * rows < end)
            stackColumn(c, begin + 1LL * c * rows, rows, end);
}

/// None where panels touch, and where it would take too much: captions stand inside then.
void MultiComposer::findCaptionRooms(long long begin, long long end, int rows)
{
    captionRooms_.assign(static_cast<std::size_t>(rows), 0);
    if (!(wish_.gap > 0))
        return;
    const int room = h_ + h_ / 4;
    int all = 0;
    for (const auto& [number, caption] : wish_.captions) {
        if (number < begin || number >= end)
            continue;
        int& over = captionRooms_[static_cast<std::size_t>((number - begin) % rows)];
        all += room - over;
        over = room;
    }
    const int height = bottom_ - top_;
    if ((all - room) * mostCaptionPart > height)
        captionRooms_.assign(captionRooms_.size(), 0);
    // of the first row in view: rows before it may have no weight
    top_ += *std::max_element(captionRooms_.begin(), captionRooms_.end());
}

void MultiComposer::stackColumn(int column, long long first, int rows, long long end)
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
    const auto gapOver = [&](int row) {
        return std::max(gap, captionRooms_[static_cast<std::size_t>(row)]);
    };
    int gaps = 0;
    for (int r = 0, isBelow = 0; r < rows; ++r)
        if (rowWeight(first + r, r) > 0)
            gaps += std::exchange(isBelow, 1) ? gapOver(r) : 0;
    const double room = std::max(0, height - gaps);
    double above = 0;
    int before = top_;
    for (int r = 0, isBelow = 0; r < rows && first + r < end; ++r) {
        const double weight = rowWeight(first + r, r);
        if (!(weight > 0))
            continue;
        before += std::exchange(isBelow, 1) ? gapOver(r) : 0;
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
        panel.captionRoom = panel.caption.empty() ? 0 : captionRooms_[static_cast<std::size_t>(r)];
        columns_[static_cast<std::size_t>(column)].panels.push_back(out_.panels.size());
        out_.panels.push_back(panel);
    }
    const std::vector<std::size_t>& own = columns_[static_cast<std::size_t>(column)].panels;
    if (!own.empty())
        out_.panels[own.back()].isLowest = 1;
}

int composeMulti(CDC& dc, const CRect& rect, const MultiWish& wish, MultiLayout& layout)
{
    const FigureUnits units(dc);
    if (units.arePixels())
        return MultiComposer(dc, rect, wish, layout).compose();
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
    const int hasRoom = MultiComposer(*ruler.dc(), pixels, inPixels, layout).compose();
    makeFiner(units, rect, layout);
    return hasRoom;
}

LegendRows legendRows(CDC& dc, const std::vector<CString>& names, int fHeight, int width)
{
    LegendRows rows;
    rows.line = fHeight + fHeight / 4;
    rows.sample = 2 * fHeight;
    rows.air = fHeight / 2;
    const int between = fHeight;
    for (const CString& name : names) {
        LegendRows::Entry entry;
        entry.width = rows.sample + rows.air + dc.GetTextExtent(name).cx;
        if (rows.widths.empty() || rows.widths.back() + between + entry.width > width)
            rows.widths.push_back(0);
        else
            entry.left = rows.widths.back() + between;
        entry.row = static_cast<int>(rows.widths.size()) - 1;
        rows.widths.back() = entry.left + entry.width;
        rows.entries.push_back(entry);
    }
    return rows;
}

}  // namespace pavane
