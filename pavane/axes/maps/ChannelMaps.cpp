#include "pavane/axes/maps/ChannelMaps.h"

#include "pavane/axes/A2DAxis.h"
#include "pavane/axes/figure_units.h"
#include "pavane/axes/maps/AAxisColorOP.h"
#include "pavane/axes/maps/ALevelsColorGraph.h"
#include "pavane/axes/maps/map_titles.h"
#include "pavane/axes/maps/MapPicture.h"
#include "platform/CDC.h"
#include "tessel/rounding.h"

#include <algorithm>

namespace pavane
{

namespace
{

constexpr int mostInGrid = 100;
/// Cells that are kept in memory: 256 MiB of them.
constexpr std::int64_t mostCellsKept = std::int64_t{1} << 26;
// pixels of 96 per inch
constexpr int barGap = 14;
/// The labels of a large figure. Those of panels are lower, and on a page all strokes are thinner
/// with them.
constexpr int usualLabel = 20;
/// 5 points without the air above and below the letters.
constexpr int lowestLabel = 8;
constexpr int tallestLabel = 16;
/// Labels are these parts of the page's width and of a panel high, whichever is less.
constexpr int labelPart = 75;
constexpr int labelPartOfPanel = 10;
/// Panels too small for the lowest labels have lower ones, this part of a panel high.
constexpr int greatestPart = 8;
/// Strokes are thinned down to 0.1 mm.
constexpr double leastScale = 0.4;

void widen(MapRange& all, const MapRange& one)
{
    if (one.isEmpty())
        return;
    const bool first = all.isEmpty();
    all.least = first ? one.least : std::min(all.least, one.least);
    all.greatest = first ? one.greatest : std::max(all.greatest, one.greatest);
}

/// A rectangle of a context with lengths in it `scale` times as long, while this lives.
class ScaledSheet
{
public:
    ScaledSheet(CDC& dc, const CRect& rect, double scale)
        : dc_(dc), saved_(dc.SaveDC()),
          rect_(0, 0, truncated(rect.Width() / scale), truncated(rect.Height() / scale))
    {
        constexpr int steps = 1 << 16;
        CPoint points[] = {{0, 0}, {steps, steps}, rect.TopLeft()};
        dc.LPtoDP(points, 3);
        dc.SetMapMode(MM_ANISOTROPIC);
        (void)dc.SetWindowOrg(0, 0);
        (void)dc.SetViewportOrg(points[2].x, points[2].y);
        (void)dc.SetWindowExt(steps, steps);
        (void)dc.SetViewportExt(truncated((points[1].x - points[0].x) * scale),
                                truncated((points[1].y - points[0].y) * scale));
    }
    ScaledSheet(const ScaledSheet&) = delete;
    ScaledSheet& operator=(const ScaledSheet&) = delete;
    ~ScaledSheet() { (void)dc_.RestoreDC(saved_); }
    const CRect& rect() const { return rect_; }

private:
    CDC& dc_;
    int saved_;
    CRect rect_;
};

/// Makes a figure one of many, with labels at the sides that have no neighbour.
void makePanel(MapPicture& picture, int label, bool below, bool left)
{
    picture.figure().setPanel(1);
    picture.axis().setWantedFHeight(label);
    picture.axis().setFlag(axisNoXLabels, !below);
    picture.axis().setFlag(axisNoYLabels, !left);
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

/// Where the panels of a page lie, in pixels of 96 per inch: plots of one size, and around them
/// what inner panels need and those with labels.
struct ChannelMaps::Panels {
    int shown = 0, columns = 1;
    int label = 0;
    CSize plot;
    CRect inner;
    int left = 0, below = 0;  ///< margins with labels

    bool isFirst(int index) const { return index % columns == 0; }
    bool isLowest(int index) const { return index + columns >= shown; }
    CRect margins(int index) const
    {
        return {isFirst(index) ? left : inner.left, inner.top, inner.right,
                isLowest(index) ? below : inner.bottom};
    }
    CRect plotRect(int index) const
    {
        const int x = left + index % columns * (plot.cx + inner.left + inner.right);
        const int y = inner.top + index / columns * (plot.cy + inner.top + inner.bottom);
        return {x, y, x + plot.cx, y + plot.cy};
    }
    CRect rect(int index) const
    {
        const CRect around = margins(index);
        const CRect plot = plotRect(index);
        return {plot.left - around.left, plot.top - around.top, plot.right + around.right,
                plot.bottom + around.bottom};
    }
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

/// Maps of square cells leave the rest of their share of `room` to the page.
void ChannelMaps::placePanels(CDC& dc, CSize room, Shown& like, Panels& panels) const
{
    const FigureUnits units(dc);
    const MapFigure& figure = like.picture.figure();
    const auto marginsOf = [&](bool below, bool left) {
        makePanel(like.picture, panels.label, below, left);
        const CRect share(0, 0, units.units(room.cx / columns_), units.units(room.cy / rows_));
        return figure.layOut(dc, share).margins;
    };
    panels.left = marginsOf(true, true).left;
    panels.inner = marginsOf(true, false);  // its labels reach over its sides
    panels.below = panels.inner.bottom;
    panels.inner.bottom = marginsOf(false, false).bottom;
    const CRect& inner = panels.inner;
    const int across =
        room.cx - panels.left - inner.right - (columns_ - 1) * (inner.left + inner.right);
    const int down = room.cy - panels.below - inner.top - (rows_ - 1) * (inner.top + inner.bottom);
    panels.plot = CSize{std::max(0, across / columns_), std::max(0, down / rows_)};
    const CRect all = panels.rect(0);
    const CRect margins = panels.margins(0);
    makePanel(like.picture, panels.label, panels.isLowest(0), true);
    const FigureLayout layout = figure.layOut(
        dc, CRect(0, 0, units.units(all.Width()), units.units(all.Height())), &margins);
    panels.plot = CSize{std::clamp(units.pixels(layout.plot.Width()), 0, panels.plot.cx),
                        std::clamp(units.pixels(layout.plot.Height()), 0, panels.plot.cy)};
}

int ChannelMaps::draw(CDC& dc, const CRect& rect, int page)
{
    const int onPage = rows_ * columns_;
    const int first = (std::clamp(page, 1, pages()) - 1) * onPage;
    Panels panels;
    panels.columns = columns_;
    panels.shown = std::min(onPage, count() - first);
    if (page < 1 || page > pages() || panels.shown < 1 || rect.IsRectEmpty())
        return page >= 1 && page <= pages();
    const FigureUnits units(dc);
    const int width = units.pixels(rect.Width());
    const int share = std::min(width / columns_, units.pixels(rect.Height()) / rows_);
    const int fitting = std::min(width / labelPart, share / labelPartOfPanel);
    const int label =
        std::min(std::clamp(fitting, lowestLabel, tallestLabel), std::max(1, share / greatestPart));
    // strokes of a screen are a pixel wide already
    const double scale =
        isPage(dc) ? std::max(leastScale, static_cast<double>(label) / usualLabel) : 1;
    panels.label = std::max(1, truncated(label / scale + 0.5));
    const ScaledSheet sheet(dc, rect, scale);
    const int labelUnits = units.units(panels.label);
    const int gap = unitsOf(dc, barGap);
    // the bar is that of the first map with data
    int barAt = 0;
    while (
        barAt < panels.shown &&
        planes_[static_cast<std::size_t>(first) + static_cast<std::size_t>(barAt)].range.isEmpty())
        ++barAt;
    const bool hasData = barAt < panels.shown;
    const int likeAt = hasData ? barAt : 0;
    Shown like;
    (void)show(planes_[static_cast<std::size_t>(first) + static_cast<std::size_t>(likeAt)], like);
    int breadth = 0;
    if (like.content && hasData) {
        like.picture.bar().setFHeight(labelUnits);
        breadth = like.picture.bar().neededBreadth(dc, sheet.rect().Height()) + gap;
        if (breadth >= sheet.rect().Width() / 3)
            breadth = 0;
    }
    const CSize room{units.pixels(sheet.rect().Width() - breadth),
                     units.pixels(sheet.rect().Height())};
    panels.plot = CSize{room.cx / columns_, room.cy / rows_};
    if (like.content)
        placePanels(dc, room, like, panels);
    int complete = 1;
    for (int i = 0; i < panels.shown; ++i) {
        Shown other;
        Shown& now = i == likeAt ? like : other;
        if (i != likeAt)
            (void)show(planes_[static_cast<std::size_t>(first) + static_cast<std::size_t>(i)],
                       other);
        if (!now.content) {
            complete = 0;
            continue;
        }
        makePanel(now.picture, panels.label, panels.isLowest(i), panels.isFirst(i));
        const CRect least = panels.margins(i);
        const MapFigure& figure = now.picture.figure();
        figure.draw(dc, figure.layOut(dc, units.units(panels.rect(i), CPoint(0, 0)), &least));
    }
    if (breadth > 0) {  // beside the plots of all rows that are filled
        const int left = units.units(panels.rect(std::min(columns_, panels.shown) - 1).right) + gap;
        CRect bar(left, units.units(panels.plotRect(0).top), left + breadth - gap,
                  units.units(panels.plotRect(panels.shown - 1).bottom));
        like.picture.bar().setFHeight(labelUnits);
        like.picture.bar().draw(dc, bar);
    }
    return complete;
}

}  // namespace pavane
