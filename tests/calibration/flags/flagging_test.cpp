#include "pavane/calibration/flags/FlagEdits.h"
#include "pavane/calibration/flags/UvPick.h"
#include "tests/calibration/gains/simulated_file.h"

namespace pavane
{

namespace
{

constexpr double day = 86400;

TEST(FlagLines, JoinWhatFollowsInTime)
{
    const auto point = [](double seconds, int a, int b, int f, int stokes) {
        return FlagPoint{1, a, b, seconds / day, f, stokes, 0};
    };
    const std::vector<FlagPoint> points{point(10, 2, 1, 0, -1), point(12, 1, 2, 0, -1),
                                        point(12, 1, 2, 2, -1), point(10, 1, 2, 2, -1),
                                        point(16, 1, 2, 0, -1), point(12, 1, 3, 0, -2)};
    struct Case {
        const char* what;
        FlagScope scope;
        std::vector<std::string> lines;  ///< seconds in place of days
    };
    using Antennas = FlagScope::Antennas;
    const Case cases[] = {
        {"as they are", {}, {"1 2 1,3 RR 9-13", "1 3 1 LL 11-13", "1 2 1 RR 15-17"}},
        {"all IFs",
         {Antennas::baseline, 0, 1},
         {"1 2 * RR 9-13", "1 3 * LL 11-13", "1 2 * RR 15-17"}},
        {"an antenna", {Antennas::antenna, 3, 0, 1}, {"3 0 1 * 11-13"}},
        {"all antennas and hands", {Antennas::all, 0, 1, 1}, {"0 0 * * 9-13", "0 0 * * 15-17"}},
    };
    for (const Case& c : cases) {
        std::vector<std::string> lines;
        for (const FlagLine& line : flagLinesOf(points, c.scope, 2 / day)) {
            const std::string text = flagText(line);
            std::vector<std::string> fields(1);
            for (const char letter : text)
                letter == '\t' ? fields.emplace_back() : fields.back() += letter;
            lines.push_back(fields[2] + " " + fields[3] + " " + fields[4] + " " + fields[5] + " " +
                            std::to_string(std::lround(line.start * day)) + "-" +
                            std::to_string(std::lround(line.end * day)));
        }
        EXPECT_EQ(lines, c.lines) << c.what;
    }
}

TEST(FlagEdits, AreUndoneAndDoneAgain)
{
    FlagEdits edits;
    const FlagLine a{0, 1, 1, 2, {0, 2}, -1, 0.1, 0.2, 0}, b{1, 1, 0, 0, {}, 0, 0.1, 0.2, 0};
    EXPECT_FALSE(edits.add({}, "Nothing"));
    EXPECT_TRUE(edits.add({a, b}, "Flagging"));
    EXPECT_TRUE(edits.add({b}, "Restoring"));
    EXPECT_TRUE(edits.remove(0, "Removal"));
    EXPECT_TRUE(edits.removeAll("Clearing"));
    using Lines = std::vector<FlagLine>;
    const Lines states[] = {{}, {a, b}, {a, b, b}, {b, b}, {}};
    EXPECT_EQ(edits.undoLabel(), "Clearing");
    for (int i = 3; i >= 0; --i) {
        EXPECT_TRUE(edits.undo());
        EXPECT_EQ(edits.flags().lines, states[i]);
    }
    EXPECT_FALSE(edits.canUndo() || edits.isModified());
    for (int i = 1; i <= 4; ++i) {
        const unsigned version = edits.version();
        EXPECT_TRUE(edits.redo());
        EXPECT_EQ(edits.flags().lines, states[i]);
        EXPECT_NE(edits.version(), version);
    }
    edits.set({5, {a}});
    EXPECT_FALSE(edits.undo() || edits.isModified());
}

TEST(UvPick, FindsWhatLiesInTheRectangle)
{
    Simulated data;
    data.antennas = 4;
    data.seconds = everySeconds(6, 10);
    // one bad integration of one baseline, IF and hand; another that is flagged
    data.gain = [](int, int, char, double) { return 1.0; };
    data.weight = [](int, int b, int f, int stokes, double s) {
        return b == 3 && f == 0 && stokes == -1 && s == 1010 ? 0.0F : 1.0F;
    };
    AUVXFile file;
    std::string error;
    ASSERT_TRUE(file.open(data.saved("pick.uvfits"), error)) << error;
    const auto picked = [&](const UvRectangle& rectangle, int takesFlagged = 0) {
        UvPick pick(file, rectangle, {}, takesFlagged);
        while (pick.step(1)) {
        }
        EXPECT_EQ(pick.error(), "");
        return pick.points();
    };
    using Across = UvRectangle::Across;
    using Up = UvRectangle::Up;
    const auto time = [](double seconds) { return seconds / day; };
    // 6 baselines, 2 IFs, 2 hands
    EXPECT_EQ(picked({Across::time, Up::amplitude, time(1005), time(1025), 0, 9}).size() +
                  std::size_t{3 - 1},
              48U);
    EXPECT_EQ(picked({Across::time, Up::amplitude, time(1005), time(1025), 0, 9}, 1).size(), 48U);
    EXPECT_TRUE(picked({Across::time, Up::amplitude, time(1005), time(1025), 5, 9}).empty());
    EXPECT_TRUE(picked({Across::distance, Up::amplitude, 1e12, 1e13, 0, 9}).empty());
    const auto above = picked({Across::distance, Up::phase, 0, 1e12, 0, 180});
    const auto below = picked({Across::distance, Up::phase, 0, 1e12, -180, -1e-9});
    // both channels of an IF have the same sign unless the phase goes through 0
    EXPECT_GE(above.size() + below.size(), 6U * 24 - 2);
    EXPECT_GT(above.size(), 0U);
    EXPECT_GT(below.size(), 0U);
}

}  // namespace

}  // namespace pavane
