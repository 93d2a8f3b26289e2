#include "tessel/uvfits/UvGroupScan.h"

#include "tessel/uvfits/TimeRuns.h"
#include "tessel/uvfits/UvView.h"

#include <algorithm>
#include <cmath>
#include <tuple>

namespace pavane
{

namespace
{

constexpr std::size_t mostBaselines = 1 << 22;

void stretch(double value, double& least, double& greatest)
{
    if (least > greatest)
        least = greatest = value;
    least = std::min(least, value);
    greatest = std::max(greatest, value);
}

/// Non-zero for what is looked at without marks: RR, LL, XX, YY and I.
int isParallel(int stokes)
{
    return stokes == 1 || stokes == -1 || stokes == -2 || stokes == -5 || stokes == -6;
}

}  // namespace

struct UvGroupScan::Found {
    Distinct<UvPair, std::int64_t> pairs{mostBaselines};
    TimeRuns times;
};

UvGroupScan::UvGroupScan(AUVXFile& file, int what, const UvTimes& times)
    : file_(file), slices_(file), what_(what), times_(times), found_(std::make_unique<Found>())
{
}

UvGroupScan::~UvGroupScan() = default;

int UvGroupScan::step(std::int64_t bytes)
{
    const int what = (what_ & (baselines | scans) ? UvGroups::baselines : 0) |
                     (what_ & (scans | totals) ? UvGroups::origins : 0) |
                     (what_ & scans || !times_.isAll() ? UvGroups::times : 0) |
                     (what_ & totals ? UvGroups::places | UvGroups::cellValues : 0);
    return slices_.step(bytes, what, [this](const UvGroups& groups) {
        if (!take(groups))
            slices_.fail("has more baselines than an observation can have");
    });
}

int UvGroupScan::take(const UvGroups& groups)
{
    for (int i = 0; i < groups.count; ++i)
        totals_.groups += isIn(groups, i);
    if (what_ & totals)
        addTotals(groups);
    if (what_ & scans && hasScans_)
        takeTimes(groups);
    return !(what_ & baselines) || takeBaselines(groups);
}

int UvGroupScan::takeBaselines(const UvGroups& groups)
{
    const int* const subarray = groups.subarray.data();
    const int* const first = groups.antenna1.data();
    const int* const second = groups.antenna2.data();
    for (int i = 0; i < groups.count; ++i) {
        if (first[i] < 0 || !isIn(groups, i))
            continue;
        std::int64_t* const count = found_->pairs.of({subarray[i], first[i], second[i]}, 0);
        if (!count)
            return 0;
        ++*count;
    }
    return 1;
}

void UvGroupScan::takeTimes(const UvGroups& groups)
{
    const double* const time = groups.time.data();
    const int* const subarray = groups.subarray.data();
    const int* const source = groups.source.data();
    const int* const selection = groups.selection.data();
    TimeRuns& times = found_->times;
    for (int i = 0; hasScans_ && i < groups.count; ++i)
        if (std::isfinite(time[i]) && isIn(groups, i))
            hasScans_ =
                times.add(time[i], {subarray[i], source[i], selection[i]}, groups.first + i + 1);
}

void UvGroupScan::addTotals(const UvGroups& groups)
{
    const UvHeader& header = file_.header();
    const AUVXFqTbl& frequencies = file_.fqTbl();
    const int stokes = static_cast<int>(header.stokes.size());
    for (int i = 0; i < groups.count; ++i) {
        const auto g = static_cast<std::size_t>(i);
        if (!isIn(groups, i))
            continue;
        const double distance = std::hypot(groups.u[g], groups.v[g]);
        const int selection = frequencies.selectionOf(groups.selection[g]);
        for (int f = 0; f < header.ifs; ++f)
            for (int c = 0; c < header.channels; ++c) {
                const double waves = distance * frequencies.frequency(selection, f, c);
                for (int s = 0; s < stokes; ++s) {
                    const UvVisibility v = file_.visibility(groups, i, f, c, s);
                    const int isFlagged = !(v.weight > 0);
                    const int isBad = !isFinite(v);
                    ++totals_.visibilities;
                    totals_.flagged += isFlagged;
                    totals_.notFinite += isBad;
                    if (isFlagged || isBad ||
                        !isParallel(header.stokes[static_cast<std::size_t>(s)]))
                        continue;
                    stretch(std::hypot(double{v.real}, double{v.imaginary}), totals_.leastAmplitude,
                            totals_.greatestAmplitude);
                    if (std::isfinite(waves))
                        stretch(waves, totals_.leastUv, totals_.greatestUv);
                }
            }
    }
}

std::vector<UvBaseline> UvGroupScan::foundBaselines() const
{
    std::vector<UvBaseline> result;
    for (const auto& [pair, groups] : found_->pairs.items())
        result.push_back({pair.subarray, pair.first, pair.second, groups});
    std::sort(result.begin(), result.end(), [](const UvBaseline& a, const UvBaseline& b) {
        return std::tie(a.subarray, a.first, a.second) < std::tie(b.subarray, b.first, b.second);
    });
    return result;
}

std::vector<UvScan> UvGroupScan::foundScans() const
{
    try {
        return hasScans_ ? found_->times.scans() : std::vector<UvScan>();
    } catch (const std::bad_alloc&) {
        return {};
    }
}

}  // namespace pavane
