#include "pavane/axes/maps/ChannelMaps.h"

#include "pavane/axes/figure_units.h"
#include "pavane/axes/maps/AAxisColorOP.h"
#include "pavane/axes/maps/ALevelsColorGraph.h"
#include "pavane/axes/maps/map_titles.h"
#include "pavane/axes/maps/MapPicture.h"

#include <algorithm>

namespace pavane
{

namespace
{

constexpr int mostInGrid = 100;
/// Cells that are kept in memory: 256 MiB of them.
constexpr std::int64_t mostCellsKept = std::int64_t{1} << 26;
// pixels of 96 per inch
constexpr int panelGap = 6;
constexpr int barGap = 14;
constexpr int tallestLabel = 15;
constexpr int lowestLabel = 7;
/// The labels of the bar are this part of the page's width high.
constexpr int labelPart = 75;

void widen(MapRange& all, const MapRange& one)
{
    if (one.isEmpty())
        return;
    const bool first = all.isEmpty();
    all.least = first ? one.least : std::min(all.least, one.least);
    all.greatest = first ? one.greatest : std::max(all.greatest, one.greatest);
}

/// The middle one by width.
MapNoise middleNoise(std::vector<MapNoise> noises)
{
    std::erase_if(noises, [](const MapNoise& n) { return n.finiteCells < 1; });
    if (noises.empty())
        return {};
    const auto middle = noises.begin() + static_cast<std::ptrdiff_t>(noises.size() / 2);
    std::nth_element(noises.begin(), middle, noises.end(),
                     [](const MapNoise& a, const MapNoise& b) { return a.sigma < b.sigma; });
    return *middle;
}

}  // namespace

/// A plane as it is drawn.
struct ChannelMaps::Shown {
    std::unique_ptr<MapContent> read;
    const MapContent* content = nullptr;
    MapPicture picture;
};

ChannelMaps::ChannelMaps() = default;

ChannelMaps::~ChannelMaps() = default;

int ChannelMaps::open(const CString& fitsFile, const std::vector<int>& planes, CString& error,
                      const ProgressFunction& progress)
{
    file_ = fitsFile;
    planes_.clear();
    range_ = {};
    std::vector<MapNoise> noises;
    std::int64_t cells = 0;
    for (const int number : planes) {
        auto content = std::make_unique<MapContent>();
        const auto part = [&](double done) {
            const auto read = static_cast<double>(planes_.size());
            return !progress || progress((read + done) / static_cast<double>(planes.size()));
        };
        if (!readMapContent(fitsFile, number, *content, error, part)) {
            planes_.clear();
            return 0;
        }
        if (planes_.empty())
            header_ = content->map.header;
        widen(range_, content->range);
        noises.push_back(content->noise);
        cells += content->map.cells.cells();
        Plane& plane = planes_.emplace_back();
        plane.number = number;
        plane.range = content->range;
        if (cells <= mostCellsKept)
            plane.content = std::move(content);
    }
    if (planes_.empty()) {
        error = "There are no planes to show";
        return 0;
    }
    noise_ = middleNoise(std::move(noises));
    return 1;
}

TMnMx ChannelMaps::range() const
{
    if (asked_.min < asked_.max)
        return asked_;
    return range_.isEmpty() ? TMnMx() : TMnMx{range_.least, range_.greatest};
}

void ChannelMaps::setGrid(int rows, int columns)
{
    rows_ = std::clamp(rows, 1, mostInGrid);
    columns_ = std::clamp(columns, 1, mostInGrid);
}

int ChannelMaps::pages() const
{
    const int onPage = rows_ * columns_;
    return std::max(1, (count() + onPage - 1) / onPage);
}

/// 0 when the plane cannot be read any more.
int ChannelMaps::show(const Plane& plane, Shown& shown) const
{
    shown.content = plane.content.get();
    if (!shown.content) {
        shown.read = std::make_unique<MapContent>();
        CString error;
        if (!readMapContent(file_, plane.number, *shown.read, error))
            return 0;
        shown.content = shown.read.get();
    }
    MapPicture& picture = shown.picture;
    const MapContent& content = *shown.content;
    picture.show(content);
    ALevelsColorGraph& graph = picture.graph();
    if (!content.range.isEmpty()) {
        MapRange common = content.range;
        common.least = range_.least;
        common.greatest = range_.greatest;
        graph.setStatistics(common, noise_);
    }
    TMinMax centres = graph.centres();
    const TMnMx colors = range();
    if (colors.min < colors.max) {
        centres.zMin = colors.min;
        centres.zMax = colors.max;
    }
    graph.setCentres(centres);
    const CString text = mapPlaneText(content.map.header);
    graph.setHeaderText(0, text);
    if (prepare_)
        prepare_(picture, content.map.header.plane);
    if (graph.scale().kind() == MapScaleKind::equalized)
        graph.setScale(MapScaleKind::linear);
    picture.figure().setBar(nullptr);
    return 1;
}

/// Where map `index` stands when all of a page take `size` each, from the corner of `rect` on.
CRect ChannelMaps::panelRect(const CDC& dc, const CRect& rect, CSize size, int index) const
{
    const int gap = unitsOf(dc, panelGap);
    const int left = rect.left + index % columns_ * (size.cx + gap);
    const int top = rect.top + index / columns_ * (size.cy + gap);
    return {left, top, left + size.cx, top + size.cy};
}

/// What a map takes of its share of `rect`: maps of square cells leave the rest to the page.
CSize ChannelMaps::panelSize(CDC& dc, const CRect& rect, Shown* shown) const
{
    const FigureUnits units(dc);
    const int gap = units.units(panelGap);
    CSize size{std::max(0, (rect.Width() - (columns_ - 1) * gap) / columns_),
               std::max(0, (rect.Height() - (rows_ - 1) * gap) / rows_)};
    if (!shown)
        return size;
    const FigureLayout layout = shown->picture.figure().layOut(dc, CRect(0, 0, size.cx, size.cy));
    if (layout.isEmpty())
        return size;
    const CRect& margins = layout.margins;
    return {std::min(size.cx, layout.plot.Width() + units.units(margins.left + margins.right)),
            std::min(size.cy, layout.plot.Height() + units.units(margins.top + margins.bottom))};
}

int ChannelMaps::draw(CDC& dc, const CRect& rect, int page)
{
    const int onPage = rows_ * columns_;
    const int first = (std::clamp(page, 1, pages()) - 1) * onPage;
    const int shown = std::min(onPage, count() - first);
    if (page < 1 || page > pages() || shown < 1 || rect.IsRectEmpty())
        return page >= 1 && page <= pages();
    const FigureUnits units(dc);
    const int label =
        units.units(std::clamp(units.pixels(rect.Width()) / labelPart, lowestLabel, tallestLabel));
    const int gap = unitsOf(dc, barGap);
    // the bar is that of the first map with data
    int barAt = 0;
    while (barAt < shown && planes_[static_cast<std::size_t>(first + barAt)].range.isEmpty())
        ++barAt;
    Shown explained;
    CRect panels = rect;
    if (barAt < shown && show(planes_[static_cast<std::size_t>(first + barAt)], explained)) {
        explained.picture.bar().setFHeight(label);
        const int breadth = explained.picture.bar().neededBreadth(dc, rect.Height()) + gap;
        if (breadth < rect.Width() / 3)
            panels.right = rect.right - breadth;
    }
    const CSize size = panelSize(dc, panels, barAt < shown ? &explained : nullptr);
    int complete = 1;
    for (int i = 0; i < shown; ++i) {
        Shown other;
        Shown& now = i == barAt ? explained : other;
        if (i != barAt)
            (void)show(planes_[static_cast<std::size_t>(first + i)], other);
        if (!now.content) {
            complete = 0;
            continue;
        }
        const CRect panel = panelRect(dc, panels, size, i);
        const FigureLayout layout = now.picture.figure().layOut(dc, panel);
        now.picture.figure().draw(dc, layout);
        if (i != barAt || panels.right == rect.right || layout.isEmpty())
            continue;
        // beside the plots of all rows that are filled
        const int left = panelRect(dc, panels, size, columns_ - 1).right + gap;
        const int above = panel.top - rect.top;
        const int below = panelRect(dc, panels, size, shown - 1).top - panel.top;
        CRect bar(left, layout.plot.top - above, left + rect.right - panels.right - gap,
                  layout.plot.bottom + below);
        now.picture.bar().setFHeight(label);
        now.picture.bar().draw(dc, bar);
    }
    return complete;
}

}  // namespace pavane
