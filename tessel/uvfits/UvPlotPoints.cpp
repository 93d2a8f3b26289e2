#include "tessel/uvfits/UvPlotPoints.h"

#include "tessel/uvfits/UvChoice.h"
#include "tessel/uvfits/UvPlotRows.h"

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
    : file_(file), slices_(file), marks_(std::move(marks)), mostPoints_(mostPoints), placing_(view)
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
                    keep(across * hertz, placing_.y(v * hertz, amplitude), groups.first + i);
                isKept = 1;
            }
            if (plotted_ == plottedBefore)
                continue;
            stretch(distance, totals_.leastUv, totals_.greatestUv);
            keepPlace(u * hertz, v * hertz);
        }
}

void UvPlotPoints::keep(double x, double y, std::int64_t group)
{
    stretch(x, range_.leastX, range_.greatestX);
    stretch(y, range_.leastY, range_.greatestY);
    constexpr std::int64_t last = std::numeric_limits<std::uint32_t>::max();
    const UvPlotPoint point = {static_cast<float>(x), static_cast<float>(y),
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
    block.x.push_back(point.x);
    block.y.push_back(point.y);
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
            for (std::size_t i = 0; i < from.x.size(); ++i)
                if (const UvPlotPoint point = {from.x[i], from.y[i], from.group[i]};
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

}  // namespace pavane
