#include "pavane/calibration/EditedVisibilities.h"
#include "pavane/calibration/flag_charts.h"
#include "pavane/calibration/gains/UvCorrection.h"
#include "tests/calibration/made_data.h"

#include <cmath>

namespace pavane
{

namespace
{

constexpr double day = 86400;

/// Five telescopes at ten times, two IFs, RR and LL; the file is in memory.
struct Visibilities : testing::Test {
    AUVXFile file;
    EditedVisibilities data;
    std::vector<MadeGroup> groups;

    Visibilities()
    {
        groups = madeGroups(5, {0, 10, 20, 30, 40, 300, 310, 320, 330, 340});
        groups[7].weight = -4;  // flagged by the file itself
        std::string error;
        EXPECT_TRUE(file.open(savedData("flagged.uvfits", groups), error)) << error;
        read(data);
    }
    void read(EditedVisibilities& into, std::size_t most = EditedVisibilities::usualMost)
    {
        into.show(&file, {}, most);
        while (into.step()) {
        }
        EXPECT_EQ(into.error(), "");
    }
    static FlagRect everything() { return {-1e9, 1e15, -1e9, 1e9}; }
    /// What the same flags leave of the file when it is read through them.
    std::size_t leftByFilter()
    {
        EditedVisibilities again;
        file.setFilter(std::make_shared<UvCorrection>(file.header(), GainChain(), data.flags()));
        read(again);
        file.setFilter(nullptr);
        std::size_t left = 0;
        for (std::size_t r = 0; r < again.rows().size(); ++r)
            for (std::size_t p = 0; p < again.parts().size(); ++p)
                left += again.cell(r, p).weight > 0;
        return left;
    }
    FlagPanel panelOf(int first, int second, int isPhase = 0) const
    {
        for (std::size_t b = 0; b < data.baselines().size(); ++b)
            if (data.baselines()[b].first == first && data.baselines()[b].second == second)
                return {static_cast<int>(b), isPhase};
        return {};
    }
};

}  // namespace

TEST_F(Visibilities, HaveTheMeanOfTheChannelsAndTheModel)
{
    ASSERT_EQ(data.rows().size(), groups.size() - 1);
    ASSERT_EQ(data.parts().size(), 4U);
    EXPECT_EQ(data.count(), data.rows().size() * 4);
    EXPECT_NEAR(data.integration() * day, 10, 1e-3);
    data.setModel(madeModel());
    while (data.step()) {
    }
    ASSERT_TRUE(data.hasModel());
    for (std::size_t r = 0, g = 0; r < data.rows().size(); ++r, ++g) {
        g += g == 7;
        const MadeGroup& group = groups[g];
        const double sign = group.a < group.b ? 1 : -1;
        for (std::size_t p = 0; p < 4; ++p) {
            const int f = data.parts()[p].ifIndex;
            std::complex<double> mean = 0;
            for (int c = 0; c < madeChannels; ++c)
                mean += madeVisibility(group, f, c) / double{madeChannels};
            if (sign < 0)
                mean = std::conj(mean);
            EXPECT_LT(std::abs(data.cell(r, p).value() - mean), 1e-5);
            const double hertz = madeFrequency + f * madeIfStep + madeStep / 2;
            EXPECT_NEAR(data.distance(r, p), std::hypot(double{group.u}, double{group.v}) * hertz,
                        1);
            EXPECT_LT(
                std::abs(data.model(r, p) - madeModel().VfromUV(sign * double{group.u} * hertz,
                                                                sign * double{group.v} * hertz)),
                1e-5);
        }
    }
}

TEST_F(Visibilities, HaveTheModelThatAnotherProgramHasPredicted)
{
    std::vector<MadeGroup> predicted = groups;
    for (MadeGroup& group : predicted) {
        group.gain = 1;
        group.weight = -1;  // of what is flagged it is a model all the same
    }
    predicted.erase(predicted.begin() + 2);
    std::swap(predicted[4], predicted[40]);
    AUVXFile model;
    std::string error;
    ASSERT_TRUE(model.open(savedData("predicted.uvfits", predicted), error)) << error;
    data.setModelFile(&model);
    while (data.step()) {
    }
    data.keepModel();
    ASSERT_TRUE(data.hasModel());
    std::size_t without = 0;
    for (std::size_t r = 0; r < data.rows().size(); ++r)
        for (std::size_t p = 0; p < 4; ++p) {
            const EditedVisibilities::Row& row = data.rows()[r];
            const double hertz =
                madeFrequency + data.parts()[p].ifIndex * madeIfStep + madeStep / 2;
            const bool isThere = data.model(r, p) != 0.0;
            without += !isThere;
            // the mean of two channels is not quite the middle of them
            EXPECT_TRUE(!isThere ||
                        std::abs(data.model(r, p) -
                                 madeModel().VfromUV(row.u * hertz, row.v * hertz)) < 0.02);
        }
    EXPECT_EQ(without, 4U);
}

TEST_F(Visibilities, AreFlaggedAsTheScopeSaysAndAsAFileThroughTheFlagsIs)
{
    using Antennas = FlagScope::Antennas;
    FlagChartChoice split, mean;
    split.isSplit = 1;
    const double seconds = 86400 * data.rows()[0].time;
    const FlagRect first{seconds - 1, seconds + 41, -1e9, 1e9};  // the first scan
    struct Case {
        const char* what;
        FlagChartChoice choice;
        FlagScope scope;
        std::size_t changed;
    };
    const Case cases[] = {{"means of a baseline", mean, {}, 20},
                          {"each point", split, {}, 20},
                          {"of an antenna", mean, {Antennas::antenna, 2}, 80},
                          {"all", mean, {Antennas::all}, 196}};
    for (const Case& c : cases) {
        const auto points = flagPointsIn(data, c.choice, panelOf(1, 2), first, 0);
        EXPECT_EQ(points.size(), c.choice.isSplit ? 20U : 5U) << c.what;
        EXPECT_EQ(data.flag(points, c.scope, c.what), c.changed) << c.what;
        EXPECT_EQ(data.flaggedCount(), c.changed) << c.what;
        EXPECT_EQ(leftByFilter(), data.count() - data.flaggedCount()) << c.what;
        EXPECT_TRUE(flagPointsIn(data, c.choice, panelOf(1, 2), first, 0).empty()) << c.what;
        // half of them comes back
        const auto back =
            flagPointsIn(data, c.choice, panelOf(1, 2), {first.xLeast, seconds + 11, -1e9, 1e9}, 1);
        EXPECT_EQ(back.size(), c.choice.isSplit ? 8U : 2U) << c.what;
        FlagScope scope = c.scope;
        scope.isRestore = 1;
        EXPECT_GT(data.flag(back, scope, "back"), 0U) << c.what;
        EXPECT_EQ(leftByFilter(), data.count() - data.flaggedCount()) << c.what;
        EXPECT_TRUE(data.undo());
        EXPECT_EQ(data.flaggedCount(), c.changed) << c.what;
        EXPECT_TRUE(data.undo());
        EXPECT_EQ(data.flaggedCount(), 0U) << c.what;
        EXPECT_FALSE(data.undo());
    }
}

TEST_F(Visibilities, OfOneHandAreFlaggedByTheirAmplitudeAgainstDistance)
{
    FlagChartChoice choice;
    choice.isDistance = 1;
    const std::vector<FlagPanel> panels = flagPanels(data, choice);
    ASSERT_EQ(panels.size(), 2U);
    double most = 0;
    std::size_t row = 0;
    for (std::size_t r = 0; r < data.rows().size(); ++r)
        if (const double size = std::abs(data.cell(r, 3).value()); size > most) {
            most = size;
            row = r;
        }
    const double at = data.distance(row, 3);
    const FlagRect rect{at * (1 - 1e-9), at * (1 + 1e-9), most * (1 - 1e-5), most * (1 + 1e-5)};
    const auto points = flagPointsIn(data, choice, panels[0], rect, 0);
    ASSERT_EQ(points.size(), 2U);  // RR and LL are alike
    EXPECT_EQ(data.flag({points[1]}, {}, "one"), 1U);
    EXPECT_TRUE(data.isFlagged(row, 3) && !data.isFlagged(row, 2));
    EXPECT_EQ(data.flags().lines.front().stokes, -2);
    EXPECT_EQ(data.flags().lines.front().ifs, std::vector<int>{1});
    EXPECT_EQ(leftByFilter(), data.count() - 1);
    const PanelChart chart = flagChart(data, choice);
    ASSERT_EQ(chart.panels.size(), 2U);
    EXPECT_EQ(chart.panels[0].scales[0].curves.front().x, std::vector<double>{at});  // flagged
    choice.flagged = 0;
    EXPECT_EQ(flagChart(data, choice).panels[0].scales[0].curves.size(), 1U);
}

TEST_F(Visibilities, OfAPartOfTheFileAreShownWhenReadingIsStopped)
{
    EditedVisibilities part;
    part.setModel(madeModel());
    part.show(&file);
    part.stop();
    EXPECT_FALSE(part.isBusy() || part.hasModel());
    EXPECT_FALSE(part.step());
    read(part);  // all of it, with the model
    EXPECT_TRUE(part.hasModel());
    EXPECT_EQ(part.count(), data.count());
}

TEST_F(Visibilities, AreMeansWhereThereAreTooMany)
{
    const struct {
        std::size_t most, parts;
    } cases[] = {{400, 4}, {399, 2}, {199, 1}};
    for (const auto& c : cases) {
        EditedVisibilities few;
        read(few, c.most);
        EXPECT_EQ(few.parts().size(), c.parts) << c.most;
        FlagChartChoice choice;
        const auto points = flagPointsIn(few, choice, {0, 0}, everything(), 0);
        EXPECT_EQ(points.size(), 10U);
        EXPECT_EQ(few.flag(points, {}, "all of it"), 10 * c.parts);
        EXPECT_EQ(few.undo() && few.redo(), 1);
        EXPECT_EQ(few.flaggedCount(), 10 * c.parts);
    }
    EditedVisibilities none;
    none.show(&file, {}, 98);
    while (none.step()) {
    }
    EXPECT_NE(none.error(), "");
}

TEST_F(Visibilities, KeepFlagsOfAFileThatCountsFromAnotherDay)
{
    const double day2 = file.header().referenceDay - 2;
    VisibilityFlags other{day2, {FlagLine{0, 1, 1, 2, {}, 0, 2, 2 + 45 / day, 0}}};
    EXPECT_TRUE(data.replaceFlags(other, "Reading"));
    EXPECT_EQ(data.flaggedCount(), 20U);
    EXPECT_EQ(data.edits().undoLabel(), "Reading");
    EXPECT_TRUE(data.undo());
    EXPECT_EQ(data.flaggedCount(), 0U);
    data.setFlags(other);  // as they are, without a step
    EXPECT_EQ(data.flaggedCount(), 20U);
    EXPECT_FALSE(data.edits().canUndo());
    FlagChartChoice choice;
    const auto points = flagPointsIn(data, choice, panelOf(1, 3), everything(), 0);
    EXPECT_EQ(data.flag(points, {}, "more"), 4 * points.size());
    EXPECT_EQ(leftByFilter(), data.count() - data.flaggedCount());
}

}  // namespace pavane
