#include "pavane/calibration/closure_sets.h"
#include "pavane/calibration/SumBasis.h"
#include "tessel/uvfits/Distinct.h"

#include <algorithm>
#include <numeric>
#include <utility>

namespace pavane
{

namespace
{

/// More telescopes and baselines than the triangles that there may be can have.
constexpr std::size_t mostMet = 4 * mostTriangles;
/// Telescopes of independent quads.
constexpr std::size_t mostLinked = 256;

/// Most points first.
template <class Item>
std::vector<std::size_t> byPoints(const std::vector<Item>& items)
{
    std::vector<std::size_t> order(items.size());
    std::iota(order.begin(), order.end(), std::size_t{0});
    std::stable_sort(order.begin(), order.end(), [&](std::size_t a, std::size_t b) {
        return items[a].points > items[b].points;
    });
    return order;
}

/// Telescopes and the baselines between them, as indices; baselines in the order in which they are
/// met. So the rarest of a sum comes last, and the rows of the basis stay short.
class Joined
{
public:
    /// Index of a telescope, a new one at the first time.
    std::size_t indexOf(int subarray, int number)
    {
        const std::size_t fresh = telescopes();
        const std::size_t* const index = telescopes_.of({subarray, number}, fresh);
        if (index && *index == fresh) {
            parent_.push_back(fresh);
            isOdd_.push_back(0);
            isMixed_.push_back(0);
        }
        return index ? *index : 0;
    }
    std::size_t telescopes() const { return parent_.size(); }
    std::size_t baselines() const { return edges_.items().size(); }
    /// The baseline from one telescope to another, -1 when it is met the other way.
    SumTerm of(std::size_t a, std::size_t b)
    {
        const Edge edge = {static_cast<std::uint32_t>(std::min(a, b)),
                           static_cast<std::uint32_t>(std::max(a, b))};
        const std::size_t fresh = baselines();
        const std::size_t* const index = edges_.of(edge, fresh);
        if (index && *index == fresh)
            join(a, b);
        return {index ? *index : fresh, a < b ? 1 : -1};
    }
    /// What sums around triangles span at most: the cycles of the baselines.
    int cycles() const { return differences() + parts(0); }
    /// What sums span at most that know nothing of a factor of each telescope. Where a part has no
    /// odd cycle, the factors of its two sides may be turned against each other.
    int withoutGains() const { return differences() + parts(1); }

private:
    struct Telescope {
        int subarray, number;
        bool operator==(const Telescope&) const = default;
        std::uint64_t hash() const
        {
            return spread(std::uint64_t{static_cast<std::uint32_t>(subarray)} << 32 |
                          static_cast<std::uint32_t>(number));
        }
    };
    struct Edge {
        std::uint32_t a, b;
        bool operator==(const Edge&) const = default;
        std::uint64_t hash() const { return spread(std::uint64_t{a} << 32 | b); }
    };
    /// The root of a telescope; `odd` turns where the way to it is of an odd length.
    std::size_t root(std::size_t i, char& odd) const
    {
        for (; parent_[i] != i; i = parent_[i])
            odd = static_cast<char>(odd ^ isOdd_[i]);
        return i;
    }
    void join(std::size_t a, std::size_t b)
    {
        char odd = 1;
        const std::size_t from = root(a, odd);
        const std::size_t to = root(b, odd);
        isMixed_[to] = static_cast<char>(isMixed_[to] | isMixed_[from]);
        if (from == to)
            isMixed_[to] = static_cast<char>(isMixed_[to] | odd);
        else {
            parent_[from] = to;
            isOdd_[from] = odd;
        }
    }
    int differences() const
    {
        return static_cast<int>(baselines()) - static_cast<int>(telescopes());
    }
    int parts(int withoutOdd) const
    {
        int count = 0;
        for (std::size_t i = 0; i < parent_.size(); ++i)
            count += parent_[i] == i && !(withoutOdd && isMixed_[i]);
        return count;
    }

    Distinct<Telescope, std::size_t> telescopes_{mostMet};
    Distinct<Edge, std::size_t> edges_{mostMet};
    std::vector<std::size_t> parent_;
    std::vector<char> isOdd_;    ///< whether the way to the parent is
    std::vector<char> isMixed_;  ///< of a root: whether its part has an odd cycle
};

/// The triangles met so far, as the third telescopes of each baseline.
class Faces
{
public:
    Faces(std::size_t baselines, std::size_t telescopes)
        : words_((telescopes + 63) / 64), thirds_(baselines * words_)
    {
    }
    /// Takes a triangle in. Non-zero when it is the last of the four of some tetrahedron: then its
    /// sum is that of the others.
    int isLast(const std::array<SumTerm, 3>& sides, const std::array<std::size_t, 3>& corners)
    {
        std::uint64_t all = 0;
        for (std::size_t w = 0; w < words_; ++w)
            all |= at(sides[0], w) & at(sides[1], w) & at(sides[2], w);
        for (std::size_t k = 0; k < 3; ++k) {
            const std::size_t across = corners[(k + 2) % 3];
            at(sides[k], across / 64) |= std::uint64_t{1} << across % 64;
        }
        return all != 0;
    }

private:
    std::uint64_t& at(const SumTerm& side, std::size_t word)
    {
        return thirds_[side.of * words_ + word];
    }

    std::size_t words_;
    std::vector<std::uint64_t> thirds_;
};

/// The quads met so far. A quad is the difference of x(b, .) - x(c, .) at two telescopes, a and d:
/// of a pair b, c the telescopes that are linked so.
class Links
{
public:
    explicit Links(std::size_t telescopes) : telescopes_(telescopes)
    {
        next_.resize(telescopes * telescopes * telescopes);
        for (std::size_t i = 0; i < next_.size(); ++i)
            next_[i] = static_cast<std::uint16_t>(i % telescopes);
    }
    /// Links a and d for the pair b, c; non-zero when they were linked before.
    int areLinked(std::size_t b, std::size_t c, std::size_t a, std::size_t d)
    {
        const std::size_t pair = std::min(b, c) * telescopes_ + std::max(b, c);
        const std::size_t from = root(pair, a);
        const std::size_t to = root(pair, d);
        next_[pair * telescopes_ + from] = static_cast<std::uint16_t>(to);
        return from == to;
    }

private:
    std::size_t root(std::size_t pair, std::size_t i)
    {
        std::uint16_t* const next = next_.data() + pair * telescopes_;
        while (next[i] != i)
            i = next[i] = next[next[i]];
        return i;
    }

    std::size_t telescopes_;
    std::vector<std::uint16_t> next_;
};

template <class Item>
std::vector<Item> takenOf(const std::vector<Item>& items, const std::vector<char>& taken)
{
    std::vector<Item> result;
    for (std::size_t i = 0; i < items.size(); ++i)
        if (taken[i])
            result.push_back(items[i]);
    return result;
}

/// The indices of an item's telescopes.
template <class Item>
auto cornersOf(Joined& joined, const Item& item)
{
    std::array<std::size_t, std::tuple_size_v<decltype(item.telescopes)>> corners{};
    for (std::size_t k = 0; k < corners.size(); ++k)
        corners[k] = joined.indexOf(item.subarray, item.telescopes[k]);
    return corners;
}

}  // namespace

std::vector<ClosureTriangle> independentTriangles(const std::vector<ClosureTriangle>& triangles)
{
    struct Sum {
        std::array<std::size_t, 3> corners;
        std::array<SumTerm, 3> sides;
    };
    Joined joined;
    const std::vector<std::size_t> order = byPoints(triangles);
    std::vector<Sum> sums;
    sums.reserve(order.size());
    for (const std::size_t i : order) {
        const auto corners = cornersOf(joined, triangles[i]);
        const auto [a, b, c] = corners;
        sums.push_back({corners, {joined.of(a, b), joined.of(b, c), joined.of(c, a)}});
    }
    if (joined.baselines() > mostJoined)
        return {};
    SumBasis basis(joined.baselines());
    Faces faces(joined.baselines(), joined.telescopes());
    std::vector<char> taken(triangles.size());
    const int most = joined.cycles();
    for (std::size_t k = 0; k < order.size() && basis.rank() < most; ++k)
        if (!faces.isLast(sums[k].sides, sums[k].corners))
            taken[order[k]] = static_cast<char>(basis.add(sums[k].sides));
    return takenOf(triangles, taken);
}

std::vector<ClosureQuad> independentQuads(const std::vector<ClosureQuad>& quads)
{
    struct Sum {
        std::array<std::size_t, 4> corners;
        std::array<SumTerm, 4> terms;
    };
    Joined joined;
    const std::vector<std::size_t> order = byPoints(quads);
    std::vector<Sum> sums;
    sums.reserve(order.size());
    for (const std::size_t i : order) {
        const auto corners = cornersOf(joined, quads[i]);
        const auto [a, b, c, d] = corners;
        sums.push_back({corners,
                        {SumTerm{joined.of(a, b).of, 1}, SumTerm{joined.of(c, d).of, 1},
                         SumTerm{joined.of(a, c).of, -1}, SumTerm{joined.of(b, d).of, -1}}});
    }
    const std::size_t telescopes = joined.telescopes();
    if (joined.baselines() > mostJoined || telescopes > mostLinked)
        return {};
    SumBasis basis(joined.baselines());
    Links links(telescopes);
    std::vector<char> taken(quads.size());
    const int most = joined.withoutGains();
    for (std::size_t k = 0; k < order.size() && basis.rank() < most; ++k) {
        const auto [a, b, c, d] = sums[k].corners;
        if (links.areLinked(b, c, a, d) + links.areLinked(a, d, b, c) == 0)
            taken[order[k]] = static_cast<char>(basis.add(sums[k].terms));
    }
    return takenOf(quads, taken);
}

}  // namespace pavane
