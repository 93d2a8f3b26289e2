#include "pavane/calibration/EditedGains.h"
#include "pavane/calibration/gain_charts.h"
#include "pavane/calibration/mean_gains.h"
#include "tests/calibration/made_gains.h"

#include <gtest/gtest.h>

#include <cmath>
#include <cstring>
#include <random>

using namespace pavane;
using namespace pavane::test;

namespace
{

/// Every bit that edits may change.
std::vector<double> numbersOf(const AGains& gains)
{
    std::vector<double> numbers;
    for (const Gain& gain : gains.cells())
        for (const double number : {gain.value.real(), gain.value.imag(), gain.error,
                                    static_cast<double>(gain.state), 1.0 * gain.isFlagged})
            numbers.push_back(number);
    return numbers;
}

}  // namespace

TEST(EditedGains, BringEveryBitBackThroughAnArrayAndAChain)
{
    AGains array = madeGains(4, 30);
    GainChain chain;
    (void)chain.add("first", madeGains(4, 30));
    const int link = chain.add("second", array);
    for (const int ofChain : {0, 1}) {
        EditedGains edited;
        int told = 0;
        const int listener = edited.listen([&] { ++told; });
        if (ofChain)
            edited.show(chain, link);
        else
            edited.show(array);
        EXPECT_EQ(told, 1);
        std::mt19937 random(3);
        std::vector<std::vector<double>> states{numbersOf(edited.gains())};
        for (int step = 0; step < 60; ++step) {
            const std::size_t cell = random() % edited.gains().cells().size();
            std::size_t changed = 0;
            if (step % 3 == 0)
                changed = edited.setFlags({cell, cell + 1, cell + 7}, step % 2, "Flags");
            else if (step % 3 == 1)
                changed = edited.setValue(cell, {0.5 + step, 0.1}, "Value");
            else
                changed = edited.scaleAntenna(cell % 4, 0.9, "Scaling");
            if (changed)
                states.push_back(numbersOf(edited.gains()));
        }
        ASSERT_GT(states.size(), 40U);
        for (std::size_t i = states.size() - 1; i > 0; --i) {
            ASSERT_TRUE(edited.undo());
            ASSERT_EQ(numbersOf(edited.gains()), states[i - 1]);
        }
        EXPECT_FALSE(edited.undo());
        while (edited.redo()) {
        }
        EXPECT_EQ(numbersOf(edited.gains()), states.back());
        edited.begin("Both");
        EXPECT_EQ(edited.setFlags({0}, 1, "a") + edited.setValue(1, 2.0, "b"), 2U);
        EXPECT_FALSE(edited.undo());  // a step is open
        edited.end();
        EXPECT_EQ(edited.history().undoLabel(), "Both");
        ASSERT_TRUE(edited.undo());
        EXPECT_EQ(numbersOf(edited.gains()), states.back());
        const int before = told;
        edited.forget(listener);
        (void)edited.redo();
        EXPECT_EQ(told, before);
        EXPECT_EQ(edited.setValue(0, 0.0, "x") + edited.setValue(0, {HUGE_VAL, 0}, "x") +
                      edited.scaleAntenna(99, 2, "x") + edited.scaleAntenna(0, -1, "x") +
                      edited.setFlags({99999999}, 1, "x"),
                  0U);
    }
}

TEST(EditedGains, AreNoneOfALinkThatIsGone)
{
    GainChain chain;
    const int link = chain.add("one", madeGains(3, 5));
    EditedGains edited(chain, link);
    ASSERT_EQ(edited.setFlags({0}, 1, "Flags"), 1U);
    ASSERT_TRUE(chain.remove(link));
    EXPECT_TRUE(edited.gains().cells().empty());
    EXPECT_EQ(edited.setFlags({0}, 1, "Flags"), 0U);
    EXPECT_TRUE(gainPanels(edited.gains(), {}).empty());
    AGains other = madeGains(2, 2);
    edited.show(other);
    EXPECT_FALSE(edited.history().canUndo());
}

TEST(GainCharts, HaveAPanelForEachAntennaAndBreakLinesWhereSolutionsAre)
{
    AGains gains = madeGains(5, 40);
    gains.at(3, 0, 0, 1).state = GainState::failed;
    gains.at(4, 0, 0, 1).state = GainState::missing;
    gains.at(9, 0, 0, 1).isFlagged = 1;
    GainChartChoice choice;
    choice.rowsOfPage = 3;
    const std::vector<GainPanel> panels = gainPanels(gains, choice);
    std::string text;
    for (const GainPanel& panel : panels)
        text += std::to_string(panel.antenna) + (panel.isPhase ? "p " : "a ");
    EXPECT_EQ(text, "0a 1a 2a 0p 1p 2p 3a 4a -1a 3p 4p -1p ");
    const PanelChart chart = gainChart(gains, choice);
    ASSERT_EQ(chart.panels.size(), panels.size());
    EXPECT_EQ(chart.panels[1].caption, "T2");
    const std::vector<ChartCurve>& curves = chart.panels[1].scales[0].curves;
    ASSERT_EQ(curves.size(), 10U);  // of 2 groups and 2 hands lines and points, flagged, failed
    EXPECT_EQ(curves[4].x.size(), 37U);
    EXPECT_EQ(curves[4].error.size(), 37U);
    EXPECT_EQ(curves[0].x.size(), 39U);  // with two breaks
    EXPECT_TRUE(std::isnan(curves[0].y[3]));
    EXPECT_EQ(curves[8].y, std::vector<double>{std::abs(gains.at(9, 0, 0, 1).value)});
    EXPECT_EQ(curves[9].y, std::vector<double>{std::abs(gains.at(2, 0, 0, 1).value)});
    EXPECT_EQ(chart.panels[0].scales[0].curves[4].name, "IF 1-2 R");
    EXPECT_EQ(chart.panels[0].scales[0].curves[7].name, "IF 4 L");
    choice.amplitudes = 0;
    choice.antennas = {4, 99, 1};
    EXPECT_EQ(gainPanels(gains, choice).size(), 2U);

    const GainRect all{-1e9, 1e9, -1e9, 1e9};
    EXPECT_EQ(gainsIn(gains, {1, 0}, all, 0).size(), 4 * 40U - 3);
    EXPECT_EQ(gainsIn(gains, {1, 0}, all, 1),
              std::vector<std::size_t>{cellOf(gains, {9, 0, 0, 1})});
    const double x = gains.intervals()[7].middle() * 86400;
    const double y = gainPhase(gains.at(7, 1, 1, 2));
    EXPECT_EQ(gainsIn(gains, {2, 1}, {x - 1, x + 1, y - 1e-9, y + 1e-9}, 0),
              std::vector<std::size_t>{cellOf(gains, {7, 1, 1, 2})});
    for (std::size_t i = 0; i < gains.cells().size(); i += 13)
        EXPECT_EQ(cellOf(gains, gainIndexOf(gains, i)), i);
}

TEST(MeanGains, AreMediansAndTheirScatter)
{
    AGains gains = madeGains(2, 5);
    const double sizes[] = {1, 2, 3, 4, 100};
    for (std::size_t i = 0; i < 5; ++i) {
        gains.at(i, 0, 0, 0).value = std::polar(sizes[i], i % 2 ? 3.1 : -3.1);
        gains.at(i, 1, 0, 0).state = GainState::failed;
        gains.at(i, 1, 1, 0).isFlagged = 1;
        gains.at(i, 0, 1, 0).isFlagged = i == 4;
    }
    const std::vector<MeanGain> means = meanGains(gains);
    ASSERT_EQ(means.size(), 8U);
    EXPECT_EQ(means[0].solutions, 5U);
    EXPECT_EQ(means[0].amplitude, 3);
    EXPECT_NEAR(means[0].amplitudeScatter, 1.4826, 1e-12);
    EXPECT_NEAR(std::abs(means[0].phase), 180, 1.1);  // over the end of the scale
    EXPECT_LT(means[0].phaseScatter, 5);
    EXPECT_EQ(means[1].solutions, 4U);
    EXPECT_EQ(means[2].failed, 5U);
    EXPECT_EQ(means[3].flagged, 5U);
    EXPECT_EQ(means[2].amplitude + means[3].amplitude, 0);
    EditedGains edited(gains);
    const double median = medianAmplitude(gains, 1);
    EXPECT_GT(edited.scaleAntenna(1, 1 / median, "Scaling"), 0U);
    EXPECT_NEAR(medianAmplitude(gains, 1), 1, 1e-12);
}
