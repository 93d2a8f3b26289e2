#include "pavane/dialogs/values/observed_times.h"

#include "pavane/dialogs/values/TimeSteps.h"
#include "tessel/uvfits/AUVXFile.h"

#include <algorithm>
#include <cmath>
#include <new>
#include <tuple>
#include <unordered_map>
#include <vector>

namespace pavane
{

namespace
{

constexpr double secondsPerDay = 86400;
/// Times of groups out of order that are kept to be sorted.
constexpr std::size_t mostSorted = std::size_t{1} << 22;
/// More baselines are no observation.
constexpr std::size_t mostBaselines = std::size_t{1} << 20;

/// From the least to the greatest of what was taken.
struct Span {
    double first = 1, last = 0;
    bool isEmpty() const { return first > last; }
    void take(double from, double to)
    {
        if (!std::isfinite(from) || !std::isfinite(to))
            return;
        first = isEmpty() ? std::min(from, to) : std::min({first, from, to});
        last = last < first ? std::max(from, to) : std::max({last, from, to});
    }
};

/// The times of all groups that were asked for.
class GroupTimes
{
public:
    GroupTimes(AUVXFile& file, int subarray, int selection)
        : file_(file), subarray_(subarray), selection_(selection)
    {
    }
    const Span& span() const { return span_; }
    /// 0 when the file cannot be read.
    int read()
    {
        const int isRead =
            forEach([this](std::uint64_t baseline, double time) { takeStep(baseline, time); });
        if (!isRead || isInOrder_)
            return isRead;
        steps_ = TimeSteps();
        return readSorted();
    }
    double commonestStep() const { return steps_.commonest(); }

private:
    struct Baseline {
        double last;
        std::size_t groups;
    };
    struct Moment {
        std::uint64_t baseline;
        double time;
    };
    static std::uint64_t keyOf(int subarray, int first, int second)
    {
        const auto part = [](int number) {
            return std::uint64_t{static_cast<std::uint32_t>(number)};
        };
        return part(subarray) << 48 ^ part(first) << 24 ^ part(second);
    }
    template <class Take>
    int forEach(const Take& take)
    {
        constexpr int what = UvGroups::times | UvGroups::baselines | UvGroups::origins;
        const std::int64_t all = file_.header().groups;
        for (std::int64_t next = 0; next < all;) {
            const auto count =
                static_cast<int>(std::min<std::int64_t>(file_.blockGroups(), all - next));
            if (count < 1 || !file_.readGroups(next, count, what, groups_))
                return 0;
            for (std::size_t i = 0; i < static_cast<std::size_t>(count); ++i)
                if ((subarray_ < 0 || groups_.subarray[i] == subarray_) &&
                    (selection_ < 0 || groups_.selection[i] == selection_) &&
                    std::isfinite(groups_.time[i]))
                    take(keyOf(groups_.subarray[i], groups_.antenna1[i], groups_.antenna2[i]),
                         groups_.time[i] * secondsPerDay);
            next += count;
        }
        return 1;
    }
    void takeStep(std::uint64_t key, double time)
    {
        span_.take(time, time);
        if (baselines_.size() >= mostBaselines && !baselines_.contains(key))
            return;
        const auto [found, isNew] = baselines_.try_emplace(key, Baseline{time, 0});
        Baseline& baseline = found->second;
        if (!isNew)
            steps_.add(time - baseline.last);
        isInOrder_ = isInOrder_ && time >= baseline.last;
        baseline.last = time;
        ++baseline.groups;
    }
    /// The steps of groups that do not come in order of time, of as many baselines as memory should
    /// hold.
    int readSorted()
    {
        std::size_t kept = 0;
        std::erase_if(baselines_, [&](const auto& each) {
            const bool isTooMuch = kept > 0 && kept + each.second.groups > mostSorted;
            kept += isTooMuch ? 0 : each.second.groups;
            return isTooMuch;
        });
        std::vector<Moment> moments;
        if (!forEach([&](std::uint64_t key, double time) {
                if (moments.size() < mostSorted && baselines_.contains(key))
                    moments.push_back({key, time});
            }))
            return 0;
        std::sort(moments.begin(), moments.end(), [](const Moment& a, const Moment& b) {
            return std::tie(a.baseline, a.time) < std::tie(b.baseline, b.time);
        });
        for (std::size_t i = 1; i < moments.size(); ++i)
            if (moments[i].baseline == moments[i - 1].baseline)
                steps_.add(moments[i].time - moments[i - 1].time);
        return 1;
    }

    AUVXFile& file_;
    int subarray_, selection_;
    UvGroups groups_;
    Span span_;
    std::unordered_map<std::uint64_t, Baseline> baselines_;
    TimeSteps steps_;
    bool isInOrder_ = true;
};

}  // namespace

int readObservedTimes(AUVXFile& file, int subarray, int selection, ObservedTimes& times)
{
    times = {};
    try {
        GroupTimes groups(file, subarray, selection);
        if (!groups.read() || groups.span().isEmpty())
            return 0;
        Span span;
        for (const UvScan& scan : file.scans())
            if ((subarray < 0 || scan.subarray == subarray) &&
                (selection < 0 || scan.selection == selection))
                span.take(scan.start * secondsPerDay, scan.end * secondsPerDay);
        if (span.isEmpty())
            span = groups.span();
        times = {span.first, span.last, groups.commonestStep()};
        return 1;
    } catch (const std::bad_alloc&) {
        times = {};
        return 0;
    }
}

}  // namespace pavane
