#include "tessel/gains/gain_files.h"
#include "tests/tessel/uvfits_text.h"

#include <cmath>
#include <functional>
#include <random>

namespace pavane
{

namespace
{

/// Two subarrays, IFs 1 and 3 in one group, 2 in none, 4 alone.
AGains someGains()
{
    AGains gains;
    EXPECT_TRUE(gains.create({{1, 1, "BR"}, {1, 7, "A NAME LONGER THAN EIGHT"}, {2, 3, ""}},
                             {{0.5, 0.50025, 1, 0}, {0.50025, 0.6, 1, 0}, {1.0 / 3, 0.7, 2, 4}},
                             {{0, 2}, {3}}, {'R', 'L'}));
    gains.ifs = 4;
    gains.referenceDay = 2453901.5;
    std::mt19937 random(1);
    std::uniform_real_distribution<double> uniform(0.1, 2);
    for (std::size_t t = 0; t < 3; ++t)
        for (std::size_t g = 0; g < 2; ++g)
            for (std::size_t h = 0; h < 2; ++h)
                for (std::size_t a = 0; a < 3; ++a) {
                    if ((t == 2) != (a == 2))
                        continue;
                    Gain& gain = gains.at(t, g, h, a);
                    gain.state = GainState::solved;
                    // what single precision holds: the same out and in
                    const std::complex<float> correction(
                        std::polar(uniform(random), uniform(random)));
                    gain.value = 1.0 / std::complex<double>(correction);
                    gain.error = uniform(random);
                    gain.weight = uniform(random);
                    gain.iterations = 30;
                    gain.reference = a == 2 ? 2 : 1;
                }
    gains.at(0, 1, 0, 0).isFlagged = 1;
    gains.at(1, 0, 1, 1).state = GainState::failed;
    gains.at(1, 0, 1, 0) = {};
    return gains;
}

void expectSame(const AGains& a, const AGains& b, double part)
{
    ASSERT_EQ(a.cells().size(), b.cells().size());
    EXPECT_EQ(a.groups(), b.groups());
    EXPECT_EQ(a.hands(), b.hands());
    EXPECT_EQ(a.ifs, b.ifs);
    EXPECT_EQ(a.referenceDay, b.referenceDay);
    for (std::size_t i = 0; i < a.antennas().size(); ++i) {
        EXPECT_EQ(a.antennas()[i].number, b.antennas()[i].number);
        EXPECT_EQ(a.antennas()[i].name, b.antennas()[i].name);
    }
    for (std::size_t i = 0; i < a.intervals().size(); ++i) {
        EXPECT_EQ(a.intervals()[i].start, b.intervals()[i].start);
        EXPECT_EQ(a.intervals()[i].end, b.intervals()[i].end);
        EXPECT_EQ(a.intervals()[i].source, b.intervals()[i].source);
    }
    for (std::size_t i = 0; i < a.cells().size(); ++i) {
        const Gain &one = a.cells()[i], &other = b.cells()[i];
        EXPECT_EQ(one.state, other.state) << i;
        EXPECT_EQ(one.isFlagged, other.isFlagged) << i;
        EXPECT_EQ(one.error, other.error) << i;
        EXPECT_EQ(one.weight, other.weight) << i;
        EXPECT_EQ(one.iterations, other.iterations) << i;
        EXPECT_EQ(one.reference, other.reference) << i;
        if (one.state == GainState::solved) {
            EXPECT_LE(std::abs(one.value - other.value), part * std::abs(one.value)) << i;
        }
    }
}

std::string testFile(const std::string& base) { return testing::TempDir() + base; }

TEST(GainFiles, OutAndIn)
{
    const AGains gains = someGains();
    AGains read;
    std::vector<std::string> notes;
    std::string error;
    const std::string table = testFile("gains.fits"), text = testFile("gains.txt");
    ASSERT_TRUE(writeGainTable(table, gains, error)) << error;
    ASSERT_TRUE(readGainTable(table, read, notes, error)) << error;
    EXPECT_TRUE(notes.empty());
    expectSame(gains, read, 1e-15);
    const std::string again = testFile("again.fits");
    ASSERT_TRUE(writeGainTable(again, read, error));
    EXPECT_EQ(contents(table), contents(again));
    ASSERT_TRUE(writeGainText(text, gains, error)) << error;
    ASSERT_TRUE(readGainText(text, read, error)) << error;
    AGains lost = gains;
    lost.at(1, 0, 1, 1).value = read.at(1, 0, 1, 1).value;
    expectSame(lost, read, 0);
    EXPECT_FALSE(writeGainTable("/nowhere/g.fits", gains, error) || error.empty());
    EXPECT_FALSE(writeGainText("/nowhere/g.txt", gains, error) || error.empty());
}

/// A row of a table as other programs write it.
struct SnRow {
    double time;
    float interval;
    int antenna;
    float real, imaginary, weight, rate = 0;
};

std::string snTable(const std::vector<SnRow>& rows)
{
    std::string data;
    for (const SnRow& row : rows)
        data += bigEndian(std::bit_cast<std::uint64_t>(row.time), 8) + bigEndian(row.interval) +
                bigEndian(std::uint64_t{1}, 4) + bigEndian(std::uint64_t(row.antenna), 4) +
                bigEndian(std::uint64_t{1}, 4) + bigEndian(row.real) + bigEndian(row.imaginary) +
                bigEndian(row.rate) + bigEndian(row.weight) + bigEndian(std::uint64_t{2}, 4);
    return tableHdu("AIPS SN",
                    {{"TIME", "1D"},
                     {"TIME INTERVAL", "1E"},
                     {"SOURCE ID", "1J"},
                     {"ANTENNA NO.", "1J"},
                     {"SUBARRAY", "1J"},
                     {"REAL1", "1E"},
                     {"IMAG1", "1E"},
                     {"RATE 1", "1E"},
                     {"WEIGHT 1", "1E"},
                     {"REFANT 1", "1J"}},
                    44, static_cast<int>(rows.size()), data);
}

TEST(GainFiles, TablesOfOtherPrograms)
{
    const float nan = std::nanf("");
    const std::vector<SnRow> rows{{0.1, 0.01f, 1, 0.5f, 0, 20},
                                  {0.1, 0.01f, 2, 0, 2, 10},
                                  {0.2, 0.01f, 1, nan, nan, 0},
                                  {0.2, 0.01f, 2, 1, 0, 0},
                                  {0.3, 0, 1, 3140.892822f, 3140.892822f, 5},
                                  {0.3, 0, 2, 1, 1, 5, 1e-12f}};
    const std::string primary = hdu(imageCards(8, {}, {}), "");
    AGains gains;
    std::vector<std::string> notes;
    std::string error;
    ASSERT_TRUE(readGainTable(saved("sn.fits", primary + snTable(rows)), gains, notes, error))
        << error;
    ASSERT_EQ(gains.intervals().size(), 3U);
    ASSERT_EQ(gains.antennas().size(), 2U);
    EXPECT_EQ(gains.at(0, 0, 0, 0).value, 2.0);
    EXPECT_NEAR(gains.at(0, 0, 0, 0).ratio(), 20, 1e-5);
    EXPECT_LT(std::abs(gains.at(0, 0, 0, 1).value - std::complex<double>(0, -0.5)), 1e-15);
    EXPECT_EQ(gains.at(0, 0, 0, 1).reference, 1);
    std::string states;
    for (const Gain& gain : gains.cells())
        states += "msf"[static_cast<int>(gain.state)];
    EXPECT_EQ(states, "ssfffs");
    EXPECT_NEAR(gains.intervals()[2].start, 0.25, 1e-12) << "without a length: to the neighbours";
    ASSERT_EQ(notes.size(), 1U);
    EXPECT_NE(notes[0].find("1 delays and rates"), std::string::npos);
}

TEST(GainFiles, SayWhatIsWrong)
{
    const std::string primary = hdu(imageCards(8, {}, {}), "");
    std::string error;
    const AGains some = someGains();
    ASSERT_TRUE(writeGainTable(testFile("g.fits"), some, error));
    ASSERT_TRUE(writeGainText(testFile("g.txt"), some, error));
    const std::string table = contents(testFile("g.fits")), text = contents(testFile("g.txt"));
    struct Case {
        const char* what;
        std::string bytes, error;
        int isText;
    };
    const Case cases[] = {
        {"no table", primary, "has no table of gains (AIPS SN)", 0},
        {"cut short", table.substr(0, 2880 * 6), "ends before its table of gains does", 0},
        {"no rows", primary + snTable({}), "has a table of gains without rows", 0},
        {"text", "real\timag\n", "has a line 1 of 2 fields, not 16", 1},
        {"empty", "", "is no file of gains", 1},
        {"other columns", "a\tb\tc\td\te\tf\tg\th\ti\tj\tk\tl\tm\tn\to\tp\n",
         "has a line 1 that does not name the columns of a file of gains", 1},
        {"a state", replaced(text, "solved", "sXlved"), "has a line 4 with a wrong \"state\"", 1},
        {"an IF twice", replaced(text, "\t4\tR", "\t1\tR"), "has IF 1 in two groups", 1},
        {"cut in a line", text.substr(0, text.size() - 9), "", 1},
    };
    for (const Case& c : cases) {
        AGains gains;
        std::vector<std::string> notes;
        const std::string file = saved("bad", c.bytes);
        EXPECT_FALSE(c.isText ? readGainText(file, gains, error)
                              : readGainTable(file, gains, notes, error))
            << c.what;
        EXPECT_TRUE(gains.cells().empty()) << c.what;
        if (!c.error.empty()) {
            EXPECT_EQ(error, c.error) << c.what;
        }
        EXPECT_FALSE(error.empty()) << c.what;
    }
}

}  // namespace

}  // namespace pavane
