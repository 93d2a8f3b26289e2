#include "pavane/axes/maps/sky/ASkyGrid.h"

#include "pavane/axes/ABAxis.h"
#include "pavane/axes/maps/sky/sky_titles.h"

#include <algorithm>
#include <cmath>
#include <numbers>

namespace pavane
{

namespace
{

constexpr COLORREF usualColor = RGB(140, 140, 140);
/// Bends that are left, in parts of the plot: a twentieth of a pixel of a large one.
constexpr double finest = 1.0 / 20000;
/// An edge is given to a coordinate that goes so many times as far along it as the usual one.
constexpr double muchMore = 1.3;
constexpr double degree = std::numbers::pi / 180;

/// The rows of a map may grow downwards: the lower edge of the plot is then its upper one in cells.
CellEdge edgeOf(int isY, int isOpposite, const MapFrame& frame, int xGrowsLeft)
{
    if (isY) {
        const int columnsGrowRight = (frame.xStep > 0) != (xGrowsLeft != 0);
        return columnsGrowRight == (isOpposite != 0) ? CellEdge::right : CellEdge::left;
    }
    return (frame.yStep > 0) == (isOpposite != 0) ? CellEdge::top : CellEdge::bottom;
}

}  // namespace

ASkyGrid::ASkyGrid(ABAxis* axis, const SkyCoordinates& sky, const MapFrame& frame)
    : ABSkyGrid(axis, 0), sky_(sky), mapFrame_(frame), skyFrame_(sky.skyFrame()), color_(usualColor)
{
}

void ASkyGrid::forget()
{
    range_ = TMinMax();
    isReady_ = 0;
    crossed_.clear();
    hasLimb_ = 0;
    lineSteps_[0] = lineSteps_[1] = 0;
}

void ASkyGrid::setShown(SkyGridShown shown) { shown_ = shown; }

void ASkyGrid::setFrame(const SkyFrame& frame)
{
    skyFrame_ = frame;
    forget();
}

void ASkyGrid::setLabels(SkyLabels labels)
{
    labels_ = labels;
    forget();
}

int ASkyGrid::prepare(const ABAxis& axis)
{
    if (shown_ == SkyGridShown::none || axis.getXDirect() == 0 || axis.getYDirect() == 0)
        return 0;
    xGrowsLeft_ = axis.getXDirect() < 0;
    labelled_[0].clear();
    labelled_[1].clear();
    const TMinMax& range = axis.getMinMax();
    const int isSame = range.xMin == range_.xMin && range.xMax == range_.xMax &&
                       range.yMin == range_.yMin && range.yMax == range_.yMax;
    if (isSame)
        return isReady_;
    forget();
    range_ = range;
    const auto column = [this](double x) { return (x - mapFrame_.xFirst) / mapFrame_.xStep; };
    const auto row = [this](double y) { return (y - mapFrame_.yFirst) / mapFrame_.yStep; };
    const auto [left, right] = std::minmax({column(range.xMin), column(range.xMax)});
    const auto [bottom, top] = std::minmax({row(range.yMin), row(range.yMax)});
    const CellRectangle cells = {left, right, bottom, top};
    const double size = std::max(right - left, top - bottom);
    isReady_ = mapFrame_.xStep != 0 && mapFrame_.yStep != 0 &&
               grid_.init(sky_, skyFrame_, cells, finest * size);
    if (isReady_)
        chooseKinds();
    return isReady_;
}

void ASkyGrid::chooseKinds()
{
    // along an edge, as angles on the sky
    const CellRectangle& r = grid_.rectangle();
    double longitude = 0;
    double latitude = 0;
    (void)grid_.toSky({(r.left + r.right) / 2, (r.bottom + r.top) / 2}, longitude, latitude);
    const double scale[2] = {std::max(std::cos(latitude * degree), 0.02), 1};
    double span[2][2];  // of the lower and the left edge, of longitude and latitude
    for (int isY = 0; isY < 2; ++isY)
        for (int kind = 0; kind < 2; ++kind)
            span[isY][kind] =
                scale[kind] * grid_.spanOf(kind, edgeOf(isY, 0, mapFrame_, xGrowsLeft_));
    if (grid_.hasPole()) {
        // latitudes are circles then: an edge that longitudes run along is theirs
        kinds_[0] = span[0][1] > muchMore * span[0][0] && span[0][0] <= span[1][0];
        kinds_[1] = !(span[1][0] > muchMore * span[1][1]);
        if (!kinds_[0] || !kinds_[1])
            return;
    }
    const int isTurned = span[0][1] + span[1][0] > muchMore * (span[0][0] + span[1][1]);
    kinds_[0] = isTurned;
    kinds_[1] = !isTurned;
}

double ASkyGrid::rpOf(const CellPoint& cell, int isY) const
{
    return isY ? mapFrame_.yFirst + cell.row * mapFrame_.yStep
               : mapFrame_.xFirst + cell.column * mapFrame_.xStep;
}

const std::vector<SkyCrossing>& ASkyGrid::crossings(int isLatitude, CellEdge edge)
{
    const SkySteps& steps = steps_[static_cast<std::size_t>(isLatitude)];
    for (const Crossed& known : crossed_)
        if (known.isLatitude == isLatitude && known.edge == edge && known.step == steps.step)
            return known.crossings;
    crossed_.push_back({isLatitude, edge, steps.step, grid_.crossings(isLatitude, steps, edge)});
    return crossed_.back().crossings;
}

/// Of a coordinate that no edge is ticked by.
SkySteps ASkyGrid::insideSteps(int isLatitude) const
{
    const double span = grid_.spanOf(isLatitude);
    constexpr int circles = 6;
    constexpr int meridians = 12;
    return grid_.steps(isLatitude, labels_, span, isLatitude ? circles : meridians);
}

TickSet ASkyGrid::edgeTicks(int isY, int intervals)
{
    const int kind = kinds_[isY];
    const CellEdge edge = edgeOf(isY, 0, mapFrame_, xGrowsLeft_);
    SkySteps& steps = steps_[static_cast<std::size_t>(kind)];
    // the left edge is ticked first; one kind has one step
    if (isY || kinds_[0] != kinds_[1]) {
        const double along = grid_.spanOf(kind, edge);
        // a little too many rather than too few, but for meridians that run together
        const int most = grid_.hasPole() ? intervals : intervals + intervals / 3;
        steps = along > 0 ? grid_.steps(kind, labels_, along, most) : insideSteps(kind);
    }
    if (isY && kinds_[0] == kinds_[1]) {  // nobody asks for the other kind
        steps_[static_cast<std::size_t>(!kind)] = insideSteps(!kind);
    }
    TickSet set;
    set.title = titleOf(kind);
    for (const SkyCrossing& crossing : crossings(kind, edge))
        set.major.push_back({rpOf(crossing.at, isY), "?"});
    std::sort(set.major.begin(), set.major.end(),
              [](const auto& a, const auto& b) { return a.value < b.value; });
    shortenLabels(isY, set);
    return set;
}

void ASkyGrid::shortenLabels(int isY, TickSet& set)
{
    const int kind = kinds_[isY];
    const SkySteps& steps = steps_[static_cast<std::size_t>(kind)];
    const auto& all = crossings(kind, edgeOf(isY, 0, mapFrame_, xGrowsLeft_));
    SkyText before;
    std::vector<double>& labelled = labelled_[isY];
    labelled.clear();
    const auto count = static_cast<int>(set.major.size());
    for (int i = 0; i < count; ++i) {
        // as they are read: from left to right, upwards
        const int at = !isY && xGrowsLeft_ ? count - 1 - i : i;
        TickSet::Tick& tick = set.major[static_cast<std::size_t>(at)];
        if (tick.label.empty())
            continue;
        const auto crossing = std::find_if(all.begin(), all.end(), [&](const SkyCrossing& c) {
            return rpOf(c.at, isY) == tick.value;
        });
        if (crossing == all.end())
            continue;
        const SkyText text = skyText(steps, crossing->k, kind);
        tick.label = text.after(before);
        before = text;
        labelled.push_back(crossing->k);
    }
}

TickSet ASkyGrid::oppositeTicks(int isY)
{
    TickSet set;
    for (const SkyCrossing& crossing :
         crossings(kinds_[isY], edgeOf(isY, 1, mapFrame_, xGrowsLeft_)))
        set.major.push_back({rpOf(crossing.at, isY), {}});
    std::sort(set.major.begin(), set.major.end(),
              [](const auto& a, const auto& b) { return a.value < b.value; });
    return set;
}

std::vector<double> ASkyGrid::minorTicks(int isY, int isOpposite)
{
    const int kind = kinds_[isY];
    SkySteps fine = steps_[static_cast<std::size_t>(kind)];
    const int parts = roundParts(fine);
    std::vector<double> places;
    if (parts < 2)
        return places;
    fine.step /= parts;
    const CellEdge edge = edgeOf(isY, isOpposite, mapFrame_, xGrowsLeft_);
    for (const SkyCrossing& crossing : grid_.crossings(kind, fine, edge))
        if (std::fabs(std::remainder(crossing.k, parts)) > 0.5)
            places.push_back(rpOf(crossing.at, isY));
    // where meridians run together ticks would become a bar
    constexpr std::size_t most = 200;
    if (places.size() > most)
        places.clear();
    return places;
}

CString ASkyGrid::titleOf(int isLatitude) const
{
    const SkySteps& steps = steps_[static_cast<std::size_t>(isLatitude)];
    return skyAxisTitle(skyFrame_, isLatitude, steps.isOffset) +
           (steps.isOffset ? " [" + steps.unit + "]" : "");
}

int ASkyGrid::isLabelled(int isLatitude, double k) const
{
    const double step = steps_[static_cast<std::size_t>(isLatitude)].step;
    for (int isY = 0; isY < 2; ++isY) {
        const std::vector<double>& labelled = labelled_[isY];
        if (kinds_[isY] == isLatitude &&
            std::any_of(labelled.begin(), labelled.end(), [&](double other) {
                const double apart = (k - other) * step;
                return std::fabs(isLatitude ? apart : std::remainder(apart, 360.0)) < step / 2;
            }))
            return 1;
    }
    return 0;
}

const std::vector<SkyGridLine>& ASkyGrid::lines(int isLatitude)
{
    const SkySteps& steps = steps_[static_cast<std::size_t>(isLatitude)];
    if (isReady_ && lineSteps_[isLatitude] != steps.step) {
        lines_[isLatitude] = grid_.lines(isLatitude, steps);
        lineSteps_[isLatitude] = steps.step;
    }
    if (!isReady_)
        lines_[isLatitude].clear();
    return lines_[isLatitude];
}

}  // namespace pavane
