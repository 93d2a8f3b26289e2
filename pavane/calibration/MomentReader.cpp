#include "pavane/calibration/MomentReader.h"

#include <algorithm>
#include <cmath>
#include <new>

namespace pavane
{

namespace
{

constexpr std::size_t mostKeys = 1 << 22;
/// Moments of different origins that may be open at once, and how often a file may jump back in
/// time and still be read in its order.
constexpr std::size_t mostOpen = 64, mostRuns = 64;
/// Bytes of moments that are put together at once in files that are read by time.
constexpr std::size_t batchBytes = std::size_t{64} << 20;
constexpr std::size_t mostEntries = std::size_t{1} << 28;

}  // namespace

MomentReader::MomentReader(AUVXFile& file, const UvMarks& marks, const UvSplit& split,
                           const std::vector<UvBaseline>& baselines, int withPlaces, int withSample)
    : file_(file), marks_(marks), choice_(file, marks_), split_(split),
      baselines_(baselines.size()),
      what_(UvGroups::baselines | UvGroups::origins | UvGroups::times | UvGroups::cellValues |
            UvGroups::storedCells | (withPlaces ? UvGroups::places : 0)),
      withSample_(withSample), kinds_(mostKeys), origins_(mostKeys)
{
    for (std::size_t i = 0; i < baselines.size(); ++i) {
        const UvBaseline& b = baselines[i];
        wanted_[{b.subarray, b.first, b.second}] = {static_cast<int>(i), 1};
        wanted_[{b.subarray, b.second, b.first}] = {static_cast<int>(i), -1};
    }
}

double MomentReader::done() const
{
    const auto share = [](auto part, auto all) {
        return all > 0 ? static_cast<double>(part) / static_cast<double>(all) : 1;
    };
    const auto after = [&](double part) { return before_ + (1 - before_) * part; };
    constexpr double shareOfIndex = 0.3;
    switch (phase_) {
    case Phase::start:
        return 0;
    case Phase::inOrder:
        return share(next_, file_.header().groups);
    case Phase::index:
        return after(shareOfIndex * share(next_, file_.header().groups));
    case Phase::byTime:
        return after(shareOfIndex + (1 - shareOfIndex) * share(entry_, entries_.size()));
    default:
        return 1;
    }
}

int MomentReader::step(std::int64_t bytes, MomentSink& sink)
{
    if (!error_.empty() || phase_ == Phase::over)
        return 0;
    try {
        return goOn(bytes, sink);
    } catch (const std::bad_alloc&) {
        error_ = "needs more memory than there is";
        return 0;
    }
}

int MomentReader::readBlock(std::int64_t first, std::int64_t count, int what)
{
    if (file_.readGroups(first, static_cast<int>(count), what, groups_))
        return 1;
    error_ = "has become shorter while it was read";
    return 0;
}

void MomentReader::again()
{
    next_ = 0;
    entry_ = opened_ = 0;
    given_.clear();
    before_ = 0;
    phase_ = isByTime_ ? Phase::byTime : Phase::inOrder;
}

std::vector<UvBaseline> MomentReader::met() const
{
    std::vector<UvBaseline> found;
    for (const auto& [key, kind] : kinds_.items())
        found.push_back({key.pair.subarray, key.pair.first, key.pair.second, 1});
    return found;
}

int MomentReader::goOn(std::int64_t bytes, MomentSink& sink)
{
    if (phase_ == Phase::start) {
        cells_ = UvCells(file_, choice_, split_);
        measureStep();
        if (withSample_ && error_.empty())
            takeSample();
        if (!error_.empty())
            return 0;
        sink.restart();
        phase_ = Phase::inOrder;
    }
    const std::int64_t groups = file_.header().groups;
    std::int64_t left = bytes;
    while (left > 0 && error_.empty() && (phase_ == Phase::inOrder || phase_ == Phase::index)) {
        const std::int64_t count = std::min<std::int64_t>(file_.blockGroups(), groups - next_);
        if (count <= 0) {
            if (phase_ == Phase::inOrder) {
                closeAll(sink);
                phase_ = Phase::over;
                return 0;
            }
            std::stable_sort(entries_.begin(), entries_.end(), [](const Entry& a, const Entry& b) {
                return std::tie(a.origin, a.time) < std::tie(b.origin, b.time);
            });
            phase_ = Phase::byTime;
            break;
        }
        const int isIndex = phase_ == Phase::index;
        if (!readBlock(next_, count, isIndex ? what_ & ~UvGroups::cellValues : what_))
            return 0;
        next_ += count;
        left -= count * file_.groupBytes();
        for (std::size_t i = 0; i < static_cast<std::size_t>(count); ++i) {
            if (!isWanted(i))
                continue;
            if (isIndex)
                addEntry(i);
            else if (!takeInOrder(i, sink)) {
                sink.restart();
                before_ = done();
                opened_ = 0;
                next_ = 0;
                isByTime_ = 1;
                phase_ = Phase::index;
                break;
            }
        }
    }
    while (left > 0 && error_.empty() && phase_ == Phase::byTime) {
        left -= static_cast<std::int64_t>(batchBytes);
        if (!takeBatch(sink))
            phase_ = Phase::over;
    }
    return error_.empty() && phase_ != Phase::over;
}

const MomentReader::Kind& MomentReader::kindOf(std::size_t i)
{
    const UvPair pair = {groups_.subarray[i], groups_.antenna1[i], groups_.antenna2[i]};
    Kind* const known = kinds_.of({pair, groups_.source[i], groups_.selection[i]}, {});
    if (known && known->isKnown && !choice_.dependsOnScans())
        return *known;
    Kind& kind = known ? *known : other_;
    kind = Kind();
    kind.isKnown = 1;
    if (const auto found = wanted_.find({pair.subarray, pair.first, pair.second});
        found != wanted_.end()) {
        kind.leg = found->second;
        kind.frequencies = choice_.frequenciesOf(groups_, i);
        kind.origin = kind.frequencies ? originOf(i) : -1;
    }
    return kind;
}

/// -1 when there are too many.
int MomentReader::originOf(std::size_t i)
{
    const auto fresh = static_cast<int>(origins_.items().size());
    const int* const origin =
        origins_.of({groups_.subarray[i], groups_.source[i], groups_.selection[i]}, fresh);
    return origin ? *origin : -1;
}

void MomentReader::begin(UvMoment& moment, int origin, const double* frequencies, double time) const
{
    const UvPair& key = origins_.items()[static_cast<std::size_t>(origin)].key;
    moment.origin = origin;
    moment.subarray = key.subarray;
    moment.source = key.first;
    moment.selection = key.second;
    moment.first = moment.last = time;
    moment.frequencies = frequencies;
    moment.legs.resize(baselines_);
    moment.has.assign(baselines_, 0);
}

void MomentReader::put(UvMoment& moment, std::size_t i, const Leg& leg, double time) const
{
    const auto b = static_cast<std::size_t>(leg.baseline);
    moment.first = std::min(moment.first, time);
    moment.last = std::max(moment.last, time);
    // a leg without a visibility that counts is a missing one
    moment.has[b] = static_cast<char>(
        moment.legs[b].take(groups_, static_cast<int>(i), cells_, moment.frequencies, leg.sign));
}

// --- in the order of the file

void MomentReader::closeOthers(double time, MomentSink& sink)
{
    for (std::size_t k = 0; k < opened_;) {
        if (fits(open_[k], time)) {
            ++k;
            continue;
        }
        sink.take(open_[k]);
        std::vector<std::vector<double>>& runs =
            given_[static_cast<std::size_t>(openOrigin_[k])].runs;
        runs.back().push_back(open_[k].last);
        --opened_;
        std::swap(open_[k], open_[opened_]);
        openOrigin_[k] = openOrigin_[opened_];
    }
}

void MomentReader::closeAll(MomentSink& sink)
{
    for (std::size_t k = 0; k < opened_; ++k)
        sink.take(open_[k]);
    opened_ = 0;
}

/// Whether moments of about this time have been given already; begins a run where it does not rise
/// above the last one. A run that began below another one may rise through its times.
int MomentReader::isGiven(int origin, double time)
{
    const auto at = static_cast<std::size_t>(origin);
    if (at >= given_.size())
        given_.resize(at + 1);
    std::vector<std::vector<double>>& runs = given_[at].runs;
    const bool isRising = !runs.empty() && time > runs.back().back();
    const std::size_t before = isRising ? runs.size() - 1 : runs.size();
    for (std::size_t r = 0; r < before; ++r) {
        const std::vector<double>& run = runs[r];
        const auto near = std::lower_bound(run.begin(), run.end(), time - 2 * half_);
        if (near != run.end() && *near <= time + 2 * half_)
            return 1;
    }
    if (isRising)
        return 0;
    if (runs.size() >= mostRuns)
        return 1;
    runs.emplace_back();
    return 0;
}

/// 0 when the file cannot be read in its order.
int MomentReader::takeInOrder(std::size_t i, MomentSink& sink)
{
    const double time = groups_.time[i];
    // most groups are of the time of the one before
    if (opened_ != 1 || time != open_.front().last)
        closeOthers(time, sink);
    const Kind& kind = kindOf(i);
    if (kind.origin < 0)
        return 1;
    const auto b = static_cast<std::size_t>(kind.leg.baseline);
    std::size_t k = 0;
    while (k < opened_ && openOrigin_[k] != kind.origin)
        ++k;
    if (k < opened_ && open_[k].has[b])
        return 0;  // the baseline comes twice: what belongs together is found out by time
    if (k == opened_) {
        if (opened_ >= mostOpen || isGiven(kind.origin, time))
            return 0;
        if (opened_ == open_.size()) {
            open_.emplace_back();
            openOrigin_.push_back(0);
        }
        openOrigin_[k] = kind.origin;
        begin(open_[k], kind.origin, kind.frequencies, time);
        ++opened_;
    }
    put(open_[k], i, kind.leg, time);
    return 1;
}

// --- by time

void MomentReader::addEntry(std::size_t i)
{
    const Kind& kind = kindOf(i);
    if (kind.origin < 0)
        return;
    if (entries_.size() >= mostEntries) {
        error_ = "has too many groups that are in no order of time";
        return;
    }
    entries_.push_back(
        {groups_.time[i], groups_.first + static_cast<std::int64_t>(i), kind.origin, kind.leg});
}

/// The first entry behind the moment that begins with entry `from`.
std::size_t MomentReader::nextMoment(std::size_t from) const
{
    const Entry& first = entries_[from];
    std::size_t end = from + 1;
    const auto isAgain = [&](const Entry& entry) {
        // looked for from the end: a baseline comes again after all the others
        for (std::size_t k = end; k-- > from;)
            if (entries_[k].leg.baseline == entry.leg.baseline)
                return entry.time - entries_[k].time > leastHalf;
        return false;
    };
    while (end < entries_.size() && entries_[end].origin == first.origin &&
           entries_[end].time - first.time <= half_ && !isAgain(entries_[end]))
        ++end;
    return end;
}

/// 0 when there are no more moments.
int MomentReader::takeBatch(MomentSink& sink)
{
    struct Wanted {
        std::int64_t group;
        std::size_t moment;
        Leg leg;
        double time;
        int origin;
    };
    const std::size_t legBytes = sizeof(UvLeg) + 6 * sizeof(float) * cells_.count();
    const std::size_t momentBytes = (baselines_ + 1) * legBytes;
    const std::size_t moments = std::max<std::size_t>(batchBytes / momentBytes, 1);
    std::vector<Wanted> wanted;
    std::size_t count = 0;
    for (; count < moments && entry_ < entries_.size(); ++count) {
        const std::size_t end = nextMoment(entry_);
        for (; entry_ < end; ++entry_) {
            const Entry& e = entries_[entry_];
            wanted.push_back({e.group, count, e.leg, e.time, e.origin});
        }
    }
    std::sort(wanted.begin(), wanted.end(),
              [](const Wanted& a, const Wanted& b) { return a.group < b.group; });
    if (open_.size() < count)
        open_.resize(count);
    std::vector<char> begun(count);
    for (std::size_t w = 0; w < wanted.size();) {
        std::size_t end = w + 1;
        while (end < wanted.size() && wanted[end].group == wanted[end - 1].group + 1 &&
               end - w < static_cast<std::size_t>(file_.blockGroups()))
            ++end;
        if (!readBlock(wanted[w].group, static_cast<std::int64_t>(end - w), what_))
            return 0;
        for (std::size_t i = 0; w < end; ++w, ++i) {
            const Wanted& one = wanted[w];
            UvMoment& moment = open_[one.moment];
            const double* const frequencies = choice_.frequenciesOf(groups_, i);
            if (!frequencies)
                continue;
            if (!begun[one.moment]) {
                begin(moment, one.origin, frequencies, one.time);
                begun[one.moment] = 1;
            }
            if (!moment.has[static_cast<std::size_t>(one.leg.baseline)])
                put(moment, i, one.leg, one.time);
        }
    }
    for (std::size_t k = 0; k < count; ++k)
        if (begun[k])
            sink.take(open_[k]);
    return entry_ < entries_.size();
}

}  // namespace pavane
