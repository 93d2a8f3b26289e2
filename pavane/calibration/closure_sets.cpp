#include "pavane/calibration/closure_sets.h"

#include <algorithm>
#include <map>
#include <set>

namespace pavane
{

namespace
{

/// More telescopes of a subarray than any array has.
constexpr std::size_t mostTelescopes = 1024;

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

/// One more than there may be when there are too many.
std::vector<ClosureTriangle> foundTriangles(const std::vector<ClosureTelescope>& telescopes,
                                            const std::vector<UvBaseline>& baselines,
                                            const ClosureKind& kind)
{
    std::vector<ClosureTriangle> triangles;
    ofSubarrays(telescopes, baselines, [&](int subarray, const Joins& joins) {
        for (int a = 0; a < joins.count() && triangles.size() <= mostTriangles; ++a)
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
    return triangles;
}

/// One more than there may be when there are too many.
std::vector<ClosureQuad> foundQuads(const std::vector<ClosureTelescope>& telescopes,
                                    const std::vector<UvBaseline>& baselines,
                                    const ClosureKind& kind)
{
    std::vector<ClosureQuad> quads;
    const auto add = [&](int subarray, const std::array<int, 4>& q, std::int64_t points) {
        if (points && isOfKind(kind, subarray, q) && quads.size() <= mostTriangles)
            quads.push_back({subarray, q, points});
    };
    ofSubarrays(telescopes, baselines, [&](int subarray, const Joins& joins) {
        const auto legs = [&](int a, int b, int c, int d) {
            return std::min(
                {joins.groups(a, b), joins.groups(c, d), joins.groups(a, c), joins.groups(b, d)});
        };
        for (int a = 0; a < joins.count() && quads.size() <= mostTriangles; ++a)
            for (int b = a + 1; b < joins.count(); ++b)
                for (int c = b + 1; c < joins.count() && quads.size() <= mostTriangles; ++c)
                    for (int d = c + 1; d < joins.count(); ++d)
                        // the ratios of the three ways to pair four telescopes
                        for (const auto& [i, j, k, l] :
                             {std::array{a, b, c, d}, {a, b, d, c}, {a, c, d, b}})
                            add(subarray,
                                {joins.number(i), joins.number(j), joins.number(k),
                                 joins.number(l)},
                                legs(i, j, k, l));
    });
    return quads;
}

template <class Item>
std::string whyNone(const std::vector<Item>& found, const char* tooMany, const char* none)
{
    return found.empty()                  ? std::string("has no ") + none
           : found.size() > mostTriangles ? "has more than " + std::to_string(mostTriangles) + " " +
                                                tooMany + "; choose fewer telescopes"
                                          : std::string();
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

std::vector<ClosureTriangle> closureTriangles(const std::vector<ClosureTelescope>& telescopes,
                                              const std::vector<UvBaseline>& baselines,
                                              const ClosureKind& kind)
{
    std::vector<ClosureTriangle> triangles = foundTriangles(telescopes, baselines, kind);
    if (triangles.size() > mostTriangles)
        triangles.clear();
    return kind.set == ClosureKind::independent ? independentTriangles(triangles) : triangles;
}

std::vector<ClosureQuad> closureQuads(const std::vector<ClosureTelescope>& telescopes,
                                      const std::vector<UvBaseline>& baselines,
                                      const ClosureKind& kind)
{
    std::vector<ClosureQuad> quads = foundQuads(telescopes, baselines, kind);
    if (quads.size() > mostTriangles)
        quads.clear();
    return kind.set == ClosureKind::independent ? independentQuads(quads) : quads;
}

std::string whyNoTriangles(const std::vector<UvBaseline>& baselines)
{
    return whyNone(foundTriangles(telescopesOf(baselines), baselines, {}), "triangles",
                   "three telescopes that are all joined");
}

std::string whyNoQuads(const std::vector<UvBaseline>& baselines)
{
    return whyNone(foundQuads(telescopesOf(baselines), baselines, {}), "closure amplitudes",
                   "four telescopes whose baselines make a closure amplitude");
}

}  // namespace pavane
