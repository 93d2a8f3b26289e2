#include "tessel/flags/FlagQuery.h"
#include "tests/tessel/fits_text.h"

#include <algorithm>
#include <cmath>
#include <cstring>
#include <random>

namespace pavane
{

namespace
{

TEST(VisibilityFlags, AreWrittenExactlyAndReadBack)
{
    VisibilityFlags flags;
    flags.referenceDay = 2455554.5;
    flags.lines = {{0, 1, 3, 0, {0, 1, 2, 3, 5}, -1, 0.1, 0.3, 0},
                   {1, 0, 0, 0, {}, 0, -1.0 / 3, 1e-17, 2},
                   {0, 2, 5, 4, {6}, -8, 1, std::nextafter(1, 2), 0}};
    const std::string name = testing::TempDir() + "some.flags";
    std::string error;
    ASSERT_TRUE(writeFlags(name, flags, error)) << error;
    EXPECT_EQ(contents(name), "# pavane flags 1\n# referenceday 2455554.5\n"
                              "flag\t1\t3\t0\t1-4,6\tRR\t0.1\t0.3\t0\n"
                              "restore\t0\t0\t0\t*\t*\t-0.3333333333333333\t1e-17\t2\n"
                              "flag\t2\t5\t4\t7\tYX\t1\t1.0000000000000002\t0\n");
    VisibilityFlags again;
    ASSERT_TRUE(readFlags(name, again, error)) << error;
    EXPECT_EQ(again.referenceDay, flags.referenceDay);
    EXPECT_EQ(again.lines, flags.lines);

    // what could not be read again is not written
    for (const FlagLine& wrong :
         {FlagLine{0, 1, 1, 2, {3, 2}, 0, 0, 1, 0}, FlagLine{0, 1, 1, 2, {}, 0, 1, 1, 0},
          FlagLine{0, -1, 1, 2, {}, 0, 0, 1, 0}, FlagLine{0, 1, 1, 2, {}, 99, 0, 1, 0}}) {
        EXPECT_FALSE(writeFlags(name, {0, {wrong}}, error));
        EXPECT_NE(error, "");
    }
    EXPECT_TRUE(readFlags(name, again, error) && again.lines == flags.lines);
}

TEST(VisibilityFlags, ReadNothingThatIsWrong)
{
    const std::string head = "# pavane flags 1\n# referenceday 2455554.5\n";
    const std::string line = "flag\t1\t3\t0\t1-4,6\tRR\t0.1\t0.3\t0";
    const auto with = [&](const char* from, const char* to) {
        std::string other = line;
        return head + "\n# a word\r\n" + other.replace(other.find(from), std::strlen(from), to);
    };
    struct Case {
        std::string text;
        const char* error;
    };
    const Case cases[] = {
        {"", "is no file of flags"},
        {line, "is no file of flags"},
        {"# pavane flags 2\n", "is no file of flags"},
        {"# pavane flags 1\n" + line, "has no reference day in its second line"},
        {"# pavane flags 1\n# referenceday nan\n", "has no reference day in its second line"},
        {with("flag", "flags"), "has a line 5 with a wrong first word"},
        {with("\t0.1", ""), "has a line 5 with a wrong number of fields"},
        {with("RR", "RR\t0"), "has a line 5 with a wrong number of fields"},
        {with("flag\t1", "flag\t-1"), "has a line 5 with a wrong subarray"},
        {with("3", "3.5"), "has a line 5 with a wrong antenna"},
        {with("1-4", "0-4"), "has a line 5 with a wrong list of IFs"},
        {with("1-4", "4-1"), "has a line 5 with a wrong list of IFs"},
        {with("1-4", "1-7"), "has a line 5 with a wrong list of IFs"},
        {with("1-4", "1-2147483647"), "has a line 5 with a wrong list of IFs"},
        {with("1-4", ""), "has a line 5 with a wrong list of IFs"},
        {with("RR", "RX"), "has a line 5 with a wrong hand"},
        {with("RR", ""), "has a line 5 with a wrong hand"},
        {with("0.3", "0.1"), "has a line 5 with a wrong time"},
        {with("0.3", "inf"), "has a line 5 with a wrong time"},
        {with("0.3\t0", "0.3\tx"), "has a line 5 with a wrong source"},
    };
    for (const Case& c : cases) {
        VisibilityFlags flags;
        std::string error;
        EXPECT_FALSE(readFlags(saved("bad.flags", c.text), flags, error)) << c.text;
        EXPECT_EQ(error, c.error) << c.text;
        EXPECT_TRUE(flags.lines.empty());
    }
    // short lines that name very many IFs
    std::string many = head;
    for (int i = 0; i < 400; ++i)
        many += "flag\t1\t3\t0\t1-65536\tRR\t0.1\t0.3\t0\n";
    VisibilityFlags flags;
    std::string error;
    EXPECT_FALSE(readFlags(saved("bad.flags", many), flags, error));
    EXPECT_EQ(error, "names more IFs than any data have");
}

/// Each line in its order, asked one by one.
TEST(FlagQuery, AnswersAsTheLinesSay)
{
    std::mt19937 random(4);
    const auto below = [&random](int n) { return static_cast<int>(random() % unsigned(n)); };
    const std::vector<int> stokes{-1, -2, -3};
    int asked = 0, flagged = 0;
    for (int round = 0; round < 40; ++round) {
        VisibilityFlags flags;
        flags.referenceDay = 2455555.5;
        for (int i = below(60); i > 0; --i) {
            FlagLine line{below(3) == 0, below(3), below(4), below(4), {},
                          -below(4),     0,        0,        below(3)};
            for (int f = 0; f < 5; ++f)
                if (below(3) == 0)
                    line.ifs.push_back(f);
            line.start = 0.1 * below(10) - 1;
            line.end = line.start + 0.1 * (1 + below(round % 2 ? 2 : 10));
            flags.lines.push_back(line);
        }
        FlagQuery query(flags, 4, stokes, 2455554.5);
        for (int n = 0; n < 300; ++n) {
            const int subarray = 1 + below(2), a = 1 + below(3), b = 1 + below(3);
            const int source = 1 + below(2);
            const double time = n == 0 ? std::nan("") : 0.05 * below(40);
            const unsigned char* const row = query.of(subarray, a, b, time, source);
            for (int f = 0; f < 4; ++f)
                for (std::size_t s = 0; s < 3; ++s) {
                    int is = 0;
                    for (const FlagLine& line : flags.lines) {
                        const auto has = [&](int x, int y) {
                            return (line.first == 0 || line.first == x) &&
                                   (line.second == 0 || line.second == y);
                        };
                        if ((line.subarray == 0 || line.subarray == subarray) &&
                            (line.source == 0 || line.source == source) &&
                            (has(a, b) || has(b, a)) && time - 1 >= line.start &&
                            time - 1 < line.end && (!line.stokes || line.stokes == stokes[s]) &&
                            (line.ifs.empty() ||
                             std::find(line.ifs.begin(), line.ifs.end(), f) != line.ifs.end()))
                            is = !line.isRestore;
                    }
                    EXPECT_EQ(row ? int{row[f * 3 + static_cast<int>(s)]} : 0, is);
                    ++asked;
                    flagged += is;
                }
        }
    }
    EXPECT_GT(flagged, asked / 20);
}

}  // namespace

}  // namespace pavane
