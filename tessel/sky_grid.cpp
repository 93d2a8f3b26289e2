#include "tessel/sky_grid.h"

#include "tessel/sky_line.h"

#include <algorithm>
#include <cmath>

namespace pavane
{

namespace
{

constexpr int edgeIntervals = 48;
constexpr int insideNodes = 13;
/// Halvings of an edge interval in which a coordinate runs away, and towards a limb.
constexpr int mostHalvings = 24;
/// Longitudes of neighbouring samples farther apart are looked at more closely, degrees.
constexpr double farNeighbours = 20;
/// From here on a field counts as going all round, degrees.
constexpr double nearlyRound = 300;
/// Lines may bend beyond what the samples saw, by this part of it.
constexpr double spareRange = 0.15;
constexpr double leastSpan = 1e-13;
constexpr double mostLines = 2000;
constexpr double farthestCell = 1e9;

double difference(double a, double b, int isLatitude)
{
    return isLatitude ? a - b : std::remainder(a - b, 360.0);
}

}  // namespace

int SkyGrid::init(const SkyCoordinates& sky, const SkyFrame& frame, const CellRectangle& rectangle,
                  double tolerance)
{
    sky_ = nullptr;
    for (EdgeSamples& edge : edges_)
        edge.clear();
    const auto isFar = [](double v) { return !(std::fabs(v) <= farthestCell); };
    if (!sky.isSet() || !turn_.init(sky.skyFrame(), frame) || isFar(rectangle.left) ||
        isFar(rectangle.right) || isFar(rectangle.bottom) || isFar(rectangle.top) ||
        !(rectangle.left < rectangle.right) || !(rectangle.bottom < rectangle.top) ||
        !(tolerance > 0))
        return 0;
    sky_ = &sky;
    frame_ = frame;
    rectangle_ = rectangle;
    // never finer than a screen can show, whatever was asked
    const double least =
        1e-6 * std::max(rectangle.right - rectangle.left, rectangle.top - rectangle.bottom);
    tolerance_ = std::max(tolerance, least);
    survey();
    return sky_ != nullptr;
}

int SkyGrid::toSky(const CellPoint& cell, double& longitude, double& latitude) const
{
    double l = 0;
    double b = 0;
    return sky_ && sky_->toSky(cell.column, cell.row, l, b) &&
           turn_.there(l, b, longitude, latitude);
}

int SkyGrid::toCell(double longitude, double latitude, CellPoint& cell) const
{
    double l = 0;
    double b = 0;
    return sky_ && turn_.back(longitude, latitude, l, b) &&
           sky_->toPixel(l, b, cell.column, cell.row);
}

CellPoint SkyGrid::onEdge(CellEdge edge, double at) const
{
    const CellRectangle& r = rectangle_;
    const int isAcross = edge == CellEdge::bottom || edge == CellEdge::top;
    const double along =
        isAcross ? r.left + at * (r.right - r.left) : r.bottom + at * (r.top - r.bottom);
    if (isAcross)
        return {along, edge == CellEdge::bottom ? r.bottom : r.top};
    return {edge == CellEdge::left ? r.left : r.right, along};
}

SkyGrid::Sample SkyGrid::sampleOf(CellEdge edge, double at) const
{
    Sample sample;
    sample.at = at;
    sample.isOnSky = toSky(onEdge(edge, at), sample.sky[0], sample.sky[1]);
    return sample;
}

/// Adds what lies between two samples, and the second of them: where the sky ends and where
/// longitudes run away near a pole more closely.
void SkyGrid::refine(EdgeSamples& samples, CellEdge edge, const Sample& a, const Sample& b,
                     int depth) const
{
    const int isLimb = a.isOnSky != b.isOnSky;
    const int isFast =
        a.isOnSky && b.isOnSky && std::fabs(difference(b.sky[0], a.sky[0], 0)) > farNeighbours;
    if ((isLimb || isFast) && depth < mostHalvings) {
        const Sample middle = sampleOf(edge, (a.at + b.at) / 2);
        // beside a limb only the half with the limb is of interest
        if (isLimb && middle.isOnSky == a.isOnSky) {
            if (middle.isOnSky)
                samples.push_back(middle);
            return refine(samples, edge, middle, b, depth + 1);
        }
        refine(samples, edge, a, middle, depth + 1);
        if (isLimb) {
            samples.push_back(b);
            return;
        }
        return refine(samples, edge, middle, b, depth + 1);
    }
    samples.push_back(b);
}

void SkyGrid::survey()
{
    std::vector<double> longitudes;
    double least = 90;
    double greatest = -90;
    hasLimb_ = 0;
    const auto note = [&](int isOnSky, const double(&sky)[2]) {
        hasLimb_ |= !isOnSky;
        if (!isOnSky)
            return;
        longitudes.push_back(sky[0]);
        least = std::min(least, sky[1]);
        greatest = std::max(greatest, sky[1]);
    };
    for (std::size_t e = 0; e < edges_.size(); ++e) {
        const auto edge = static_cast<CellEdge>(e);
        EdgeSamples& samples = edges_[e];
        Sample before = sampleOf(edge, 0);
        samples.push_back(before);
        for (int i = 1; i <= edgeIntervals; ++i) {
            const Sample next = sampleOf(edge, static_cast<double>(i) / edgeIntervals);
            refine(samples, edge, before, next, 0);
            before = next;
        }
        for (const Sample& sample : samples)
            note(sample.isOnSky, sample.sky);
    }
    const CellRectangle& r = rectangle_;
    for (int i = 1; i < insideNodes; ++i)
        for (int j = 1; j < insideNodes; ++j) {
            double sky[2] = {};
            const CellPoint cell = {r.left + (r.right - r.left) * i / insideNodes,
                                    r.bottom + (r.top - r.bottom) * j / insideNodes};
            const int isOnSky = toSky(cell, sky[0], sky[1]);
            note(isOnSky, sky);
        }
    if (longitudes.empty())
        sky_ = nullptr;
    else
        findRanges(longitudes, least, greatest);
}

void SkyGrid::findRanges(std::vector<double>& longitudes, double least, double greatest)
{
    std::sort(longitudes.begin(), longitudes.end());
    // what the field covers is all but the widest gap
    double gap = longitudes.front() + 360 - longitudes.back();
    double first = longitudes.front();
    for (std::size_t i = 1; i < longitudes.size(); ++i)
        if (longitudes[i] - longitudes[i - 1] > gap) {
            gap = longitudes[i] - longitudes[i - 1];
            first = longitudes[i];
        }
    const double size =
        std::max(rectangle_.right - rectangle_.left, rectangle_.top - rectangle_.bottom);
    const double spare = std::max(spareRange * (greatest - least), leastSpan);
    latitudes_[0] = std::max(least - spare, -90.0);
    latitudes_[1] = std::min(greatest + spare, 90.0);
    allLongitudes_ = 360 - gap > nearlyRound;
    for (const double pole : {-90.0, 90.0}) {
        CellPoint cell;
        if (toCell(0, pole, cell) && holds(cell, spareRange * size)) {
            allLongitudes_ = 1;
            latitudes_[pole > 0] = pole;
        }
    }
    longitudes_[0] = first;
    longitudes_[1] = first + 360 - gap;
    const double spareAround = std::max(spareRange * (longitudes_[1] - longitudes_[0]), leastSpan);
    if (longitudes_[1] - longitudes_[0] + 2 * spareAround > nearlyRound)
        allLongitudes_ = 1;
    if (allLongitudes_) {
        longitudes_[0] = first - gap / 2;
        longitudes_[1] = longitudes_[0] + 360;
    } else {
        longitudes_[0] -= spareAround;
        longitudes_[1] += spareAround;
    }
}

int SkyGrid::holds(const CellPoint& cell, double beyond) const
{
    return cell.column >= rectangle_.left - beyond && cell.column <= rectangle_.right + beyond &&
           cell.row >= rectangle_.bottom - beyond && cell.row <= rectangle_.top + beyond;
}

double SkyGrid::spanOf(int isLatitude, CellEdge edge) const
{
    const EdgeSamples& samples = edges_[static_cast<std::size_t>(edge)];
    double span = 0;
    for (std::size_t i = 1; i < samples.size(); ++i)
        if (samples[i].isOnSky && samples[i - 1].isOnSky)
            span += std::fabs(
                difference(samples[i].sky[isLatitude], samples[i - 1].sky[isLatitude], isLatitude));
    return span;
}

double SkyGrid::spanOf(int isLatitude) const
{
    if (!sky_)
        return 0;
    return isLatitude ? latitudes_[1] - latitudes_[0] : longitudes_[1] - longitudes_[0];
}

SkySteps SkyGrid::steps(int isLatitude, SkyLabels labels, double span, int most) const
{
    if (labels != SkyLabels::offsets)
        return roundSteps(numbersOf(frame_, labels, isLatitude), span, most);
    // from the middle cell of the map the host may have moved away: offsets count from the
    // reference pixel, which does not move
    double reference[2] = {};
    if (!sky_ || !turn_.there(sky_->referenceLongitude(), sky_->referenceLatitude(), reference[0],
                              reference[1]))
        return roundSteps(SkyNumbers::degrees, span, most);
    return offsetSteps(reference[isLatitude], reference[1], isLatitude, span, most);
}

/// The lines between two neighbours of an edge.
void SkyGrid::cross(const Sample& a, const Sample& b, int isLatitude, const SkySteps& steps,
                    CellEdge edge, std::vector<SkyCrossing>& found) const
{
    const double from = a.sky[isLatitude] - steps.origin;
    const double way = difference(b.sky[isLatitude], a.sky[isLatitude], isLatitude);
    if (!(std::fabs(way) < 180))
        return;
    const double first = std::min(from, from + way) / steps.step;
    const double last = std::max(from, from + way) / steps.step;
    if (last - first > mostLines)
        return;
    std::vector<SkyCrossing> between;
    const auto count = static_cast<int>(std::floor(last) - std::ceil(first)) + 1;
    for (int i = 0; i < count; ++i) {
        const double k = std::ceil(first) + i;
        const double value = k * steps.step;
        double low = a.at, high = b.at;
        double atLow = from - value, atHigh = from + way - value;
        if (atHigh == 0 && b.at < 1)
            continue;  // the next interval begins with it
        double at = atLow == 0 ? low : high;
        // regula falsi that halves the weight of an end that stays (Illinois)
        constexpr int mostRounds = 60;
        constexpr double nearEnough = 1e-12;
        int side = 0;
        double rest = atLow == 0 ? atLow : atHigh;
        for (int round = 0; round < mostRounds && rest != 0 && high - low > nearEnough; ++i) {
            at = (low * atHigh - high * atLow) / (atHigh - atLow);
            if (!(at > low && at < high))
                at = (low + high) / 2;
            const Sample sample = sampleOf(edge, at);
            if (!sample.isOnSky)
                break;
            rest = difference(sample.sky[isLatitude] - steps.origin, value, isLatitude);
            const int isLow = (rest < 0) == (atLow < 0);
            (isLow ? low : high) = at;
            (isLow ? atLow : atHigh) = rest;
            if (side == (isLow ? 1 : 2))
                (isLow ? atHigh : atLow) /= 2;
            side = isLow ? 1 : 2;
        }
        // a jump of the projection is no crossing
        if (std::fabs(rest) <= 1e-3 * steps.step)
            between.push_back({edge, onEdge(edge, at), k});
    }
    if (way < 0)
        std::reverse(between.begin(), between.end());
    found.insert(found.end(), between.begin(), between.end());
}

std::vector<SkyCrossing> SkyGrid::crossings(int isLatitude, const SkySteps& steps,
                                            CellEdge edge) const
{
    std::vector<SkyCrossing> found;
    const EdgeSamples& samples = edges_[static_cast<std::size_t>(edge)];
    for (std::size_t i = 1; i < samples.size(); ++i)
        if (samples[i].isOnSky && samples[i - 1].isOnSky)
            cross(samples[i - 1], samples[i], isLatitude, steps, edge, found);
    return found;
}

/// Non-zero when the projection puts the two sides of a line into different places.
int SkyGrid::isOnCut(int isLatitude, double value, double side) const
{
    constexpr int probes = 5;
    const double(&along)[2] = isLatitude ? longitudes_ : latitudes_;
    const double size =
        std::max(rectangle_.right - rectangle_.left, rectangle_.top - rectangle_.bottom);
    for (int i = 1; i <= probes; ++i) {
        const double t = along[0] + (along[1] - along[0]) * i / (probes + 1);
        CellPoint sides[2];
        int isShown = 1;
        for (int k = 0; k < 2; ++k) {
            const double v = value + (k ? side : -side);
            isShown = isShown && toCell(isLatitude ? t : v, isLatitude ? v : t, sides[k]);
        }
        if (isShown && std::hypot(sides[1].column - sides[0].column, sides[1].row - sides[0].row) >
                           size * farSides)
            return 1;
    }
    return 0;
}

/// Moves a cell by turns of the sky; 0 where the map does not go on so far.
int SkyGrid::shift(int turns, CellPoint& cell) const
{
    CellPoint turn;
    if (turns == 0 || !sky_->turn(turn.column, turn.row))
        return 1;
    cell.column += turns * turn.column;
    cell.row += turns * turn.row;
    double longitude = 0;
    double latitude = 0;
    return sky_->toSky(cell.column, cell.row, longitude, latitude);
}

std::vector<SkyGridLine> SkyGrid::lines(int isLatitude, const SkySteps& steps) const
{
    std::vector<SkyGridLine> lines;
    if (!sky_ || !(steps.step > 0))
        return lines;
    const double(&range)[2] = isLatitude ? latitudes_ : longitudes_;
    const double(&along)[2] = isLatitude ? longitudes_ : latitudes_;
    const double first = std::ceil((range[0] - steps.origin) / steps.step);
    double last = std::floor((range[1] - steps.origin) / steps.step);
    if (!(last - first >= 0 && last - first < mostLines))
        return lines;
    if (!isLatitude && allLongitudes_ && (last - first) * steps.step > 360 - steps.step / 2)
        --last;  // a turn from the first
    // a map of more than a turn shows its lines more than once
    CellPoint turn;
    constexpr int turnsEachWay = 2;
    const int copies = sky_->turn(turn.column, turn.row) ? turnsEachWay : 0;
    const auto count = static_cast<int>(last - first) + 1;
    for (int i = 0; i < count; ++i) {
        const double k = first + i;
        SkyGridLine line;
        line.isLatitude = isLatitude;
        line.k = k;
        line.value = steps.value(k);
        if (isLatitude && !(std::fabs(line.value) < 90))
            continue;  // a point
        const double side = cutSide * steps.step;
        const int isCut = isOnCut(isLatitude, line.value, side);
        // copies show the other side of the cut between them
        for (int sign = isCut ? -1 : 1; sign <= 1; sign += copies ? 3 : 2) {
            const double value = isCut ? line.value + sign * side : line.value;
            for (int turns = -copies; turns <= copies; ++turns) {
                SkyLineTracer tracer(rectangle_, tolerance_, [&](double t, CellPoint& cell) {
                    return toCell(isLatitude ? t : value, isLatitude ? value : t, cell) &&
                           shift(turns, cell);
                });
                tracer.trace(along[0], along[1], line.pieces);
            }
        }
        if (!line.pieces.empty())
            lines.push_back(std::move(line));
    }
    return lines;
}

std::vector<std::vector<CellPoint>> SkyGrid::limb() const
{
    if (!sky_ || !hasLimb_)
        return {};
    return traceBorder(rectangle_, [this](const CellPoint& cell) {
        double longitude = 0;
        double latitude = 0;
        return toSky(cell, longitude, latitude);
    });
}

}  // namespace pavane
