#include "tessel/uvfits/UvPlotPoints.h"

#include "tessel/uvfits/UvChoice.h"
#include "tessel/uvfits/UvPlotRows.h"
#include "tessel/uvfits/UvTimeMeans.h"

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
/// Bytes in which what a mean is made of is looked for, from its first group on.
constexpr std::int64_t mostOfMean = std::int64_t{1} << 28;
constexpr double secondsPerDay = 86400;

/// Whether a point stays when one in `thinning`, a power of two, does. What it is decides, so that
/// neither order nor rhythm of the file shows.
int staysIn(const UvPlotPoint& point, std::int64_t thinning)
{
    if (thinning == 1)
        return 1;
    const std::uint64_t bits = std::uint64_t{std::bit_cast<std::uint32_t>(point.x)} << 32 |
                               std::bit_cast<std::uint32_t>(point.y);
    return (spread(spread(bits) ^ point.group) & static_cast<std::uint64_t>(thinning - 1)) == 0;
}

void stretch(double value, double& least, double& greatest)
{
    if (least > greatest)
        least = greatest = value;
    least = std::min(least, value);
    greatest = std::max(greatest, value);
}

}  // namespace

UvPlotPoints::UvPlotPoints(AUVXFile& file, UvMarks marks, std::size_t mostPoints,
                           const UvView& view)
    : file_(file), slices_(file), marks_(std::move(marks)), mostPoints_(mostPoints), placing_(view),
      classes_(view.colour)
{
    if (!marks_.stokes.count())
        marks_.stokes = usualStokes(file.header());
    choice_ = std::make_unique<UvChoice>(file, marks_);
    if (view.seconds > 0)
        means_ = std::make_unique<UvTimeMeans>(file, *choice_, view.seconds);
}

UvPlotPoints::~UvPlotPoints() = default;

int UvPlotPoints::step(std::int64_t bytes)
{
    constexpr int what = UvGroups::baselines | UvGroups::origins | UvGroups::places |
                         UvGroups::times | UvGroups::cellValues;
    const int goesOn = slices_.step(bytes, what, [this](const UvGroups& groups) {
        for (int i = 0; i < groups.count; ++i)
            takeGroup(groups, i);
    });
    if (goesOn || !means_ || !error().empty())
        return goesOn;
    try {
        means_->finish([this](const UvPointOrigin& mean) { takeMean(mean); });
    } catch (const std::bad_alloc&) {
        slices_.fail("needs more memory than there is");
    }
    return 0;
}

void UvPlotPoints::takeGroup(const UvGroups& groups, int i)
{
    const UvHeader& header = file_.header();
    const auto g = static_cast<std::size_t>(i);
    if (!marks_.times.holds(groups.time[g]))
        return;
    ++totals_.groups;
    if (means_)
        return averageGroup(groups, i);
    const double* frequency = choice_->frequenciesOf(groups, g);
    const double u = groups.u[g];
    const double v = groups.v[g];
    const double seconds = std::hypot(u, v);
    const double across = placing_.x(u, v);
    for (int f = 0; f < header.ifs; ++f)
        for (int c = 0; c < header.channels; ++c) {
            const double hertz = frequency ? *frequency++ : 0;
            const double distance = seconds * hertz;
            const int isPlace = hertz > 0 && std::isfinite(distance);
            const std::int64_t plottedBefore = plotted_;
            int isKept = 0;
            for (int s = 0; s < choice_->stokesCount(); ++s) {
                const UvVisibility value = file_.visibility(groups, i, f, c, s);
                const int isFlagged = !(value.weight > 0);
                const int isBad = !isFinite(value);
                ++totals_.visibilities;
                totals_.flagged += isFlagged;
                totals_.notFinite += isBad;
                if (!isPlace || isFlagged || isBad || !choice_->takesStokes(s))
                    continue;
                const double amplitude = amplitudeOf(value);
                stretch(amplitude, totals_.leastAmplitude, totals_.greatestAmplitude);
                ++plotted_;
                if (!isKept || !placing_.isCoverage())
                    keep(across * hertz, placing_.y(v * hertz, amplitude), groups.first + i,
                         hasColours() ? classes_.add(uvOrigin(groups, i, {f, c, s}, hertz, value))
                                      : std::uint16_t{0});
                isKept = 1;
            }
            if (plotted_ == plottedBefore)
                continue;
            stretch(distance, totals_.leastUv, totals_.greatestUv);
            keepPlace(u * hertz, v * hertz);
        }
}

void UvPlotPoints::averageGroup(const UvGroups& groups, int i)
{
    const UvHeader& header = file_.header();
    for (int f = 0; f < header.ifs; ++f)
        for (int c = 0; c < header.channels; ++c)
            for (int s = 0; s < choice_->stokesCount(); ++s) {
                const UvVisibility value = file_.visibility(groups, i, f, c, s);
                ++totals_.visibilities;
                totals_.flagged += !(value.weight > 0);
                totals_.notFinite += !isFinite(value);
            }
    if (!means_->add(groups, i, [this](const UvPointOrigin& mean) { takeMean(mean); }))
        slices_.fail(UvTimeMeans::tooMany);
}

void UvPlotPoints::takeMean(const UvPointOrigin& mean)
{
    const double distance = std::hypot(mean.u, mean.v);
    if (!std::isfinite(distance))
        return;
    const double amplitude = amplitudeOf(mean.value);
    stretch(amplitude, totals_.leastAmplitude, totals_.greatestAmplitude);
    stretch(distance, totals_.leastUv, totals_.greatestUv);
    // another hand of the channel that was taken last
    const UvPointOrigin last = std::exchange(lastMean_, mean);
    const int isSamePlace =
        plotted_++ > 0 && mean.stokes > last.stokes && mean.channel == last.channel &&
        mean.ifIndex == last.ifIndex && mean.antenna1 == last.antenna1 &&
        mean.antenna2 == last.antenna2 && mean.subarray == last.subarray &&
        std::fabs(mean.time - last.time) * secondsPerDay < placing_.view().seconds;
    if (!isSamePlace || !placing_.isCoverage())
        keep(placing_.x(mean.u, mean.v), placing_.y(mean.v, amplitude), mean.group,
             hasColours() ? classes_.add(mean) : std::uint16_t{0});
    if (!isSamePlace)
        keepPlace(mean.u, mean.v);
}

void UvPlotPoints::keep(double x, double y, std::int64_t group, std::uint16_t colour)
{
    stretch(x, range_.leastX, range_.greatestX);
    stretch(y, range_.leastY, range_.greatestY);
    constexpr std::int64_t last = std::numeric_limits<std::uint32_t>::max();
    const UvPlotPoint point = {static_cast<float>(x), static_cast<float>(y),
                               static_cast<std::uint32_t>(std::min(group, last)), colour};
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
    block.x.push_back(point.x);
    block.y.push_back(point.y);
    block.group.push_back(point.group);
    if (hasColours())
        block.colour.push_back(point.colour);
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
            for (std::size_t i = 0; i < from.x.size(); ++i)
                if (const UvPlotPoint point = {from.x[i], from.y[i], from.group[i],
                                               from.colour.empty() ? std::uint16_t{0}
                                                                   : from.colour[i]};
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

int UvPlotPoints::nearest(double x, double y, double xOfPixel, double yOfPixel, double reach,
                          UvPlotPoint& point) const
{
    double least = reach * reach;
    int isFound = 0;
    for (const UvPointBlock& block : blocks_)
        for (std::size_t i = 0; i < block.x.size(); ++i) {
            const auto awayOf = [&](double sign) {
                const double dx = (sign * double{block.x[i]} - x) / xOfPixel;
                const double dy = (sign * double{block.y[i]} - y) / yOfPixel;
                return dx * dx + dy * dy;
            };
            const double away = placing_.isCoverage() ? std::min(awayOf(1), awayOf(-1)) : awayOf(1);
            if (!(away <= least))
                continue;
            least = away;
            point = {block.x[i], block.y[i], block.group[i]};
            isFound = 1;
        }
    return isFound;
}

int UvPlotPoints::originOf(const UvPlotPoint& point, UvPointOrigin& origin)
{
    try {
        return means_ ? findMean(point, origin) : findOrigin(point, origin);
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
    const double v = group.v[0];
    const double across = placing_.x(group.u[0], v);
    for (int f = 0; frequency && f < header.ifs; ++f)
        for (int c = 0; c < header.channels; ++c, ++frequency)
            for (int s = 0; s < choice_->stokesCount(); ++s) {
                const UvVisibility value = file_.visibility(group, 0, f, c, s);
                const double x = across * *frequency;
                const double y = placing_.y(v * *frequency, amplitudeOf(value));
                if (!(value.weight > 0) || !isFinite(value) || !choice_->takesStokes(s) ||
                    static_cast<float>(x) != point.x || static_cast<float>(y) != point.y)
                    continue;
                origin = uvOrigin(group, 0, {f, c, s}, *frequency, value);
                return 1;
            }
    return 0;
}

/// Makes the mean again from the groups of its baseline from its first one on.
int UvPlotPoints::findMean(const UvPlotPoint& point, UvPointOrigin& origin)
{
    constexpr int what = UvGroups::baselines | UvGroups::origins | UvGroups::places |
                         UvGroups::times | UvGroups::cellValues;
    int isFound = 0;
    int hasEnded = 0;
    const auto take = [&](const UvPointOrigin& mean) {
        hasEnded = 1;
        const double x = placing_.x(mean.u, mean.v);
        const double y = placing_.y(mean.v, amplitudeOf(mean.value));
        if (isFound || mean.group != point.group || static_cast<float>(x) != point.x ||
            static_cast<float>(y) != point.y)
            return;
        origin = mean;
        isFound = 1;
    };
    UvTimeMeans means(file_, *choice_, placing_.view().seconds);
    UvGroups first;
    UvGroups groups;
    if (!file_.readGroups(point.group, 1, what, first))
        return 0;
    const std::int64_t end = std::min<std::int64_t>(
        file_.header().groups,
        point.group + 1 + mostOfMean / std::max<std::int64_t>(1, file_.groupBytes()));
    for (std::int64_t at = point.group; at < end && !hasEnded; at += groups.count) {
        const auto count = static_cast<int>(std::min<std::int64_t>(file_.blockGroups(), end - at));
        if (!file_.readGroups(at, count, what, groups))
            return 0;
        for (std::size_t g = 0; g < static_cast<std::size_t>(count) && !hasEnded; ++g)
            if (groups.antenna1[g] == first.antenna1[0] &&
                groups.antenna2[g] == first.antenna2[0] &&
                groups.subarray[g] == first.subarray[0] && groups.source[g] == first.source[0] &&
                groups.selection[g] == first.selection[0] && marks_.times.holds(groups.time[g]))
                (void)means.add(groups, static_cast<int>(g), take);
    }
    if (!hasEnded)
        means.finish(take);
    return isFound;
}

}  // namespace pavane
