// How often a file is read: which triangles and quads are an independent set, and what of it is
// still to be read.
#include "pavane/calibration/ClosureReader.h"
#include "pavane/calibration/series_order.h"

#include <algorithm>
#include <limits>
#include <map>
#include <set>
#include <tuple>
#include <utility>

namespace pavane
{

namespace
{

/// What the first pass of an independent set is of all that is done.
constexpr double shareOfFirst = 0.7;
/// Triangles and quads of which a set is chosen beforehand.
constexpr std::size_t mostGuessed = 1 << 15;
constexpr const char* noPoints =
    "has no telescopes whose baselines all have good visibilities at one time";

/// Of those that have points.
template <class Item>
std::vector<Item> withPoints(std::vector<Item> items)
{
    std::erase_if(items, [](const Item& item) { return item.points <= 0; });
    return items;
}

}  // namespace

void ClosureReader::takeBaselines(const std::vector<UvBaseline>& baselines)
{
    choice_.isOfFile = 0;
    choice_.triangles = closureTriangles(telescopesOf(baselines), baselines);
    if (choice_.triangles.empty())
        error_ = whyNoTriangles(baselines);
}

int ClosureReader::findTriangles(std::int64_t bytes)
{
    share_ = (1 - shareOfFirst) / 2;
    if (scan_->step(bytes))
        return 1;
    before_ = done();
    error_ = scan_->error();
    if (error_.empty())
        takeBaselines(scan_->foundBaselines());
    scan_.reset();
    return error_.empty();
}

void ClosureReader::beginPass()
{
    share_ = (1 - before_) * (choice_.independent ? shareOfFirst : 1);
    if (choice_.independent)
        counter_ = std::make_unique<ClosureCounter>(std::exchange(choice_.triangles, {}),
                                                    std::exchange(choice_.quads, {}));
    setLegs();
    reader_ = std::make_unique<MomentReader>(file_, marks_, averaging_.split, legs_.baselines,
                                             model_.count() > 0, choice_.independent);
}

/// The legs of what is chosen; while points are counted the baselines are those of all.
void ClosureReader::setLegs()
{
    legs_ = ClosureLegs(choice_.triangles, choice_.quads,
                        counter_ ? counter_->legs().baselines : std::vector<UvBaseline>());
}

namespace
{

/// An independent set by the points that a sample of the file has.
template <class Item, class Legs, class Choose>
std::vector<Item> likelySet(std::vector<Item> items, const std::vector<Legs>& legs,
                            const std::vector<std::int64_t>& sample, Choose choose)
{
    if (items.size() > mostGuessed)
        return {};
    for (std::size_t i = 0; i < items.size(); ++i) {
        items[i].points = std::numeric_limits<std::int64_t>::max();
        for (const auto& leg : legs[i])
            items[i].points = std::min(items[i].points, sample[leg.baseline]);
    }
    return choose(withPoints(std::move(items)));
}

}  // namespace

void ClosureReader::guess()
{
    const ClosureLegs& all = counter_->legs();
    choice_.triangles =
        likelySet(counter_->triangles(), all.triangles, reader_->sample(), independentTriangles);
    choice_.quads = likelySet(counter_->quads(), all.quads, reader_->sample(), independentQuads);
    setLegs();
}

/// Whether the file has baselines that were not thought possible.
int ClosureReader::hasOthers() const
{
    std::set<std::tuple<int, int, int>> known;
    for (const UvBaseline& b : counter_->legs().baselines)
        known.emplace(b.subarray, b.first, b.second);
    const std::vector<UvBaseline> met = reader_->met();
    return std::any_of(met.begin(), met.end(), [&](const UvBaseline& b) {
        const auto [low, high] = std::minmax(b.first, b.second);
        return low >= 0 && low != high && !known.contains({b.subarray, low, high});
    });
}

/// Non-zero when there is more to read.
int ClosureReader::endPass()
{
    flushAll();
    before_ += share_;
    share_ = 1 - before_;
    if (!counter_ || !error().empty())
        return finish(), 0;
    counter_->finish();
    if (std::exchange(choice_.isOfFile, 0) && hasOthers()) {
        takeBaselines(reader_->met());
        series_.clear();
        points_ = 0;
        reader_.reset();
        return error_.empty();
    }
    ClosureChoice found(independentTriangles(withPoints(counter_->triangles())));
    found.quads = independentQuads(withPoints(counter_->quads()));
    if (found.triangles.empty() && found.quads.empty()) {
        error_ = counter_->quads().empty() ? whyNoTriangles(reader_->met()) : std::string();
        if (error_.empty())
            error_ = noPoints;
    }
    if (!keepOf(std::move(found)))
        return finish(), 0;
    reader_->again();
    restart();
    return 1;
}

namespace
{

/// Moves the series of what stays to its new place; `members` keep what has none yet. What goes is
/// no longer counted among the points.
template <class Item, class Series>
void moveSeries(const std::vector<Item>& from, const std::vector<Item>& to, std::size_t parts,
                std::vector<Series>& series, std::vector<char>& isThere, std::size_t& points)
{
    std::map<std::pair<int, decltype(Item::telescopes)>, std::size_t> places;
    for (std::size_t i = 0; i < to.size(); ++i)
        places.emplace(std::pair(to[i].subarray, to[i].telescopes), i);
    std::vector<Series> moved(to.size() * parts);
    isThere.assign(to.size(), 0);
    for (std::size_t i = 0; i < from.size(); ++i) {
        const auto place = places.find({from[i].subarray, from[i].telescopes});
        for (std::size_t part = 0; part < parts; ++part)
            if (Series& one = series[i * parts + part]; place == places.end())
                points -= one.count();
            else
                moved[place->second * parts + part] = std::move(one);
        if (place != places.end())
            isThere[place->second] = 1;
    }
    series = std::move(moved);
}

}  // namespace

/// Takes the set that was found, with what has been read of it. Non-zero when something is left to
/// be read.
int ClosureReader::keepOf(ClosureChoice found)
{
    std::vector<char> hasTriangle;
    std::vector<char> hasQuad;
    const std::size_t count = parts().size();
    moveSeries(choice_.triangles, found.triangles, count, series_, hasTriangle, points_);
    moveSeries(choice_.quads, found.quads, count, ratios_, hasQuad, points_);
    choice_.triangles = std::move(found.triangles);
    choice_.quads = std::move(found.quads);
    setLegs();
    counter_.reset();
    std::size_t left = 0;
    for (auto& [subarray, members] : legs_.subarrays) {
        std::erase_if(members.triangles, [&](std::size_t t) { return hasTriangle[t] != 0; });
        std::erase_if(members.quads, [&](std::size_t q) { return hasQuad[q] != 0; });
        left += members.count();
    }
    return left > 0;
}

/// Series of several origins have come in turns.
void ClosureReader::finish()
{
    for (ClosureSeries& s : series_)
        sortSeries(s.time, s.phase, s.error, s.amplitude, s.model);
    for (ClosureRatios& r : ratios_)
        sortSeries(r.time, r.ratio, r.error, r.model);
    if (error().empty() && !points_ && !legs_.baselines.empty())
        error_ = noPoints;
    isOver_ = 1;
}

}  // namespace pavane
