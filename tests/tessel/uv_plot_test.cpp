#include "tessel/uvfits/UvPlotPoints.h"
#include "tests/containers/bit_text.h"
#include "tests/tessel/uvfits_text.h"

#include <cmath>
#include <filesystem>
#include <limits>

namespace pavane
{

namespace
{

constexpr float infinite = std::numeric_limits<float>::infinity();

/// Telescopes 1 and 2 have a table; 3 is in none. Amplitude k is that of group k.
const std::vector<TestGroup> mixed = {
    {0, 258, 1, 0, 0},    {0, 259, 1, 1, 0},        {0, 258, 2, 0, -2},
    {10, 258, 1, 3, 0},   {10, 258, 1, 4, 0},       {500, 258, 1, 3, 4},
    {0, 258, 1, 6, 0, 0}, {0, 258, 1, infinite, 0}, {0, 258, 1, infinite, 0, -1}};

struct Opened {
    AUVXFile file;
    Opened(const std::string& name, const std::vector<TestGroup>& groups)
    {
        std::string error;
        EXPECT_TRUE(file.open(saved(name, groupsHdu(groups) + antennaHdu()), error)) << error;
    }
};

}  // namespace

TEST(UvPlot, ShowsWhatIsMarkedAndNeitherFlaggedNorInfinite)
{
    Opened opened("plot.uvfits", mixed);
    const std::vector<UvBaseline> pairs = {{1, 1, 3, 1}, {1, 1, 2, 8}};
    const std::vector<UvScan> scans = {{1, 1, 1, 0, 10 / 86400.0, 1, 9},
                                       {2, 1, 1, 0, 0, 3, 3},
                                       {1, 1, 1, 500 / 86400.0, 500 / 86400.0, 6, 6}};
    const struct {
        const char *name, *telescopes, *baselines, *stokes, *sources, *frequencies, *scans, *shown;
    } cases[] = {{"no marks", "", "", "", "", "", "", "012345"},
                 {"all marked", "11", "11", "1", "1", "1", "111", "012345"},
                 {"a telescope that is in no table", "11", "", "", "", "", "", "012345"},
                 {"one telescope", "10", "", "", "", "", "", ""},
                 {"a baseline", "", "10", "", "", "", "", "1"},
                 {"the other", "", "01", "", "", "", "", "02345"},
                 {"no hand", "", "", "0", "", "", "", ""},
                 {"no source", "", "", "", "0", "", "", ""},
                 {"no IF", "", "", "", "", "0", "", ""},
                 {"the first scan", "", "", "", "", "", "100", "0134"},
                 {"the other two, one of the same time", "", "", "", "", "", "011", "25"},
                 {"baseline and scan", "", "01", "", "", "", "100", "034"}};
    for (const auto& c : cases) {
        const UvMarks marks = {
            bits(c.telescopes), bits(c.stokes), bits(c.sources), bits(c.frequencies),
            bits(c.baselines),  bits(c.scans),  pairs,           scans};
        UvPlotPoints points(opened.file, marks);
        while (points.step(1)) {
        }
        std::string shown;
        for (const UvPointBlock& block : points.blocks())
            for (std::size_t i = 0; i < block.group.size(); ++i) {
                shown += std::to_string(block.group[i]);
                const float amplitude = block.group[i] == 5 ? 5.f : float(block.group[i]);
                EXPECT_EQ(block.y[i], amplitude) << c.name;
                EXPECT_FLOAT_EQ(block.x[i], 1e-3f * 8.4e9f) << c.name;
            }
        EXPECT_EQ(shown, c.shown) << c.name;
        EXPECT_EQ(points.totals().visibilities, 9) << c.name;
        EXPECT_EQ(points.totals().flagged, 2) << c.name;
        EXPECT_EQ(points.totals().notFinite, 2) << c.name;
        EXPECT_EQ(points.plotted(), static_cast<std::int64_t>(shown.size())) << c.name;
    }
}

TEST(UvPlot, ProjectsDistancesAndHasTheCoverage)
{
    // u of 8.4 megawavelengths, no v
    Opened opened("views.uvfits", mixed);
    using enum UvView::Kind;
    const struct {
        UvView view;
        float x;
    } cases[] = {{{}, 8.4e6f},
                 {{projected, 90}, 8.4e6f},
                 {{projected, -90}, 8.4e6f},
                 {{projected, 30}, 4.2e6f},
                 {{projected, 180}, 0},
                 {{coverage}, 8.4e6f}};
    for (const auto& c : cases) {
        UvPlotPoints points(opened.file, UvMarks(), UvPlotPoints::usualMost, c.view);
        points.step();
        ASSERT_EQ(points.blocks().size(), 1u);
        const UvPointBlock& block = points.blocks()[0];
        const int isCoverage = c.view.kind == coverage;
        for (std::size_t i = 0; i < block.x.size(); ++i) {
            EXPECT_NEAR(block.x[i], c.x, 1) << c.view.angle;
            EXPECT_EQ(block.y[i], isCoverage ? 0.f : float(block.group[i]));
        }
        EXPECT_EQ(points.plotted(), 6);
        EXPECT_EQ(points.totals().greatestUv, points.totals().leastUv);
        EXPECT_NEAR(points.range().greatestX, double{c.x}, 1);
        UvPlotPoint point;
        UvPointOrigin origin;
        EXPECT_EQ(points.nearest(-double{c.x}, 0, 1e4, 1, 2, point), isCoverage || c.x < 1);
        if (points.nearest(double{c.x}, isCoverage ? 0 : 3, 1e4, 0.1, 2, point)) {
            EXPECT_TRUE(points.originOf(point, origin));
            EXPECT_TRUE(isCoverage || origin.group == 3);
        } else {
            ADD_FAILURE() << c.x;
        }
        // all of the points, those of some amplitudes, and of a place where only mirror images are
        const double far = 1e8;
        const UvRange all = {-far, far, -far, far};
        const UvRange some = {-far, far, 2.5, 4.5};
        const UvRange mirrored = {-far, -8e6, -1, 1};
        for (const auto& [range, count] : {std::pair{all, 6}, std::pair{some, isCoverage ? 0 : 2},
                                           std::pair{mirrored, isCoverage ? 6 : 0}}) {
            UvPlotRows rows(opened.file, UvMarks(), c.view, range, 4);
            while (rows.step(1)) {
            }
            EXPECT_EQ(rows.count(), count);
            EXPECT_EQ(rows.rows().size(), std::min<std::size_t>(4, std::size_t(count)));
            if (!rows.rows().empty()) {
                EXPECT_NEAR(rows.rows()[0].u, 8.4e6, 1);
            }
        }
    }
}

TEST(UvPlot, FindsTheVisibilityOfAPlaceAgainAndNoOther)
{
    Opened opened("origin.uvfits", mixed);
    UvPlotPoints points(opened.file, UvMarks());
    points.step();
    UvPlotPoint point;
    EXPECT_FALSE(points.nearest(8.4e6, 3.45, 1e5, 0.1, 4, point));
    ASSERT_TRUE(points.nearest(8.6e6, 3.2, 1e5, 0.1, 4, point));
    EXPECT_EQ(point.group, 3u);
    ASSERT_TRUE(points.nearest(8.4e6, 1.01, 1e5, 0.1, 4, point));
    UvPointOrigin origin;
    ASSERT_TRUE(points.originOf(point, origin));
    EXPECT_EQ(origin.group, 1);
    EXPECT_EQ(origin.antenna2, 3);
    point.y = 7;
    EXPECT_FALSE(points.originOf(point, origin));
}

TEST(UvPlot, HalvesItsPointsAtTheLimitAndCountsThemAll)
{
    std::vector<TestGroup> groups(100000);
    for (std::size_t i = 0; i < groups.size(); ++i)
        groups[i] = {0, 258, 1, float(i), 0};
    Opened opened("many.uvfits", groups);
    for (const std::size_t most : {0u, 1u, 1000u, 70000u, 200000u}) {
        UvPlotPoints points(opened.file, UvMarks(), most);
        while (points.step(1 << 16)) {
        }
        std::size_t kept = 0, first = 0;
        for (const UvPointBlock& block : points.blocks())
            for (std::size_t i = 0; i < block.group.size(); ++i, ++kept)
                first += block.group[i] < 50000;
        EXPECT_LE(kept, most);
        EXPECT_EQ(points.plotted(), 100000);
        EXPECT_EQ(points.totals().greatestAmplitude, 99999);
        EXPECT_LE(points.places().size(), 16384u);
        if (most < 1000)
            continue;
        EXPECT_GE(kept, std::min<std::size_t>(most, groups.size()) / 3) << most;
        EXPECT_NEAR(double(first) / double(kept), 0.5, 0.1) << most;
        EXPECT_NEAR(double(kept) * double(points.thinning()), 1e5, 2e4) << most;
    }
    UvPlotPoints cut(opened.file, UvMarks());
    EXPECT_TRUE(cut.step(1));
    std::filesystem::resize_file(testing::TempDir() + "many.uvfits", 500000);
    while (cut.step(1)) {
    }
    EXPECT_NE(cut.error(), "");
    EXPECT_LT(cut.done(), 1);
}

}  // namespace pavane
