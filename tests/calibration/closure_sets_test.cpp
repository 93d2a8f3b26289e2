#include "pavane/calibration/closure_point.h"
#include "pavane/calibration/closure_sets.h"

#include <algorithm>
#include <cmath>
#include <gtest/gtest.h>
#include <limits>
#include <random>
#include <set>

namespace pavane
{

namespace
{

/// Rank of rows of real numbers, by elimination with the greatest pivot of all.
int rankOf(std::vector<std::vector<double>> rows)
{
    int rank = 0;
    std::vector<char> used(rows.size());
    while (true) {
        double greatest = 1e-9;
        std::size_t pivot = 0, column = 0;
        for (std::size_t r = 0; r < rows.size(); ++r)
            for (std::size_t c = 0; !used[r] && c < rows[r].size(); ++c)
                if (std::abs(rows[r][c]) > greatest) {
                    greatest = std::abs(rows[r][c]);
                    pivot = r;
                    column = c;
                }
        if (greatest == 1e-9)
            return rank;
        used[pivot] = 1;
        ++rank;
        for (std::size_t r = 0; r < rows.size(); ++r)
            if (const double times = rows[r][column] / rows[pivot][column]; !used[r] && times != 0)
                for (std::size_t c = 0; c < rows[r].size(); ++c)
                    rows[r][c] -= times * rows[pivot][c];
    }
}

std::vector<double> rowOf(const ClosureTriangle& t, int telescopes)
{
    std::vector<double> row(static_cast<std::size_t>(telescopes * telescopes));
    for (std::size_t k = 0; k < 3; ++k) {
        const int a = t.telescopes[k], b = t.telescopes[(k + 1) % 3];
        row[static_cast<std::size_t>(std::min(a, b) * telescopes + std::max(a, b))] +=
            a < b ? 1 : -1;
    }
    return row;
}

/// Of the logarithms of amplitudes.
std::vector<double> rowOf(const ClosureQuad& q, int telescopes)
{
    std::vector<double> row(static_cast<std::size_t>(telescopes * telescopes));
    const struct {
        std::size_t a, b;
        int sign;
    } legs[] = {{0, 1, 1}, {2, 3, 1}, {0, 2, -1}, {1, 3, -1}};
    for (const auto& leg : legs) {
        const auto [low, high] = std::minmax(q.telescopes[leg.a], q.telescopes[leg.b]);
        row[static_cast<std::size_t>(low * telescopes + high)] = leg.sign;
    }
    return row;
}

/// Greedily, each item looked at by the rank of all that were taken before.
template <class Item>
std::vector<Item> bruteForce(std::vector<Item> items, int telescopes)
{
    std::vector<Item> taken, sorted = items;
    std::stable_sort(sorted.begin(), sorted.end(),
                     [](const auto& a, const auto& b) { return a.points > b.points; });
    std::vector<std::vector<double>> rows;
    for (const Item& t : sorted) {
        rows.push_back(rowOf(t, telescopes));
        if (rankOf(rows) == static_cast<int>(rows.size()))
            taken.push_back(t);
        else
            rows.pop_back();
    }
    std::erase_if(items, [&](const Item& t) {
        return std::find(taken.begin(), taken.end(), t) == taken.end();
    });
    return items;
}

std::vector<UvBaseline> randomBaselines(int telescopes, double joined, int most, unsigned seed)
{
    std::mt19937 random(seed);
    std::uniform_real_distribution<> share(0, 1);
    std::vector<UvBaseline> baselines;
    for (int a = 0; a < telescopes; ++a)
        for (int b = a + 1; b < telescopes; ++b)
            if (share(random) < joined) {
                const std::int64_t groups = 1 + static_cast<int>(share(random) * most);
                baselines.push_back(share(random) < 0.5 ? UvBaseline{1, a, b, groups}
                                                        : UvBaseline{1, b, a, groups});
            }
    return baselines;
}

}  // namespace

TEST(ClosureSets, IndependentTrianglesAreThoseOfBruteForce)
{
    for (int n = 0; n <= 9; ++n)
        for (const double joined : {1.0, 0.8, 0.5})
            for (const int most : {1, 50}) {
                const auto baselines = randomBaselines(n, joined, most, unsigned(n + most));
                const auto telescopes = telescopesOf(baselines);
                const auto all = closureTriangles(telescopes, baselines);
                EXPECT_EQ(closureTriangles(telescopes, baselines, {ClosureKind::independent}),
                          bruteForce(all, n))
                    << n << ' ' << joined << ' ' << most;
                // points as they are counted, which need not be those of the rarest baseline
                std::mt19937 random(unsigned(n + most));
                std::vector<ClosureTriangle> counted = all;
                for (ClosureTriangle& t : counted)
                    t.points = static_cast<int>(random() % 50);
                EXPECT_EQ(independentTriangles(counted), bruteForce(counted, n)) << n;
                std::vector<ClosureQuad> quads = closureQuads(telescopes, baselines);
                if (n > 6)
                    continue;
                EXPECT_EQ(independentQuads(quads), bruteForce(quads, n)) << n << ' ' << joined;
                for (ClosureQuad& q : quads)
                    q.points = static_cast<int>(random() % 50);
                EXPECT_EQ(independentQuads(quads), bruteForce(quads, n)) << n << ' ' << joined;
            }
    // of many telescopes the rank alone, which every greedy choice has
    for (const int n : {13, 20})
        for (const double joined : {1.0, 0.4}) {
            const auto baselines = randomBaselines(n, joined, 50, unsigned(n));
            const auto telescopes = telescopesOf(baselines);
            const auto chosen = closureTriangles(telescopes, baselines, {ClosureKind::independent});
            const auto all = closureTriangles(telescopes, baselines);
            std::vector<std::vector<double>> rows;
            for (const ClosureTriangle& t : joined == 1 ? chosen : all)
                rows.push_back(rowOf(t, n));
            EXPECT_EQ(static_cast<int>(chosen.size()), rankOf(rows)) << n;
            EXPECT_TRUE(joined < 1 || static_cast<int>(chosen.size()) == (n - 1) * (n - 2) / 2);
        }
}

TEST(ClosureSets, TenTrianglesOfSixTelescopesAreIndependentOverTheRealNumbers)
{
    // the projective plane of six corners, of which the sum of all triangles is twice a cycle
    const int corners[10][3] = {{1, 2, 3}, {1, 2, 4}, {1, 3, 5}, {1, 4, 6}, {1, 5, 6},
                                {2, 3, 6}, {2, 4, 5}, {2, 5, 6}, {3, 4, 5}, {3, 4, 6}};
    std::vector<ClosureTriangle> triangles;
    for (const auto& c : corners)
        triangles.push_back({1, {c[0], c[1], c[2]}, 5});
    EXPECT_EQ(independentTriangles(triangles).size(), 10u);
}

TEST(ClosureSets, KindsSubarraysAndBaselinesThatJoinNothing)
{
    std::vector<UvBaseline> baselines = {{1, 1, 2, 5}, {1, 3, 1, 4}, {1, 2, 3, 9}, {1, 2, 4, 3},
                                         {1, 4, 3, 2}, {1, 1, 1, 9}, {1, 5, 1, 0}, {1, 5, 2, 7},
                                         {2, 1, 2, 1}, {2, 2, 3, 1}, {2, 3, 1, 6}, {1, 1, 2, 1}};
    const auto all = telescopesOf(baselines);
    const ClosureTriangle a{1, {1, 2, 3}, 4}, b{1, {2, 3, 4}, 2}, c{2, {1, 2, 3}, 1};
    const struct {
        std::vector<ClosureTelescope> telescopes;
        ClosureKind kind;
        std::vector<ClosureTriangle> found;
    } cases[] = {{all, {}, {a, b, c}},
                 {all, {ClosureKind::independent}, {a, b, c}},
                 {all, {ClosureKind::withTelescope, {{1, 4}}}, {b}},
                 {all, {ClosureKind::withTelescope, {{2, 1}}}, {c}},
                 {all, {ClosureKind::within, {{1, 1}, {1, 2}, {1, 3}, {2, 1}}}, {a}},
                 {all, {ClosureKind::within}, {}},
                 {{{1, 1}, {1, 2}, {1, 3}, {1, 9}}, {}, {a}},
                 {{}, {}, {}}};
    for (const auto& one : cases)
        EXPECT_EQ(closureTriangles(one.telescopes, baselines, one.kind), one.found);
    EXPECT_TRUE(closureTriangles(all, {}).empty());
}

TEST(ClosureSets, QuadsOfFullArraysHaveTheirRank)
{
    for (const int n : {3, 4, 5, 8}) {
        const auto baselines = randomBaselines(n, 1, 1, 1);
        const auto telescopes = telescopesOf(baselines);
        EXPECT_EQ(closureQuads(telescopes, baselines).size(),
                  std::size_t(n * (n - 1) * (n - 2) * (n - 3) / 8));
        EXPECT_EQ(closureQuads(telescopes, baselines, {ClosureKind::independent}).size(),
                  std::size_t(n * (n - 3) / 2));
    }
}

TEST(ClosureSets, WhyThereAreNone)
{
    const struct {
        int telescopes;
        std::size_t triangles, quads;
        const char *whyNot, *whyNoQuads;
    } cases[] = {
        {2, 0, 0, "has no three telescopes that are all joined",
         "has no four telescopes whose baselines make a closure amplitude"},
        {4, 4, 3, "", ""},
        {60, 34220, 0, "", "has more than 524288 closure amplitudes; choose fewer telescopes"},
        {148, 0, 0, "has more than 524288 triangles; choose fewer telescopes",
         "has more than 524288 closure amplitudes; choose fewer telescopes"}};
    for (const auto& c : cases) {
        const auto baselines = randomBaselines(c.telescopes, 1, 1, 1);
        const auto telescopes = telescopesOf(baselines);
        EXPECT_EQ(closureTriangles(telescopes, baselines).size(), c.triangles) << c.telescopes;
        EXPECT_EQ(closureQuads(telescopes, baselines).size(), c.quads) << c.telescopes;
        EXPECT_EQ(whyNoTriangles(baselines), c.whyNot);
        EXPECT_EQ(whyNoQuads(baselines), c.whyNoQuads);
    }
}

TEST(ClosurePoint, PhaseErrorAndAmplitudeOfLegs)
{
    const double nan = std::numeric_limits<double>::quiet_NaN();
    using Legs = std::array<std::complex<double>, 3>;
    const double radian = 180 / std::acos(-1.0);
    const struct {
        Legs legs;
        std::array<double, 3> weights;
        int is;
        double phase, error, amplitude;
    } cases[] = {
        {{1, 2, 3}, {1e4, 1e4, 1e4}, 1, 0, std::sqrt(1 + 0.25 + 1 / 9.0) / 100 * radian, 6},
        {{std::complex{0.0, 1.0}, {0.0, 1.0}, 1}, {1, 1, 1}, 1, 180, std::sqrt(3) * radian, 1},
        {{std::complex{0.0, -1.0}, {0.0, -1.0}, 2}, {4, 4, 4}, 1, 180, 0.75 * radian, 2},
        {{-1, std::complex{1.0, -0.0}, 1}, {1e9, 1e9, 1e9}, 1, 180, std::sqrt(3e-9) * radian, 1},
        {{1, 0, 1}, {1, 1, 1}, 1, 0, 180, 0},
        {{1, 1, 1}, {1e-3, 1, 1}, 1, 0, 180, 1},
        {{1, 1, 1}, {1, 0, 1}, 0, 0, 0, 0},
        {{1, 1, 1}, {1, -1, 1}, 0, 0, 0, 0},
        {{1, 1, nan}, {1, 1, 1}, 0, 0, 0, 0},
        {{1, 1, 1}, {1, 1, nan}, 0, 0, 0, 0}};
    for (const auto& c : cases) {
        ClosurePoint point;
        ASSERT_EQ(closurePoint(c.legs, c.weights, point), c.is);
        if (!c.is)
            continue;
        EXPECT_NEAR(point.phase, c.phase, 1e-9);
        EXPECT_NEAR(point.error, c.error, 1e-9);
        EXPECT_NEAR(point.amplitude, c.amplitude, 1e-9);
    }
}

TEST(ClosurePoint, RatioAndErrorOfFourLegs)
{
    const double nan = std::numeric_limits<double>::quiet_NaN();
    const std::complex<double> turned = {0.0, -4.0};
    const struct {
        std::array<std::complex<double>, 4> legs;
        std::array<double, 4> weights;
        int is;
        double ratio, error;
    } cases[] = {{{2, 3, 1, turned},
                  {1e4, 1e4, 1e4, 1e4},
                  1,
                  1.5,
                  1.5 * 0.01 * std::sqrt(0.25 + 1 / 9.0 + 1 + 1 / 16.0)},
                 {{0, 3, 1, 1}, {9, 4, 1, 1}, 1, 0, 1},
                 {{1, 1, 0, 1}, {1, 1, 1, 1}, 0, 0, 0},
                 {{1, 1, 1, 1}, {1, 1, 0, 1}, 0, 0, 0},
                 {{1, nan, 1, 1}, {1, 1, 1, 1}, 0, 0, 0},
                 {{1, 1, 1, 1}, {1, 1, 1, nan}, 0, 0, 0}};
    for (const auto& c : cases) {
        ClosureAmplitude amplitude;
        ASSERT_EQ(closureAmplitude(c.legs, c.weights, amplitude), c.is);
        if (c.is) {
            EXPECT_NEAR(amplitude.ratio, c.ratio, 1e-12);
            EXPECT_NEAR(amplitude.error, c.error, 1e-12);
        }
    }
}

}  // namespace pavane
