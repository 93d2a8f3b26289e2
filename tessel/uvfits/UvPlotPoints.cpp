#include "tessel/uvfits/UvPlotPoints.h"

#include "tessel/uvfits/UvChoice.h"

#include <algorithm>
#include <bit>
#include <cmath>
#include <limits>
#include <new>
#include <utility>

namespace pavane
{

namespace
{

constexpr std::size_t blockPoints = std::size_t{1} << 18;
constexpr std::size_t mostPlaces = std::size_t{1} << 14;
/// Thinning ends here: what is left then are equal points, of which all look like one.
constexpr std::int64_t mostThinning = std::int64_t{1} << 32;

/// Whether a point stays when one in `thinning`, a power of two, does. What it is decides, so that
/// neither order nor rhythm of the file shows.
int staysIn(const UvPlotPoint& point, std::int64_t thinning)
{
    if (thinning == 1)
        return 1;
    const std::uint64_t bits = std::uint64_t{std::bit_cast<std::uint32_t>(point.distance)} << 32 |
                               std::bit_cast<std::uint32_t>(point.amplitude);
    return (spread(spread(bits) ^ point.group) & static_cast<std::uint64_t>(thinning - 1)) == 0;
}

void stretch(double value, double& least, double& greatest)
{
    if (least > greatest)
        least = greatest = value;
    least = std::min(least, value);
    greatest = std::max(greatest, value);
}

double amplitudeOf(const UvVisibility& v)
{
    // squares of single precision do not overflow
    return std::sqrt(double{v.real} * v.real + double{v.imaginary} * v.imaginary);
}

int isFinite(const UvVisibility& v)
{
    return std::isfinite(v.real) && std::isfinite(v.imaginary) && std::isfinite(v.weight);
}

}  // namespace

UvPlotPoints::UvPlotPoints(AUVXFile& file, UvMarks marks, std::size_t mostPoints)
    : file_(file), slices_(file), marks_(std::move(marks)), mostPoints_(mostPoints)
{
    if (!marks_.stokes.count())
        marks_.stokes = usualStokes(file.header());
    choice_ = std::make_unique<UvChoice>(file, marks_);
}

UvPlotPoints::~UvPlotPoints() = default;

int UvPlotPoints::step(std::int64_t bytes)
{
    constexpr int what = UvGroups::baselines | UvGroups::origins | UvGroups::places |
                         UvGroups::times | UvGroups::cellValues;
    return slices_.step(bytes, what, [this](const UvGroups& groups) {
        for (int i = 0; i < groups.count; ++i)
            takeGroup(groups, i);
    });
}

void UvPlotPoints::takeGroup(const UvGroups& groups, int i)
{
    const UvHeader& header = file_.header();
    const auto g = static_cast<std::size_t>(i);
    if (!marks_.times.holds(groups.time[g]))
        return;
    ++totals_.groups;
    const double* frequency = choice_->frequenciesOf(groups, g);
    const double u = groups.u[g];
    const double v = groups.v[g];
    const double seconds = std::hypot(u, v);
    for (int f = 0; f < header.ifs; ++f)
        for (int c = 0; c < header.channels; ++c) {
            const double hertz = frequency ? *frequency++ : 0;
            const double distance = seconds * hertz;
            const int isPlace = hertz > 0 && std::isfinite(distance);
            const std::int64_t plottedBefore = plotted_;
            for (int s = 0; s < choice_->stokesCount(); ++s) {
                const UvVisibility value = file_.visibility(groups, i, f, c, s);
                const int isFlagged = !(value.weight > 0);
                const int isBad = !isFinite(value);
                ++totals_.visibilities;
                totals_.flagged += isFlagged;
                totals_.notFinite += isBad;
                if (!isPlace || isFlagged || isBad || !choice_->takesStokes(s))
                    continue;
                keep(distance, amplitudeOf(value), groups.first + i);
            }
            if (plotted_ == plottedBefore)
                continue;
            stretch(distance, totals_.leastUv, totals_.greatestUv);
            keepPlace(u * hertz, v * hertz);
        }
}

void UvPlotPoints::keep(double distance, double amplitude, std::int64_t group)
{
    stretch(amplitude, totals_.leastAmplitude, totals_.greatestAmplitude);
    ++plotted_;
    constexpr std::int64_t last = std::numeric_limits<std::uint32_t>::max();
    const UvPlotPoint point = {static_cast<float>(distance), static_cast<float>(amplitude),
                               static_cast<std::uint32_t>(std::min(group, last))};
    if (mostPoints_ == 0 || !staysIn(point, thinning_))
        return;
    if (kept_ >= mostPoints_)
        thinOut();
    if (kept_ < mostPoints_ && staysIn(point, thinning_))
        append(point);
}

void UvPlotPoints::append(const UvPlotPoint& point)
{
    const std::size_t at = kept_ / blockPoints;
    if (at == blocks_.size())
        blocks_.emplace_back();
    UvPointBlock& block = blocks_[at];
    block.distance.push_back(point.distance);
    block.amplitude.push_back(point.amplitude);
    block.group.push_back(point.group);
    ++kept_;
}

void UvPlotPoints::thinOut()
{
    while (kept_ >= mostPoints_ && thinning_ < mostThinning) {
        thinning_ *= 2;
        kept_ = 0;
        for (std::size_t b = 0; b < blocks_.size(); ++b) {
            // what was taken out goes back into the same block or one before it
            const UvPointBlock from = std::exchange(blocks_[b], UvPointBlock());
            for (std::size_t i = 0; i < from.distance.size(); ++i)
                if (const UvPlotPoint point = {from.distance[i], from.amplitude[i], from.group[i]};
                    staysIn(point, thinning_))
                    append(point);
        }
        blocks_.resize((kept_ + blockPoints - 1) / blockPoints);
    }
}

void UvPlotPoints::keepPlace(double u, double v)
{
    const auto goes = [&](const Place& place) {
        const std::uint64_t bits = spread(std::bit_cast<std::uint64_t>(place.u) ^
                                          spread(std::bit_cast<std::uint64_t>(place.v)));
        return (bits & static_cast<std::uint64_t>(placeStep_ - 1)) != 0;
    };
    if (goes({u, v}))
        return;
    places_.push_back({u, v});
    while (places_.size() > mostPlaces && placeStep_ < mostThinning) {
        placeStep_ *= 2;
        std::erase_if(places_, goes);
    }
}

int UvPlotPoints::nearest(double distance, double amplitude, double distanceOfPixel,
                          double amplitudeOfPixel, double reach, UvPlotPoint& point) const
{
    double least = reach * reach;
    int isFound = 0;
    for (const UvPointBlock& block : blocks_)
        for (std::size_t i = 0; i < block.distance.size(); ++i) {
            const double x = (block.distance[i] - distance) / distanceOfPixel;
            const double y = (block.amplitude[i] - amplitude) / amplitudeOfPixel;
            const double away = x * x + y * y;
            if (!(away <= least))
                continue;
            least = away;
            point = {block.distance[i], block.amplitude[i], block.group[i]};
            isFound = 1;
        }
    return isFound;
}

int UvPlotPoints::originOf(const UvPlotPoint& point, UvPointOrigin& origin)
{
    try {
        return findOrigin(point, origin);
    } catch (const std::bad_alloc&) {
        return 0;
    }
}

int UvPlotPoints::findOrigin(const UvPlotPoint& point, UvPointOrigin& origin)
{
    constexpr int what = UvGroups::baselines | UvGroups::origins | UvGroups::places |
                         UvGroups::times | UvGroups::cellValues;
    const UvHeader& header = file_.header();
    UvGroups group;
    if (!file_.readGroups(point.group, 1, what, group))
        return 0;
    const double* frequency = choice_->frequenciesOf(group, 0);
    const double seconds = std::hypot(group.u[0], group.v[0]);
    for (int f = 0; frequency && f < header.ifs; ++f)
        for (int c = 0; c < header.channels; ++c, ++frequency)
            for (int s = 0; s < choice_->stokesCount(); ++s) {
                const UvVisibility value = file_.visibility(group, 0, f, c, s);
                if (!(value.weight > 0) || !choice_->takesStokes(s) ||
                    static_cast<float>(seconds * *frequency) != point.distance ||
                    static_cast<float>(amplitudeOf(value)) != point.amplitude)
                    continue;
                origin = {point.group,
                          group.subarray[0],
                          group.antenna1[0],
                          group.antenna2[0],
                          group.source[0],
                          group.selection[0],
                          group.time[0],
                          f,
                          c,
                          s};
                return 1;
            }
    return 0;
}

}  // namespace pavane
