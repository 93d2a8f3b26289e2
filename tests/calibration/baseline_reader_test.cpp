#include "pavane/calibration/BaselineReader.h"
#include "pavane/calibration/closure_point.h"
#include "pavane/calibration/uv_colours.h"
#include "pavane/calibration/visibility_charts.h"
#include "pavane/images/color_vision.h"
#include "tests/calibration/made_data.h"

#include <algorithm>
#include <cmath>

namespace pavane
{

TEST(BaselineReader, AmplitudesAndPhasesAreTheMeansOfWhatIsMarked)
{
    std::vector<MadeGroup> groups = madeGroups(4, {0, 2, 4});
    for (MadeGroup& g : groups)
        g.gain = 1;
    std::rotate(groups.begin(), groups.begin() + 6, groups.end());  // the first time comes last
    groups[2].weight = 0;
    AUVXFile file;
    std::string error;
    ASSERT_TRUE(file.open(savedData("baselines.uvfits", groups), error)) << error;
    const std::vector<UvBaseline> baselines = {
        {1, 1, 2, 3}, {1, 3, 1, 3}, {1, 1, 4, 3}, {1, 1, 9, 0}};
    const struct {
        BaselinePlot plot;
        std::size_t counts[4];
    } cases[] = {{BaselinePlot::time, {3, 3, 2, 0}}, {BaselinePlot::channels, {4, 4, 4, 0}}};
    for (const auto& c : cases) {
        BaselineReader reader(file, baselines, c.plot, {}, madeModel());
        while (reader.step(1)) {
        }
        ASSERT_EQ(reader.error(), "");
        for (std::size_t b = 0; b < 4; ++b) {
            const BaselineSeries& s = reader.series(b);
            ASSERT_EQ(s.count(), c.counts[b]);
            EXPECT_TRUE(std::is_sorted(s.x.begin(), s.x.end()));
            for (std::size_t i = 0; i < s.count(); ++i) {
                EXPECT_NEAR(s.amplitude[i], s.modelAmplitude[i], 1e-4);
                EXPECT_NEAR(wrappedDegrees(double{s.phase[i]} - s.modelPhase[i]), 0, 1e-2);
            }
        }
        // of weight 4: eight visibilities in a time, two hands and three times in a channel
        const double count = c.plot == BaselinePlot::time ? 8 : 6;
        EXPECT_NEAR(reader.series(0).amplitudeError[0], 1 / std::sqrt(4 * count), 1e-6);
        const PanelChart chart = baselineChart(file, reader, c.plot, {0, 3});
        ASSERT_EQ(chart.panels.size(), 2u);
        EXPECT_EQ(chart.panels[0].caption, "1-2");
        EXPECT_EQ(chart.panels[0].scales[1].period, 360);
        ASSERT_EQ(chart.panels[0].scales[0].curves.size(), 2u);
        if (c.plot == BaselinePlot::channels) {  // a line to each IF, as wide as its channels
            const std::vector<double> line = {1 - 0.4, 1, 2, 2 + 0.4, 2 + 0.4,
                                              3 - 0.4, 3, 4, 4 + 0.4, 4 + 0.4};
            EXPECT_EQ(chart.panels[0].scales[0].curves[1].x, line);
        }
    }
}

TEST(BaselineReader, KeepsIfsAndSourcesApartAndAveragesInTime)
{
    std::vector<MadeGroup> groups = madeGroups(3, {0, 2, 4, 10, 12});
    for (MadeGroup& g : groups) {
        g.source = g.seconds < 4 ? 1 : 2;
        g.weight = g.seconds == 2 ? 12 : 4;
    }
    AUVXFile file;
    std::string error;
    ASSERT_TRUE(file.open(savedData("parts.uvfits", groups), error)) << error;
    // without a table they have one name, and still no mean is of two of them
    const std::size_t all = file.sources().size() + 1;
    using enum UvColour;
    const struct {
        BaselinePlot plot;
        BaselineDivision division;
        std::size_t parts;
        std::vector<std::size_t> counts;  ///< of the parts that have points
    } cases[] = {{BaselinePlot::time, {none, 0}, 1, {5}},
                 {BaselinePlot::time, {baseline, 0}, 1, {5}},
                 {BaselinePlot::time, {ifs, 0}, 2, {5, 5}},
                 {BaselinePlot::time, {source, 0}, all, {5}},
                 {BaselinePlot::time, {none, 10}, 1, {3}},
                 {BaselinePlot::time, {source, 10}, all, {3}},
                 {BaselinePlot::channels, {ifs, 0}, 2, {2, 2}},
                 {BaselinePlot::channels, {source, 0}, all, {4}}};
    for (const auto& c : cases) {
        BaselineReader reader(file, {{1, 1, 2, 5}}, c.plot, {}, madeModel(),
                              BaselineReader::usualSums, c.division);
        while (reader.step(1)) {
        }
        ASSERT_EQ(reader.error(), "");
        EXPECT_EQ(reader.parts(), c.parts);
        std::vector<std::size_t> counts;
        for (std::size_t p = 0; p < reader.parts(); ++p)
            if (const std::size_t count = reader.series(0, p).count(); count > 0)
                counts.push_back(count);
        EXPECT_EQ(counts, c.counts) << int(c.division.colour) << ' ' << c.division.seconds;
        const PanelChart chart = baselineChart(file, reader, c.plot, {0});
        EXPECT_EQ(chart.panels[0].scales[0].curves.size(), 2 * c.counts.size()) << "with models";
        EXPECT_EQ(chart.isLegendAbove, c.division.colour == ifs || c.division.colour == source);
        if (c.division.seconds > 0 && c.division.colour == source) {
            // the first two times, with weights of 4 and 12
            EXPECT_NEAR(reader.series(0).x[0] * 86400, 1.5, 1e-3);
            EXPECT_NEAR(reader.series(0).amplitudeError[0], 1 / std::sqrt(8 * 16.0), 1e-6);
        }
    }
}

TEST(BaselineReader, SelectionsThatTakeTurnsAreAveragedEachByItself)
{
    std::vector<MadeGroup> groups = madeGroups(2, {0, 1, 2, 3, 4, 5});
    for (MadeGroup& g : groups)
        g.selection = 1 + static_cast<int>(g.seconds) % 2;
    AUVXFile file;
    std::string error;
    ASSERT_TRUE(file.open(savedData("turns.uvfits", groups), error)) << error;
    BaselineReader reader(file, {{1, 1, 2, 6}}, BaselinePlot::time, {}, {},
                          BaselineReader::usualSums, {UvColour::none, 60});
    while (reader.step(1)) {
    }
    ASSERT_EQ(reader.series(0).count(), 2u);
    EXPECT_NEAR(reader.series(0).x[0] * 86400, 2, 1e-3);
    EXPECT_NEAR(reader.series(0).x[1] * 86400, 3, 1e-3);
}

TEST(UvColours, AreOfThoseWithMostPointsAndDifferForEachEye)
{
    AUVXFile file;
    std::string error;
    ASSERT_TRUE(file.open(savedData("colours.uvfits", madeGroups(3, {0})), error)) << error;
    std::vector<UvClass> classes;
    for (int i = 0; i < 14; ++i)  // the third and the last have fewest points
        classes.push_back({{1, 20 - i, 30}, i == 2 ? 3 : i == 13 ? 5 : 100 + i});
    const UvColourKey key = uvColours(file, UvColour::baseline, classes);
    ASSERT_EQ(key.entries.size(), mostUvColours + 1);
    EXPECT_EQ(key.entries[0].name, "8-30");
    EXPECT_EQ(key.entries.back().name, "2 others");
    EXPECT_EQ(key.entries.back().points, 8);
    EXPECT_EQ(key.entries[key.entryOfClass[2]].name, "2 others");
    EXPECT_EQ(key.entries[key.entryOfClass[3]].name, "17-30");
    EXPECT_EQ(key.drawingOrder()[0], mostUvColours) << "below all";
    EXPECT_EQ(key.entries[key.drawingOrder()[1]].points, 112);
    for (std::size_t i = 0; i < key.entries.size(); ++i)
        for (std::size_t k = i + 1; k < key.entries.size(); ++k) {
            AArray<COLORREF> two;
            two.Add(key.entries[i].color);
            two.Add(key.entries[k].color);
            EXPECT_TRUE(isColorBlindSafe(two)) << i << ' ' << k;
        }
    EXPECT_TRUE(uvColours(file, UvColour::none, {}).isEmpty());
}

TEST(BaselineReader, WeightsDoNotFlattenAmplitudes)
{
    const struct {
        float usual, lone;
        double greatest;  ///< of the scale, of amplitudes up to 1
    } cases[] = {{1e4f, 1e4f, 1.2}, {1e4f, 1e-9f, 2.5}, {1e-4f, 1e-4f, 2.5}, {4, 4, 1.5}};
    for (const auto& c : cases) {
        std::vector<MadeGroup> groups(50);
        for (std::size_t i = 0; i < groups.size(); ++i) {
            groups[i].seconds = 2.0 * static_cast<double>(i);
            groups[i].gain = 1 / madeModel().VfromUV(0, 0).real();
            groups[i].weight = i == 7 ? c.lone : c.usual;
        }
        AUVXFile file;
        std::string error;
        ASSERT_TRUE(file.open(savedData("weights.uvfits", groups), error)) << error;
        BaselineReader reader(file, {{1, 1, 2, 50}}, BaselinePlot::time);
        while (reader.step()) {
        }
        const PanelChart chart = baselineChart(file, reader, BaselinePlot::time, {0});
        EXPECT_NEAR(chart.panels[0].scales[0].greatest, c.greatest, 1e-9) << c.usual;
        EXPECT_EQ(chart.panels[0].scales[0].least, 0);
    }
}

TEST(BaselineReader, WhatHasBeenReadSoFarCanBeSeenOfALongFile)
{
    // a block is some hundred kilobytes; the second selection begins in the first of them
    std::vector<double> seconds;
    for (int i = 0; i < 1500; ++i)
        seconds.push_back(2 * i);
    std::vector<MadeGroup> groups = madeGroups(4, seconds);
    std::rotate(groups.begin(), groups.begin() + 6, groups.end());
    std::swap(groups[0], groups[6]);
    for (std::size_t i = 0; i < groups.size(); ++i) {
        groups[i].gain = std::complex<double>(3e38, 3e38) / madeModel().VfromUV(0, 0).real();
        groups[i].u = groups[i].v = 0;
        groups[i].weight = 4;
        groups[i].selection = i < 100 ? 1 : 2;
    }
    AUVXFile file;
    std::string error;
    ASSERT_TRUE(file.open(savedData("long.uvfits", groups), error)) << error;
    const std::vector<UvBaseline> baselines = {{1, 1, 2, 3}, {1, 3, 1, 3}};
    for (const BaselinePlot plot : {BaselinePlot::time, BaselinePlot::channels}) {
        BaselineReader reader(file, baselines, plot);
        ASSERT_TRUE(reader.step(1));
        reader.refresh();
        const BaselineSeries& s = reader.series(0);
        EXPECT_TRUE(std::is_sorted(s.x.begin(), s.x.end()));
        EXPECT_GT(s.count(), 0u);
        if (plot == BaselinePlot::channels) {
            EXPECT_EQ(s.x, (std::vector<double>{1, 2, 3, 4, 5, 6, 7, 8})) << "by selection";
        }
        while (reader.step(1)) {
        }
        EXPECT_EQ(s.count(), plot == BaselinePlot::time ? 1500 : 8);
        EXPECT_EQ(s.amplitude[0], std::numeric_limits<float>::max()) << "as near as can be";
    }
    BaselineReader small(file, baselines, BaselinePlot::channels, {}, {}, 9);
    while (small.step()) {
    }
    EXPECT_EQ(small.error(), "has more channels than are kept; choose fewer baselines");
    EXPECT_EQ(small.series(0).count() + small.series(1).count(), 8u) << "of what was read";
}

}  // namespace pavane
