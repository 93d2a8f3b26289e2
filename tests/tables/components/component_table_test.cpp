#include "pavane/tables/components/component_table.h"
#include "pavane/tables/components/EditedComponents.h"

#include <cmath>
#include <cstring>
#include <gtest/gtest.h>
#include <limits>

namespace pavane
{

TEST(ComponentTable, TakesWhatAComponentCanBe)
{
    const struct {
        int column;
        const char *typed, *shown;  // null: refused
    } cases[] = {
        {componentKindColumn, "thin RING", "Thin ring"},
        {componentKindColumn, " 3 ", "Disk"},
        {componentKindColumn, "102", "102"},
        {componentKindColumn, "-1", "-1"},
        {componentKindColumn, "ring", nullptr},
        {componentKindColumn, "2.5", nullptr},
        {componentKindColumn, "", nullptr},
        {componentFluxColumn, "-1e-3", "-0.001"},
        {componentFluxColumn, "0.1234567890123", "0.1234567890123"},
        {componentFluxColumn, "inf", nullptr},
        {componentFluxColumn, "nan", nullptr},
        {componentFluxColumn, "1 Jy", nullptr},
        {componentFluxColumn, "1e999", nullptr},
        {componentLargeAxisColumn, "0", "0"},
        {componentLargeAxisColumn, "-1e-9", nullptr},
        {componentAxisRatioColumn, "0", "0"},
        {componentAxisRatioColumn, "1", "1"},
        {componentAxisRatioColumn, "1.0001", nullptr},
        {componentInclinationColumn, "-400", "-400"},
        {componentAngleColumn, "720.5", "720.5"},
        {componentDistanceColumn, "-2", nullptr},
        {componentWidthColumn, "1.5", nullptr},
        {componentWidthColumn, "0.25", "0.25"},
        {componentColumns + 1, "1", nullptr},
        {0, "1", nullptr},
    };
    for (const auto& c : cases) {
        ACompItem item;
        const std::string before = componentText(item, c.column);
        std::string message;
        EXPECT_EQ(setComponentText(item, c.column, c.typed, message), c.shown != nullptr)
            << c.typed;
        EXPECT_EQ(componentText(item, c.column), c.shown ? c.shown : before) << c.typed;
        EXPECT_EQ(message.empty(), c.shown != nullptr) << c.typed;
    }
}

TEST(ComponentTable, IsWrittenAsText)
{
    AComponents model;
    const std::string head = "No.\tKind\tPeak flux [Jy]\tLarge axis [arcsec]\tAxis ratio\t"
                             "Inclination [deg]\tAngle [deg]\tDistance [arcsec]\tWidth\n";
    EXPECT_EQ(componentTsv(model), head);
    model.Add(ACompItem("2 0.1 1e-3 0.5 -30 60 0.004 0.5"));
    model.Add(ACompItem("9 1 0 1 0 0 0 0.5"));
    EXPECT_EQ(componentTsv(model), head + "1\tGaussian\t0.1\t0.001\t0.5\t-30\t60\t0.004\t0.5\n"
                                          "2\t9\t1\t0\t1\t0\t0\t0\t0.5\n");
}

TEST(ComponentTable, ListsWhatSixDigitsLose)
{
    AComponents model;
    model.Add(ACompItem("1 0.123456 0 1 0 0 0 0.5"));
    EXPECT_TRUE(lossesOfComponentText(model).empty());
    model(0).PeakFlux() = 0.1234567;
    model(0).Angle() = -45.00001;
    model.Add(model(0));
    const auto lines = lossesOfComponentText(model, 2);
    ASSERT_EQ(lines.size(), 3u);
    EXPECT_EQ(lines[0], "component 1: Peak flux [Jy] 0.1234567 becomes 0.123457");
    EXPECT_EQ(lines[1], "component 1: Angle [deg] -45.00001 becomes -45");
    EXPECT_EQ(lines[2], "and 2 more");
}

TEST(EditedComponents, ChangeInWholeStepsOnly)
{
    EditedComponents edited;
    AComponents start;
    start.Add(ACompItem("2 1 0.1 0.5 0 0 0 0.5"));
    start(0).Inclination() = std::nan("7");
    ASSERT_TRUE(edited.reset(start));
    EXPECT_FALSE(edited.set(0, ACompItem())) << "outside of a step";
    edited.begin("Edit");
    edited.begin("inner");
    const ACompItem two[] = {ACompItem("3 2 0 1 0 0 0 0"), ACompItem("4 3 0 1 0 0 0 0")};
    EXPECT_TRUE(edited.insert(1, two, 2) && edited.remove(0, 2));
    EXPECT_FALSE(edited.insert(9, two, 2) || edited.remove(0, 2));
    EXPECT_EQ(edited.end(), editUnchanged);
    EXPECT_FALSE(edited.undo()) << "inside a step";
    EXPECT_EQ(edited.end(), editRecorded);
    EXPECT_EQ(edited.history().undoLabel(), "Edit");
    EXPECT_TRUE(edited.isModified() && edited.undo());
    ASSERT_EQ(edited.list().count(), 1);
    EXPECT_EQ(std::memcmp(edited.list().lpArray(), start.lpArray(), sizeof(ACompItem)), 0);
    EXPECT_FALSE(edited.isModified());
}

TEST(ComponentTable, ShowsFewerDigitsRatherThanHalfAnExponent)
{
    const auto shown = [](const char* text, std::size_t room) {
        return roomyNumber(text, [room](const std::string& each) { return each.size() <= room; });
    };
    EXPECT_EQ(shown("8.563690789742395e-05", 12), "8.563691e-05");
    EXPECT_EQ(shown("-0.0008757058123219758", 9), "-0.000876");
    EXPECT_EQ(shown("0.25", 4), "0.25");
    EXPECT_EQ(shown("Gaussian", 3), "Gaussian");
    EXPECT_EQ(shown("1e-300", 2), "1e-300") << "nothing fits";
}

}  // namespace pavane
