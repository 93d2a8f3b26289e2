#include "pavane/progress/AProgress.h"
#include "pavane/progress/TimeLeft.h"

#include <functional>
#include <gtest/gtest.h>
#include <limits>

namespace pavane
{

namespace
{

constexpr double nan = std::numeric_limits<double>::quiet_NaN();
constexpr std::int64_t huge = std::numeric_limits<std::int64_t>::max();

TEST(Progress, FractionsOfWhatIsSaid)
{
    const struct {
        const char* what;
        std::vector<double> steps;
        std::vector<std::int64_t> said;  ///< a total below 0 (-1000: unknown), else pieces
        double expected;
    } rows[] = {
        {"nothing", {}, {}, -1},
        {"pieces of an unknown total", {}, {5, 7}, -1},
        {"half", {}, {-10, 2, 3}, 0.5},
        {"beyond the total", {}, {-10, 11}, 1},
        {"far beyond it", {}, {-10, huge, huge, huge}, 1},
        {"another total of the only step", {}, {-10, 2, -20, 2}, 0.2},
        {"never less than was told", {}, {-10, 5, -100}, 0.5},
        {"a step unlike long", {1, 3}, {-10, 10}, 0.25},
        {"the second step", {1, 3}, {-10, 4, -4, 2}, 0.625},
        {"an unknown step between", {1, 1, 2}, {-10, 10, -1000, 7}, 0.25},
        {"more totals than steps", {1, 1}, {-10, 10, -10, 5, -20}, 0.75},
        {"weights that are none", {nan, -3, 1}, {-10, 10, -10, 10, -10, 5}, 0.5},
        {"no weight at all", {0, 0}, {-10, 5}, -1},
    };
    for (const auto& row : rows) {
        AProgress progress;
        AProgressWriter writer(progress);
        writer.SetSteps(row.steps);
        for (const std::int64_t said : row.said) {
            if (said < 0)
                writer.SetTotal(said == -1000 ? 0 : -said);
            else
                writer.Advance(said);
            writer.Advance(-3);
            (void)progress.GetReport();
        }
        EXPECT_NEAR(progress.GetReport().fraction, row.expected, 1e-12) << row.what;
    }
}

TEST(Progress, EndsOnceAndTheFirstEndCounts)
{
    using Act = std::function<void(AProgressWriter&)>;
    const Act finish = [](AProgressWriter& w) { (void)w.Finish(7); };
    const Act fail = [](AProgressWriter& w) { (void)w.Fail("no room"); };
    const Act drop = [](AProgressWriter& w) { const AProgressWriter gone = std::move(w); };
    const struct {
        std::vector<Act> acts;
        ProgressState state;
        int result;
        CString text;
    } rows[] = {
        {{}, ProgressState::running, 0, "begun"},
        {{finish}, ProgressState::finished, 7, "begun"},
        {{finish, finish, fail}, ProgressState::finished, 7, "begun"},
        {{fail, finish}, ProgressState::failed, 0, "no room"},
        {{drop}, ProgressState::stopped, 0, "begun"},
        {{drop, finish, fail}, ProgressState::stopped, 0, "begun"},
        {{finish, drop}, ProgressState::finished, 7, "begun"},
    };
    for (const auto& row : rows) {
        AProgress progress;
        auto writer = std::make_unique<AProgressWriter>(progress);
        writer->SetText("begun");
        writer->SetTotal(10);
        writer->Advance(2);
        for (const Act& act : row.acts)
            act(*writer);
        // a handle that was moved from, or of an ended job
        const double before = progress.GetReport().fraction;
        EXPECT_EQ(before, row.state == ProgressState::finished ? 1 : 0.2);
        if (progress.HasEnded())
            writer->SetTotal(4);
        writer->Advance(row.state == ProgressState::running ? 0 : 1);
        EXPECT_EQ(progress.GetReport().fraction, before);
        const ProgressReport report = progress.GetReport();
        EXPECT_EQ(report.state, row.state) << &row - rows;
        EXPECT_EQ(report.result, row.result) << &row - rows;
        EXPECT_EQ(report.text, row.text) << &row - rows;
        EXPECT_EQ(progress.HasEnded(), row.state != ProgressState::running);
    }
}

TEST(Progress, TheLastHandleCountsAndCopiesAreOfTheSameJob)
{
    AProgress progress;
    {
        const AProgressWriter first(progress);
        {
            const AProgressWriter second(first), third(progress);
        }
        EXPECT_FALSE(progress.HasEnded());
        const AProgress same = progress;
        AProgress(same).Cancel();
        EXPECT_TRUE(first.IsCancelled());
    }
    EXPECT_EQ(progress.GetReport().state, ProgressState::stopped);
    AProgressWriter late(progress);
    EXPECT_FALSE(late.Finish());
}

TEST(Progress, TextsComeInOrderEachOnceAndNotWithoutEnd)
{
    AProgress progress;
    AProgressWriter writer(progress);
    std::uint64_t known = 0;
    writer.SetText("a");
    writer.SetText("a");
    writer.SetText("b");
    ASSERT_EQ(progress.GetTexts(known).size(), 2U);
    EXPECT_TRUE(progress.GetTexts(known).empty());
    for (int i = 0; i < 5000; ++i)
        writer.SetText(std::to_string(i));
    const auto texts = progress.GetTexts(known);
    EXPECT_LE(texts.size(), 1000U);
    EXPECT_EQ(texts.back().text, "4999");
    known = huge;
    EXPECT_TRUE(progress.GetTexts(known).empty());
}

TEST(TimeLeft, OfEvenChangingAndBrokenSpeeds)
{
    const struct {
        std::function<double(double)> fractionAt;
        double until, least, most;
    } rows[] = {
        {[](double t) { return t / 100; }, 40, 59, 61},
        {[](double t) { return t / 100; }, 0.5, -1, -1},
        {[](double t) { return t < 20 ? t / 400 : 0.05 + (t - 20) / 40; }, 40, 15, 24},
        {[](double) { return 0.3; }, 40, -1, -1},
        {[](double t) { return -t; }, 40, -1, -1},
        {[](double) { return nan; }, 40, -1, -1},
        {[](double t) { return t * 1e-9; }, 40, -1, -1},
    };
    for (const auto& row : rows) {
        TimeLeft left;
        for (double t = 0; t <= row.until; t += 0.1)
            left.add(t, row.fractionAt(t));
        EXPECT_GE(left.seconds(), row.least) << &row - rows;
        EXPECT_LE(left.seconds(), row.most) << &row - rows;
    }
    EXPECT_EQ(timeLeftText(-1) + timeLeftText(nan) + timeLeftText(1e300), "");
    EXPECT_EQ(timeLeftText(11.2), "about 12 s left");
    EXPECT_EQ(timeLeftText(150), "about 3 min left");
    EXPECT_EQ(timeLeftText(7201), "about 3 h left");
}

}  // namespace

}  // namespace pavane
