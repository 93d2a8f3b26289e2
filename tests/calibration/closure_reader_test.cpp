#include "pavane/axes/multi/A2DAxisMulti.h"
#include "pavane/calibration/closure_products.h"
#include "pavane/calibration/ClosureReader.h"
#include "pavane/calibration/phase_kernels.h"
#include "pavane/calibration/visibility_charts.h"
#include "tests/calibration/made_data.h"

#include <algorithm>
#include <cmath>
#include <filesystem>
#include <map>
#include <random>

namespace pavane
{

namespace
{

constexpr double secondsPerDay = 86400;

struct Read {
    AUVXFile file;
    std::unique_ptr<ClosureReader> reader;
    Read(const std::string& name, const std::vector<MadeGroup>& groups,
         const ClosureAveraging& averaging = {}, const UvMarks& marks = {})
    {
        std::string error;
        EXPECT_TRUE(file.open(savedData(name, groups), error)) << error;
        std::vector<UvBaseline> baselines;
        for (const MadeGroup& g : groups)
            baselines.push_back({g.subarray, g.a, g.b, 1});
        reader = std::make_unique<ClosureReader>(
            file, closureTriangles(telescopesOf(baselines), baselines), marks, averaging,
            madeModel());
        while (reader->step(1)) {
        }
        EXPECT_EQ(reader->error().empty(), points() > 0 || reader->triangles().empty());
        EXPECT_EQ(reader->done(), 1);
    }
    std::size_t points() const
    {
        std::size_t count = 0;
        for (std::size_t t = 0; t < reader->triangles().size(); ++t)
            for (std::size_t p = 0; p < reader->parts().size(); ++p)
                count += reader->series(t, p).count();
        return count;
    }
    /// The greatest difference between data and model; the phases are not all about 0.
    double worst() const
    {
        double greatest = 0, widest = 0;
        for (std::size_t t = 0; t < reader->triangles().size(); ++t)
            for (std::size_t p = 0; p < reader->parts().size(); ++p) {
                const ClosureSeries& s = reader->series(t, p);
                EXPECT_EQ(s.model.size(), s.count());
                for (std::size_t i = 0; i < s.count(); ++i) {
                    greatest = std::max(greatest,
                                        std::abs(wrappedDegrees(double{s.phase[i]} - s.model[i])));
                    widest = std::max(widest, std::abs(double{s.phase[i]}));
                }
            }
        EXPECT_TRUE(widest > 3 || points() == 0) << widest;
        return greatest;
    }
};

using Groups = std::vector<MadeGroup>;

Groups operator+(Groups a, const Groups& b)
{
    a.insert(a.end(), b.begin(), b.end());
    return a;
}

template <class Less>
Groups sorted(Groups groups, Less less)
{
    std::stable_sort(groups.begin(), groups.end(), less);
    return groups;
}

Groups changed(Groups groups, void (*change)(MadeGroup& g, std::size_t i))
{
    for (std::size_t i = 0; i < groups.size(); ++i)
        change(groups[i], i);
    return groups;
}

}  // namespace

TEST(ClosureReader, PhasesOfDataWithGainsOfTelescopesAreThoseOfTheModel)
{
    const Groups five = madeGroups(5, {0, 2, 4, 6}), later = madeGroups(5, {100, 102});
    const auto byBaseline = [](const MadeGroup& a, const MadeGroup& b) {
        return std::pair(a.a, a.b) < std::pair(b.a, b.b);
    };
    Groups shuffled = five;
    std::shuffle(shuffled.begin(), shuffled.end(), std::mt19937(5));
    // the same numbers in both subarrays, at the same times, group by group in turns
    Groups inTurns;
    const Groups other = madeGroups(4, {0, 2, 4, 6}, 2);
    for (std::size_t i = 0; i < five.size(); ++i) {
        inTurns.push_back(five[i]);
        if (i < other.size())
            inTurns.push_back(other[i]);
    }
    const auto byTime = [](const MadeGroup& a, const MadeGroup& b) {
        return a.seconds < b.seconds;
    };
    // baseline after baseline, each from an earlier time on
    Groups stairs;
    const Groups three = madeGroups(3, {0, 2, 4, 6, 8, 10, 12, 14});
    for (const std::size_t from : {4, 2, 0})
        for (std::size_t i = 3 * from; i < three.size(); ++i)
            if (i % 3 == 2 - from / 2)
                stairs.push_back(three[i]);
    // two observations of some baselines each, the second over the times of the first
    const auto isOfFirst = [](const MadeGroup& g) { return g.a + g.b < 6; };
    Groups overlapping, second;
    for (const MadeGroup& g : five + later)
        if (!isOfFirst(g))
            second.push_back(g);
        else if (g.seconds >= 4)
            overlapping.push_back(g);
    const struct {
        const char* name;
        Groups groups;
        std::size_t points;
    } cases[] = {
        {"in the order of time", five, 40},
        {"by baseline", sorted(five, byBaseline), 40},
        {"in no order", shuffled, 40},
        {"an earlier scan behind", later + five, 60},
        {"a time that comes back", five + later + Groups(five.begin(), five.begin() + 3), 60},
        {"half of the baselines in a second pass",
         Groups(five.begin(), five.begin() + 5) + later + Groups(five.begin() + 5, five.end()), 60},
        {"stairs into the past", stairs, 4},
        {"observations over each other", overlapping + second, 44},
        {"observations over each other, sorted", sorted(overlapping + second, byTime), 44},
        {"two subarrays", sorted(inTurns, byTime), 56},
        {"one subarray behind the other", other + five, 56},
        {"legs that jitter by a fifth of an integration",
         changed(five, [](MadeGroup& g, std::size_t i) { g.seconds += double(i % 3) * 0.2; }), 40},
        {"a leg too late by six tenths",
         changed(madeGroups(5, {0, 2, 100, 102}),
                 [](MadeGroup& g, std::size_t i) { g.seconds += i % 20 == 14 ? 1.2 : 0; }),
         34},
        {"a source in turns with another",
         changed(five, [](MadeGroup& g, std::size_t) { g.source = g.seconds == 2 ? 2 : 1; }), 40},
        {"two sources at a time",
         changed(five, [](MadeGroup& g, std::size_t i) { g.source = i % 10 == 0 ? 2 : 1; }), 28},
        {"a flagged leg",
         changed(five, [](MadeGroup& g, std::size_t i) { g.weight = i % 10 == 0 ? -1 : 4; }), 28},
        {"a leg that is not finite",
         changed(five, [](MadeGroup& g, std::size_t i) { g.gain /= i == 0 ? 0.0 : 1.0; }), 37},
        {"great visibilities", changed(five, [](MadeGroup& g, std::size_t) { g.gain *= 1e12; }),
         40},
        {"small visibilities", changed(five, [](MadeGroup& g, std::size_t) { g.gain *= 1e-12; }),
         40},
        {"times that are no number",
         changed(five, [](MadeGroup& g, std::size_t i) { g.seconds /= i == 0 ? 0.0 : 1.0; }), 37},
        {"a missing leg", Groups(five.begin() + 1, five.end()), 37},
        {"telescopes without a third", Groups(five.begin(), five.begin() + 4), 0},
        {"nothing but flags", changed(five, [](MadeGroup& g, std::size_t) { g.weight = 0; }), 0},
        {"no groups", {}, 0}};
    for (const auto& c : cases) {
        const Read read("closure.uvfits", c.groups);
        EXPECT_EQ(read.points(), c.points) << c.name;
        EXPECT_LT(read.worst(), 2e-3) << c.name;
    }
}

TEST(ClosureReader, AveragesTripleProductsAndKeepsApartWhatIsAskedFor)
{
    const Groups five = madeGroups(5, {0, 2, 4, 6, 8, 10});
    UvMarks left;
    left.stokes = ABitArray(2);
    left.stokes.set(1, 1);
    const struct {
        ClosureAveraging averaging;
        UvMarks marks;
        std::size_t parts, points;
    } cases[] = {{{}, {}, 1, 60},          {{{1, 0}}, {}, 2, 120},   {{{0, 1}}, {}, 2, 120},
                 {{{1, 1}}, {}, 4, 240},   {{{1, 1}}, left, 2, 120}, {{{0, 0}, 4}, {}, 1, 30},
                 {{{1, 0}, 60}, {}, 2, 20}};
    for (const auto& c : cases) {
        const Read read("split.uvfits", five, c.averaging, c.marks);
        EXPECT_EQ(read.reader->parts().size(), c.parts);
        EXPECT_EQ(read.points(), c.points);
        EXPECT_LT(read.worst(), 2e-3);
    }
    const Read apart("split.uvfits", five, {{1, 1}});
    const PanelChart chart = closureChart(apart.file, *apart.reader, {0});
    EXPECT_EQ(chart.panels[0].scales[0].curves[3].name, "IF 2 LL");
    EXPECT_EQ(std::unique_ptr<A2DAxisMulti>(newChartAxis(chart))->getLegend(), legendEmptiest);
    // selections and sources in turns at each time, in the order of time and as it may come
    Groups inTurns;
    for (const MadeGroup& g : five)
        for (const int k : {1, 2}) {
            inTurns.push_back(g);
            inTurns.back().source = inTurns.back().selection = k;
        }
    Groups shuffled = inTurns;
    std::shuffle(shuffled.begin(), shuffled.end(), std::mt19937(7));
    for (const Groups& groups : {inTurns, shuffled}) {
        const Read read("turns.uvfits", groups, {{0, 0}, 4});
        EXPECT_EQ(read.points(), 60u) << "two of each time of four seconds";
        EXPECT_LT(read.worst(), 2e-3);
        EXPECT_TRUE(
            std::is_sorted(read.reader->series(0).time.begin(), read.reader->series(0).time.end()));
    }
    // the first point by hand: four channels of two IFs, two equal hands
    const Read read("hand.uvfits", five, {{0, 0}, 4});
    std::map<std::pair<int, int>, std::vector<MadeGroup>> legs;
    for (const MadeGroup& g : five)
        if (g.seconds < 4)
            legs[{std::min(g.a, g.b), std::max(g.a, g.b)}].push_back(g);
    ClosureSums sums;
    for (std::size_t t = 0; t < 2; ++t)
        for (int f = 0; f < madeIfs; ++f)
            for (int c = 0; c < madeChannels; ++c) {
                std::complex<double> product = 1;
                double variance = 0;
                for (const auto& [a, b] : {std::pair{1, 2}, {2, 3}, {1, 3}}) {
                    const MadeGroup& g = legs.at({a, b})[t];
                    const std::complex<double> value = madeVisibility(g, f, c);
                    product *= (g.a == a) == (b != 3 || a != 1) ? value : std::conj(value);
                    variance += 1 / (4 * std::norm(value));
                }
                sums.product += 2.0 * product;
                sums.variance += 2 * variance * std::norm(product);
                sums.count += 2;
            }
    ClosurePoint point;
    ASSERT_TRUE(closurePoint(sums, point));
    const ClosureSeries& series = read.reader->series(0);
    EXPECT_NEAR(series.phase[0], point.phase, 1e-3);
    EXPECT_NEAR(series.error[0], point.error, 1e-3);
    EXPECT_NEAR(series.amplitude[0], point.amplitude, 1e-5 * point.amplitude);
    EXPECT_NEAR(series.time[0] * secondsPerDay, 1, 1e-3);
}

TEST(ClosureReader, IndependentSetsAreOfThoseWithPoints)
{
    // all groups are there in the same number; what is flagged decides
    const Groups five = madeGroups(5, {0, 2, 4, 6});
    std::vector<double> manySeconds;
    for (int i = 0; i < 3000; ++i)
        manySeconds.push_back(2 * i);
    const struct {
        const char* name;
        Groups groups;
        std::string triangles;
        std::size_t quads;
        int passes = 1;  ///< of long files
    } cases[] = {
        {"nothing", five, "123 124 125 134 135 145", 5},
        {"a telescope",
         changed(five, [](MadeGroup& g, std::size_t) { g.weight = g.a == 1 || g.b == 1 ? -1 : 4; }),
         "234 235 245", 2},
        {"a baseline",
         changed(five, [](MadeGroup& g, std::size_t) { g.weight = g.a + g.b == 3 ? 0 : 4; }),
         "134 135 145 234 235", 4},
        {"a baseline at all times but one",
         changed(five,
                 [](MadeGroup& g, std::size_t) { g.weight = g.a + g.b == 3 && g.seconds ? 0 : 4; }),
         "123 134 135 145 234 235", 5},
        {"everything", changed(five, [](MadeGroup& g, std::size_t) { g.weight = -1; }), "", 0},
        {"a baseline where a sample is taken, and nowhere else",
         changed(madeGroups(5, manySeconds),
                 [](MadeGroup& g, std::size_t i) {
                     g.weight = i % 15000 < 600 && g.a + g.b == 3 ? -1 : 4;
                 }),
         "123 134 135 145 234 235", 5, 2},
        {"nothing of much", madeGroups(5, manySeconds), "123 124 125 134 135 145", 5},
        {"a telescope, and the file is in no order",
         sorted(changed(five, [](MadeGroup& g, std::size_t) { g.weight = g.a == 1 ? -1 : 4; }),
                [](const MadeGroup& a, const MadeGroup& b) { return a.a + a.b < b.a + b.b; }),
         "124 234 235 245", 3}};
    for (const auto& c : cases) {
        AUVXFile file;
        std::string error, names;
        ASSERT_TRUE(file.open(savedData("chosen.uvfits", c.groups), error)) << error;
        std::vector<UvBaseline> baselines;
        for (const MadeGroup& g : c.groups)
            baselines.push_back({1, g.a, g.b, 1});
        const auto telescopes = telescopesOf(baselines);
        ClosureChoice choice(closureTriangles(telescopes, baselines), 1);
        choice.quads = closureQuads(telescopes, baselines);
        ClosureReader reader(file, choice, {}, {}, madeModel());
        double done = 0;
        int blocks = 1;
        for (; reader.step(1); ++blocks) {
            EXPECT_GE(reader.done(), done);
            done = reader.done();
        }
        const int all = static_cast<int>(c.groups.size()) / file.blockGroups();
        EXPECT_TRUE(all < 10 || (blocks + all / 2) / all == c.passes) << c.name;
        // the triangles of the file, of whose telescopes no table tells
        ClosureReader own(file, ClosureChoice::ofFile());
        while (own.step(1)) {
        }
        EXPECT_EQ(own.triangles(), reader.triangles()) << c.name;
        for (std::size_t t = 0; t < reader.triangles().size(); ++t) {
            const ClosureSeries& series = reader.series(t);
            EXPECT_EQ(std::ssize(series.time), reader.triangles()[t].points) << c.name;
            EXPECT_EQ(own.series(t).phase, series.phase) << c.name;
            EXPECT_LT(statisticsOf(series).chiSquared, 1e-6) << c.name;
        }
        for (std::size_t q = 0; q < reader.quads().size(); ++q)
            EXPECT_EQ(std::ssize(reader.ratios(q).time), reader.quads()[q].points) << c.name;
        for (const ClosureTriangle& t : reader.triangles()) {
            names += names.empty() ? "" : " ";
            for (const int number : t.telescopes)
                names += std::to_string(number);
        }
        EXPECT_EQ(names, c.triangles) << c.name;
        EXPECT_EQ(reader.quads().size(), c.quads) << c.name;
        EXPECT_EQ(reader.error().empty(), !c.triangles.empty());
    }
}

TEST(ClosureReader, ChosenTrianglesThatMarksEmptyAreAnError)
{
    const std::vector<MadeGroup> groups = madeGroups(4, {0, 2, 4});
    AUVXFile file;
    std::string error;
    ASSERT_TRUE(file.open(savedData("emptied.uvfits", groups), error)) << error;
    const std::vector<ClosureTriangle> chosen = {{1, {1, 2, 3}, 3}, {1, {1, 2, 4}, 3}};
    struct Case {
        const char* name;
        std::size_t counts[2];
        UvMarks marks{};
    } cases[] = {{"all", {3, 3}},     {"a baseline", {0, 3}},      {"a time", {1, 1}},
                 {"no time", {0, 0}}, {"no polarisation", {0, 0}}, {"no frequency", {0, 0}}};
    UvMarks& some = cases[1].marks;
    some.baselines = ABitArray(6);
    for (int i = 0; i < 6; ++i) {
        const MadeGroup& g = groups[std::size_t(i)];
        some.baselineTable.push_back({1, g.a, g.b, 3});
        some.baselines.set(i, g.a * g.b != 6);
    }
    cases[2].marks.times = UvTimes::ofSeconds(2, 3);
    cases[3].marks.times = UvTimes::ofSeconds(100, 200);
    cases[4].marks.stokes = ABitArray(madeHands);
    cases[5].marks.frequencies = ABitArray(2 * madeIfs);
    for (const Case& c : cases) {
        ClosureReader reader(file, chosen, c.marks);
        while (reader.step()) {
        }
        for (std::size_t t = 0; t < 2; ++t)
            EXPECT_EQ(reader.series(t).count(), c.counts[t]) << c.name;
        EXPECT_EQ(reader.error().empty(), c.counts[1] > 0) << c.name;
    }
}

TEST(ClosureReader, AmplitudesOfDataWithGainsOfTelescopesAreThoseOfTheModel)
{
    const Groups five = madeGroups(5, {0, 2, 4, 6});
    const struct {
        const char* name;
        Groups groups;
        ClosureAveraging averaging;
        std::size_t points;
    } cases[] = {{"plain", five, {}, 60},
                 {"each IF and polarisation", five, {{1, 1}}, 240},
                 {"averaged in time", five, {{}, 4}, 30},
                 {"a flagged leg",
                  changed(five, [](MadeGroup& g, std::size_t i) { g.weight = i == 0 ? -1 : 4; }),
                  {},
                  54}};
    for (const auto& c : cases) {
        AUVXFile file;
        std::string error;
        ASSERT_TRUE(file.open(savedData("amplitudes.uvfits", c.groups), error)) << error;
        std::vector<UvBaseline> baselines;
        for (const MadeGroup& g : c.groups)
            baselines.push_back({1, g.a, g.b, 1});
        ClosureReader reader(file, closureQuads(telescopesOf(baselines), baselines), {},
                             c.averaging, madeModel());
        while (reader.step(1)) {
        }
        std::size_t points = 0;
        double widest = 0;
        for (std::size_t q = 0; q < reader.quads().size(); ++q)
            for (std::size_t p = 0; p < reader.parts().size(); ++p) {
                const ClosureRatios& r = reader.ratios(q, p);
                points += r.count();
                for (std::size_t i = 0; i < r.count(); ++i) {
                    EXPECT_NEAR(r.ratio[i], r.model[i], 1e-4 * double{r.model[i]}) << c.name;
                    widest = std::max(widest, std::abs(std::log(double{r.ratio[i]})));
                }
                EXPECT_LT(chiSquaredOf(r), 1e-4);
            }
        EXPECT_EQ(points, c.points) << c.name;
        EXPECT_GT(widest, 0.1) << "they are not all about 1";
    }
}

TEST(ClosureProducts, SumsAreThoseOfDoublePrecision)
{
    constexpr std::size_t count = 700;
    for (const double size : {1.0, 1e12, 1e-9})
        for (const int isWhole : {0, 1}) {
            std::mt19937 random(3);
            std::uniform_real_distribution<double> part(-1, 1);
            std::vector<float> numbers[4][4];
            std::array<LegCells, 4> cells{};
            std::array<SignedLeg, 4> legs{};
            for (int k = 0; k < 4; ++k) {
                for (std::size_t i = 0; i < count; ++i) {
                    const int isGood = isWhole || i % 7 != 3;
                    for (int n = 0; n < 2; ++n)
                        numbers[k][n].push_back(float(isGood * size * (part(random) + 2)));
                    numbers[k][2].push_back(float(isGood * size * size * 0.01));
                    numbers[k][3].push_back(float(isGood));
                }
                const auto& n = numbers[k];
                cells[std::size_t(k)] = {n[0].data(), n[1].data(), n[2].data(),
                                         n[3].data(), isWhole,     size == 1};
                legs[std::size_t(k)] = {&cells[std::size_t(k)], k % 2 ? -1.0F : 1.0F};
            }
            ClosureSums sums, expected;
            ClosureRatioSums ratio, expectedRatio;
            const std::size_t from = 5;
            addTripleProducts({legs[0], legs[1], legs[2]}, from, count, sums);
            addAmplitudeProducts(legs, from, count, ratio);
            for (std::size_t i = from; i < count; ++i) {
                std::complex<double> value[4];
                double variance[4];
                for (std::size_t k = 0; k < 4; ++k) {
                    value[k] = {numbers[k][0][i], double{legs[k].sign} * numbers[k][1][i]};
                    variance[k] = numbers[k][2][i];
                }
                if (!(cells[0].valid[i] > 0))
                    continue;
                expected.count += 1;
                expected.product += value[0] * value[1] * value[2];
                for (std::size_t k = 0; k < 3; ++k)
                    expected.variance +=
                        variance[k] * std::norm(value[(k + 1) % 3]) * std::norm(value[(k + 2) % 3]);
                expectedRatio.above += std::abs(value[0] * value[1]);
                expectedRatio.varianceBelow +=
                    variance[2] * std::norm(value[3]) + variance[3] * std::norm(value[2]);
            }
            EXPECT_EQ(sums.count, expected.count);
            EXPECT_EQ(ratio.count, expected.count);
            EXPECT_LT(std::abs(sums.product / expected.product - 1.0), 1e-6) << size;
            EXPECT_NEAR(sums.variance / expected.variance, 1, 1e-6) << size;
            EXPECT_NEAR(ratio.above / expectedRatio.above, 1, 1e-6) << size;
            EXPECT_NEAR(ratio.varianceBelow / expectedRatio.varianceBelow, 1, 1e-6) << size;
        }
}

TEST(ClosureProducts, ManyPointsAreThoseOfEachSum)
{
    std::vector<double> numbers[4];
    std::vector<float> found[3];
    for (const double size : {1.0, 1e-30, 1e40, 1e100})
        for (int i = 0; i < 720; ++i) {
            const double radians = (i * 0.5 - 180) * 0.017453292519943295769;
            numbers[0].push_back(size * std::cos(radians));
            numbers[1].push_back(size * std::sin(radians));
            numbers[2].push_back(size * size * 1e-6 * i * i);
            numbers[3].push_back(3);
        }
    for (const auto& [real, imaginary] :
         {std::pair{0.0, 0.0}, {-1.0, 0.0}, {-1.0, -1e-12}, {0.0, -2.0}}) {
        numbers[0].push_back(real);
        numbers[1].push_back(imaginary);
        numbers[2].push_back(1e-4);
        numbers[3].push_back(1);
    }
    const std::size_t count = numbers[0].size();
    for (std::vector<float>& each : found)
        each.resize(count);
    closurePoints({numbers[0].data(), numbers[1].data(), numbers[2].data(), numbers[3].data()},
                  count, {found[0].data(), found[1].data(), found[2].data()});
    for (std::size_t i = 0; i < count; ++i) {
        ClosurePoint point;
        ASSERT_TRUE(
            closurePoint({{numbers[0][i], numbers[1][i]}, numbers[2][i], numbers[3][i]}, point));
        EXPECT_NEAR(wrappedDegrees(found[0][i] - point.phase), 0, 2e-5) << i;
        EXPECT_TRUE(found[0][i] > -180 && found[0][i] <= 180) << i;
        EXPECT_NEAR(found[1][i], point.error, 2e-5) << i;
        EXPECT_FLOAT_EQ(found[2][i], nearestFloat(point.amplitude)) << i;
    }
}

TEST(ClosureReader, StatisticsAreOfTheCircle)
{
    const ClosureSeries series = {
        {0, 1, 2, 3}, {170, -170, 180, 180}, {2, 2, 5, 0}, {1, 1, 1, 1}, {180, -176, 180, 90}};
    const ClosureStatistics found = statisticsOf(series);
    EXPECT_EQ(found.count, 4u);
    EXPECT_NEAR(std::abs(found.mean), 180, 1e-5);
    EXPECT_NEAR(found.scatter, std::sqrt(50), 1e-4);
    EXPECT_NEAR(found.chiSquared, (25 + 9 + 0) / 4.0, 1e-6);
    EXPECT_EQ(statisticsOf({}).count, 0u);
}

TEST(ClosureReader, AFileThatBecomesShorterIsTold)
{
    std::vector<double> times;
    for (int t = 0; t < 150; ++t)
        times.push_back(2 * t);
    const Groups all = madeGroups(6, times);
    const std::string name = savedData("shorter.uvfits", all);
    AUVXFile file;
    std::string error;
    ASSERT_TRUE(file.open(name, error));
    ClosureReader reader(file, std::vector<ClosureTriangle>{{1, {1, 2, 3}, 1}});
    EXPECT_TRUE(reader.step(1));
    std::filesystem::resize_file(name, 200000);
    while (reader.step()) {
    }
    EXPECT_EQ(reader.error(), "has become shorter while it was read");
}

}  // namespace pavane
