#include "pavane/calibration/closure_sets.h"

#include "pavane/calibration/SumBasis.h"

#include <algorithm>
#include <map>
#include <numeric>
#include <set>
#include <tuple>

namespace pavane
{

namespace
{

/// More telescopes of a subarray than any array has.
constexpr std::size_t mostTelescopes = 1024;
constexpr int mostOfQuads = 128;

/// Groups of the baselines between the telescopes of one subarray, stored either way.
class Joins
{
public:
    Joins(std::vector<int> numbers, int subarray, const std::vector<UvBaseline>& baselines)
        : numbers_(std::move(numbers)), groups_(numbers_.size() * numbers_.size())
    {
        for (const UvBaseline& b : baselines) {
            const int i = b.subarray == subarray ? indexOf(b.first) : -1;
            const int j = b.subarray == subarray ? indexOf(b.second) : -1;
            if (i < 0 || j < 0 || i == j || b.groups <= 0)
                continue;
            groups(i, j) += b.groups;
            groups(j, i) = groups(i, j);
        }
    }
    int count() const { return static_cast<int>(numbers_.size()); }
    int number(int i) const { return numbers_[static_cast<std::size_t>(i)]; }
    std::int64_t groups(int i, int j) const { return groups_[at(i, j)]; }

private:
    std::size_t at(int i, int j) const
    {
        return static_cast<std::size_t>(i) * numbers_.size() + static_cast<std::size_t>(j);
    }
    std::int64_t& groups(int i, int j) { return groups_[at(i, j)]; }
    int indexOf(int number) const
    {
        const auto found = std::lower_bound(numbers_.begin(), numbers_.end(), number);
        return found != numbers_.end() && *found == number
                   ? static_cast<int>(found - numbers_.begin())
                   : -1;
    }

    std::vector<int> numbers_;
    std::vector<std::int64_t> groups_;
};

/// Whether a set of telescopes of a subarray is of a kind.
template <std::size_t count>
int isOfKind(const ClosureKind& kind, int subarray, const std::array<int, count>& numbers)
{
    if (kind.set != ClosureKind::withTelescope && kind.set != ClosureKind::within)
        return 1;
    const auto isNamed = [&](int number) {
        const ClosureTelescope one = {subarray, number};
        return std::find(kind.telescopes.begin(), kind.telescopes.end(), one) !=
               kind.telescopes.end();
    };
    return kind.set == ClosureKind::within ? std::all_of(numbers.begin(), numbers.end(), isNamed)
                                           : std::any_of(numbers.begin(), numbers.end(), isNamed);
}

/// Calls `each` with what joins the telescopes of each subarray.
template <class Each>
void ofSubarrays(const std::vector<ClosureTelescope>& telescopes,
                 const std::vector<UvBaseline>& baselines, Each each)
{
    std::map<int, std::set<int>> numbers;
    for (const ClosureTelescope& one : telescopes)
        numbers[one.subarray].insert(one.number);
    for (const auto& [subarray, set] : numbers)
        if (set.size() <= mostTelescopes)
            each(subarray, Joins({set.begin(), set.end()}, subarray, baselines));
}

/// Indices of baselines as they are met, either way.
class BaselineIndex
{
public:
    SumTerm term(int subarray, int a, int b)
    {
        const auto key = std::tuple(subarray, std::min(a, b), std::max(a, b));
        return {indices_.emplace(key, indices_.size()).first->second, a < b ? 1 : -1};
    }
    std::size_t count() const { return indices_.size(); }

private:
    std::map<std::tuple<int, int, int>, std::size_t> indices_;
};

/// Of items with points and sums of baselines those of an independent set, in their order.
template <class Item, class Sums>
std::vector<Item> independentOf(const std::vector<Item>& items, int greatest, const Sums& sums,
                                std::size_t baselines)
{
    std::vector<std::size_t> order(items.size());
    std::iota(order.begin(), order.end(), std::size_t{0});
    std::stable_sort(order.begin(), order.end(), [&](std::size_t a, std::size_t b) {
        return items[a].points > items[b].points;
    });
    if (baselines > mostJoined)
        return {};
    SumBasis basis(baselines);
    std::vector<char> taken(items.size());
    for (const std::size_t i : order) {
        if (basis.rank() >= greatest)
            break;
        taken[i] = static_cast<char>(basis.add(sums[i]));
    }
    std::vector<Item> result;
    for (std::size_t i = 0; i < items.size(); ++i)
        if (taken[i])
            result.push_back(items[i]);
    return result;
}

/// What the cycles of a graph span: edges less vertices and its parts. No sums of triangles can be
/// more; where all are found there is nothing left to look at.
int cyclesOf(const std::vector<ClosureTriangle>& triangles)
{
    std::map<ClosureTelescope, std::size_t> vertex;
    std::vector<std::size_t> parent;
    std::set<std::pair<std::size_t, std::size_t>> edges;
    const auto of = [&](int subarray, int number) {
        const auto [found, isNew] =
            vertex.emplace(ClosureTelescope{subarray, number}, parent.size());
        if (isNew)
            parent.push_back(parent.size());
        return found->second;
    };
    const auto root = [&](std::size_t i) {
        while (parent[i] != i)
            i = parent[i] = parent[parent[i]];
        return i;
    };
    int joined = 0;
    for (const ClosureTriangle& t : triangles)
        for (std::size_t k = 0; k < 3; ++k) {
            const std::size_t a = of(t.subarray, t.telescopes[k]);
            const std::size_t b = of(t.subarray, t.telescopes[(k + 1) % 3]);
            edges.emplace(std::min(a, b), std::max(a, b));
            if (const std::size_t from = root(a), to = root(b); from != to) {
                parent[from] = to;
                ++joined;
            }
        }
    return static_cast<int>(edges.size()) - joined;
}

}  // namespace

std::vector<ClosureTelescope> telescopesOf(const std::vector<UvBaseline>& baselines)
{
    std::set<ClosureTelescope> found;
    for (const UvBaseline& b : baselines)
        for (const int number : {b.first, b.second})
            found.insert({b.subarray, number});
    return {found.begin(), found.end()};
}

std::vector<ClosureTriangle> independentTriangles(const std::vector<ClosureTriangle>& triangles)
{
    BaselineIndex baselines;
    std::vector<std::array<SumTerm, 3>> sums;
    for (const ClosureTriangle& t : triangles) {
        const auto& [a, b, c] = t.telescopes;
        sums.push_back({baselines.term(t.subarray, a, b), baselines.term(t.subarray, b, c),
                        baselines.term(t.subarray, c, a)});
    }
    return independentOf(triangles, cyclesOf(triangles), sums, baselines.count());
}

std::vector<ClosureTriangle> closureTriangles(const std::vector<ClosureTelescope>& telescopes,
                                              const std::vector<UvBaseline>& baselines,
                                              const ClosureKind& kind)
{
    std::vector<ClosureTriangle> triangles;
    ofSubarrays(telescopes, baselines, [&](int subarray, const Joins& joins) {
        for (int a = 0; a < joins.count(); ++a)
            for (int b = a + 1; b < joins.count(); ++b)
                for (int c = b + 1; joins.groups(a, b) && c < joins.count(); ++c) {
                    const std::int64_t points =
                        std::min({joins.groups(a, b), joins.groups(b, c), joins.groups(a, c)});
                    const std::array numbers = {joins.number(a), joins.number(b), joins.number(c)};
                    if (points && isOfKind(kind, subarray, numbers) &&
                        triangles.size() <= mostTriangles)
                        triangles.push_back({subarray, numbers, points});
                }
    });
    if (triangles.size() > mostTriangles)
        triangles.clear();
    return kind.set == ClosureKind::independent ? independentTriangles(triangles) : triangles;
}

std::vector<ClosureQuad> closureQuads(const std::vector<ClosureTelescope>& telescopes,
                                      const std::vector<UvBaseline>& baselines,
                                      const ClosureKind& kind)
{
    std::vector<ClosureQuad> quads;
    BaselineIndex index;
    std::vector<std::array<SumTerm, 4>> sums;
    const auto add = [&](int subarray, const std::array<int, 4>& q, std::int64_t points) {
        if (!isOfKind(kind, subarray, q) || quads.size() > mostTriangles)
            return;
        quads.push_back({subarray, q, points});
        const auto amplitude = [&](std::size_t i, std::size_t j, int sign) {
            return SumTerm{index.term(subarray, q[i], q[j]).of, sign};
        };
        sums.push_back(
            {amplitude(0, 1, 1), amplitude(2, 3, 1), amplitude(0, 2, -1), amplitude(1, 3, -1)});
    };
    ofSubarrays(telescopes, baselines, [&](int subarray, const Joins& joins) {
        const auto legs = [&](int a, int b, int c, int d) {
            return std::min(
                {joins.groups(a, b), joins.groups(c, d), joins.groups(a, c), joins.groups(b, d)});
        };
        const int last = joins.count() <= mostOfQuads ? joins.count() : 0;
        for (int a = 0; a < last; ++a)
            for (int b = a + 1; b < joins.count(); ++b)
                for (int c = b + 1; c < joins.count(); ++c)
                    for (int d = c + 1; d < joins.count(); ++d)
                        // the ratios of the three ways to pair four telescopes
                        for (const auto& [i, j, k, l] :
                             {std::array{a, b, c, d}, {a, b, d, c}, {a, c, d, b}})
                            if (const std::int64_t points = legs(i, j, k, l))
                                add(subarray,
                                    {joins.number(i), joins.number(j), joins.number(k),
                                     joins.number(l)},
                                    points);
    });
    if (quads.size() > mostTriangles)
        return {};
    if (kind.set != ClosureKind::independent)
        return quads;
    return independentOf(quads, static_cast<int>(index.count()), sums, index.count());
}

}  // namespace pavane
