#include "pavane/calibration/closure_point.h"
#include "tessel/uvfits/UvPlotPoints.h"
#include "tessel/uvfits/UvTimeMeans.h"
#include "tests/calibration/made_data.h"

#include <cmath>
#include <map>
#include <random>
#include <set>
#include <tuple>

namespace pavane
{

namespace
{

constexpr double secondsPerDay = 86400;
constexpr int cellsOfGroup = madeIfs * madeChannels * madeHands;

/// Scans of two sources by turns, with pauses; weights of all sizes, some flagged.
std::vector<MadeGroup> observed()
{
    std::mt19937 random(5);
    std::uniform_real_distribution<double> from(0, 1);
    std::vector<MadeGroup> groups;
    for (int step = 0; step < 40; ++step) {
        const double seconds = 2 * step + (step >= 25 ? 1000 : 0);
        for (MadeGroup g : madeGroups(3, {seconds})) {
            g.source = 1 + step / 7 % 2;
            g.selection = step >= 33 ? 2 : 1;
            g.weight = from(random) < 0.1 ? 0 : static_cast<float>(from(random) * 9 + 0.1);
            if (from(random) > 0.05)
                groups.push_back(g);
        }
    }
    return groups;
}

/// What a mean has of each number.
struct Expected {
    std::complex<double> value{};
    double weight = 0, time = 0, u = 0, v = 0;
    int count = 0;
};
using What = std::tuple<int, int, int, int, double, int, int>;

}  // namespace

TEST(UvMeans, AreThoseOfPlainSums)
{
    const std::vector<MadeGroup> groups = observed();
    AUVXFile file;
    std::string error;
    ASSERT_TRUE(file.open(savedData("means.uvfits", groups), error)) << error;
    for (const double seconds : {0.5, 4.0, 10.0, 1e5}) {
        std::map<What, Expected> expected;
        for (const MadeGroup& g : groups)
            for (int f = 0; f < madeIfs && g.weight > 0; ++f)
                for (int c = 0; c < madeChannels; ++c) {
                    const double hertz = madeFrequency + (g.selection - 1) * madeJump +
                                         f * madeIfStep + c * madeStep;
                    Expected& e = expected[{g.a, g.b, g.source, g.selection,
                                            std::floor(g.seconds / seconds), f, c}];
                    const double weight = double{g.weight};
                    e.value += weight * madeVisibility(g, f, c);
                    e.weight += weight;
                    e.time += weight * g.seconds;
                    e.u += weight * hertz * double{g.u};
                    e.v += weight * hertz * double{g.v};
                    ++e.count;
                }
        UvView view;
        view.seconds = seconds;
        UvPlotRows rows(file, {}, view, {-1e12, 1e12, -1e12, 1e12});
        while (rows.step(1)) {
        }
        ASSERT_EQ(rows.error(), "");
        EXPECT_EQ(rows.rows().size(), expected.size() * madeHands);
        for (const UvPointOrigin& row : rows.rows()) {
            const auto found =
                expected.find({row.antenna1, row.antenna2, row.source, row.selection,
                               std::floor((row.time * secondsPerDay + 1e-3) / seconds), row.ifIndex,
                               row.channel});
            ASSERT_NE(found, expected.end()) << row.time;
            const Expected& e = found->second;
            const std::complex<double> value(double{row.value.real}, double{row.value.imaginary});
            EXPECT_NEAR(std::abs(value - e.value / e.weight), 0, 1e-6);
            EXPECT_NEAR(double{row.value.weight}, e.weight, 1e-5 * e.weight);
            EXPECT_NEAR(row.time * secondsPerDay, e.time / e.weight, 1e-3);
            EXPECT_NEAR(row.u, e.u / e.weight, 1e-6 * std::fabs(row.u));
            EXPECT_NEAR(row.v, e.v / e.weight, 1e-6 * std::fabs(row.v));
            EXPECT_EQ(row.count, e.count);
        }
        UvPlotPoints points(file, {}, UvPlotPoints::usualMost, view);
        while (points.step(1)) {
        }
        EXPECT_EQ(points.plotted(), rows.count());
        EXPECT_EQ(points.totals().visibilities,
                  static_cast<std::int64_t>(groups.size()) * cellsOfGroup);
        const UvPointBlock& block = points.blocks().at(0);
        for (std::size_t i = 0; i < block.x.size(); i += 5) {
            UvPointOrigin origin;
            ASSERT_TRUE(points.originOf({block.x[i], block.y[i], block.group[i]}, origin));
            EXPECT_FLOAT_EQ(static_cast<float>(std::hypot(origin.u, origin.v)), block.x[i]);
        }
        view.kind = UvView::Kind::coverage;  // one point of both hands
        UvPlotPoints coverage(file, {}, UvPlotPoints::usualMost, view);
        while (coverage.step(1)) {
        }
        EXPECT_EQ(coverage.blocks().at(0).x.size(), expected.size());
    }
}

TEST(UvMeans, NeedNoMoreMemoryThanTheyMay)
{
    const std::vector<MadeGroup> groups = observed();
    AUVXFile file;
    std::string error;
    ASSERT_TRUE(file.open(savedData("memory.uvfits", groups), error)) << error;
    UvMarks marks;
    UvChoice choice(file, marks);
    constexpr std::size_t most = 2U * std::size_t{cellsOfGroup};
    UvTimeMeans means(file, choice, 10, most);
    UvGroups read;
    ASSERT_TRUE(file.readGroups(0, 6, 31, read));
    int added = 0;
    while (added < 6 && means.add(read, added, [](const UvPointOrigin&) {}))
        ++added;
    EXPECT_EQ(added, 2) << "of the first two baselines";
}

TEST(UvClasses, CountThePointsOfEachColour)
{
    const std::vector<MadeGroup> groups = observed();
    AUVXFile file;
    std::string error;
    ASSERT_TRUE(file.open(savedData("classes.uvfits", groups), error)) << error;
    const struct {
        UvColour by;
        std::size_t classes;
    } cases[] = {{UvColour::none, 0},
                 {UvColour::baseline, 3},
                 {UvColour::telescope, 3},
                 {UvColour::ifs, 2},
                 {UvColour::source, 2}};
    for (const auto& c : cases) {
        UvView view;
        view.colour = c.by;
        UvPlotPoints points(file, {}, 1000, view);  // fewer than there are
        while (points.step(1)) {
        }
        const std::vector<UvClass> classes = points.classes();
        ASSERT_EQ(classes.size(), c.classes);
        std::int64_t counted = 0;
        for (const UvClass& one : classes)
            counted += one.points;
        EXPECT_EQ(counted, classes.empty() ? 0 : points.plotted());
        const UvPointBlock& block = points.blocks().at(0);
        ASSERT_EQ(block.colour.size(), classes.empty() ? 0 : block.x.size());
        std::set<int> shown;
        for (std::size_t i = 0; i < block.colour.size(); ++i) {
            const MadeGroup& g = groups[block.group[i]];
            const UvPair what = classes.at(block.colour[i]).what;
            shown.insert(block.colour[i]);
            EXPECT_TRUE(c.by == UvColour::baseline
                            ? what.first == std::min(g.a, g.b) && what.second == std::max(g.a, g.b)
                        : c.by == UvColour::telescope ? what.first == g.a || what.first == g.b
                        : c.by == UvColour::source    ? what.first == g.source
                                                      : what.first < madeIfs);
        }
        EXPECT_EQ(shown.size(), c.classes);
    }
}

}  // namespace pavane
