#include "pavane/tables/uvdata/UvObservation.h"
#include "tests/tessel/uvfits_text.h"

#include <algorithm>
#include <cmath>
#include <filesystem>
#include <gtest/gtest.h>
#include <limits>
#include <sstream>

namespace pavane
{

namespace
{

std::string textOf(const UvObservation& of, UvTable table)
{
    std::ostringstream stream;
    EXPECT_TRUE(of.writeTsv(table, stream));
    return stream.str();
}

std::vector<TestGroup> manyGroups(int count)
{
    std::vector<TestGroup> groups;
    for (int i = 0; i < count; ++i)
        groups.push_back({float(i), 258.0f + 256.0f * float(i % 3)});
    return groups;
}

}  // namespace

TEST(UvObservation, positions)
{
    const double nan = std::numeric_limits<double>::quiet_NaN();
    const double inf = std::numeric_limits<double>::infinity();
    const struct {
        double degrees;
        const char *ra, *dec;
    } rows[] = {
        {187.70593, "12:30:49.423200", "+187:42:21.34800"},
        {0, "00:00:00.000000", "+00:00:00.00000"},
        {-15, "23:00:00.000000", "-15:00:00.00000"},
        {359.9999999999, "00:00:00.000000", "+360:00:00.00000"},
        {-1e-12, "00:00:00.000000", "+00:00:00.00000"},
        {-0.5, "23:58:00.000000", "-00:30:00.00000"},
        {nan, "", ""},
        {inf, "", ""},
        {-inf, "", ""},
    };
    for (const auto& row : rows) {
        EXPECT_EQ(rightAscensionText(row.degrees), row.ra) << row.degrees;
        EXPECT_EQ(declinationText(row.degrees), row.dec) << row.degrees;
    }
}

TEST(UvObservation, namesOfTables)
{
    UvTable found = UvTable::scans;
    EXPECT_FALSE(uvTableOf("Telescopes", found));
    for (const UvTable table : uvTables)
        EXPECT_TRUE(uvTableOf(uvTableLook(table).name, found) && found == table);
}

TEST(UvObservation, whatTheFileLacks)
{
    UvObservation none;
    EXPECT_EQ(textOf(none, UvTable::stokes), "\tCode\tName\n");
    const std::string file = saved("uvdata.uvfits", groupsHdu({{0}, {12}}));
    UvObservation of;
    std::string error;
    ASSERT_TRUE(of.open(file, error)) << error;
    while (of.step(1)) {
    }
    EXPECT_EQ(textOf(of, UvTable::telescopes).find('\n') + 1,
              textOf(of, UvTable::telescopes).size());
    EXPECT_NE(textOf(of, UvTable::baselines).find("\n1\t1\t2\t1\t\t2\t1\t2\n"), std::string::npos);
    EXPECT_NE(textOf(of, UvTable::sources).find("\n1\t1\tM87\t\t\t\n"), std::string::npos);
    EXPECT_NE(textOf(of, UvTable::scans).find("\n1\tM87\t1\t1\t0/00:00:00.0\t0/00:00:12.0\t12"),
              std::string::npos);
    double value = 0;
    EXPECT_FALSE(of.number(UvTable::sources, 1, 3, value));
    EXPECT_TRUE(of.number(UvTable::baselines, 1, 5, value) && value == 2);
    const int outside[][2] = {{-1, 1}, {2, 1}, {1, 8}, {1, -1}, {2000000000, 0}};
    for (const auto& [row, column] : outside) {
        EXPECT_EQ(of.text(UvTable::baselines, row, column), "");
        EXPECT_FALSE(of.number(UvTable::baselines, row, column, value));
    }
}

TEST(UvObservation, hostileNames)
{
    // a name of a megabyte, one of tabs, line ends and what follows a zero byte; no places
    const std::size_t size = 1 << 20;
    const auto place = [](std::uint64_t bits) {
        return bigEndian(bits, 8) + bigEndian(std::uint64_t(0), 8) + bigEndian(bits, 8);
    };
    const std::string data = std::string(size, 'x') + bigEndian(std::uint64_t(1), 4) +
                             place(0x7ff8000000000000) + "a\tb\nc" + std::string(1, '\0') +
                             std::string(size - 6, 'y') + bigEndian(std::uint64_t(2), 4) +
                             place(0x7ff0000000000000);
    const std::string file = saved(
        "uvdata.uvfits",
        groupsHdu(manyGroups(3)) +
            tableHdu("AIPS AN",
                     {{"ANNAME", std::to_string(size) + "A"}, {"NOSTA", "1J"}, {"STABXYZ", "3D"}},
                     int(size) + 28, 2, data));
    UvObservation of;
    std::string error;
    ASSERT_TRUE(of.open(file, error)) << error;
    ASSERT_EQ(of.rows(UvTable::telescopes), 2);
    EXPECT_EQ(of.text(UvTable::telescopes, 2, 1), "a?b?c");
    EXPECT_EQ(of.text(UvTable::telescopes, 1, 4) + of.text(UvTable::telescopes, 2, 4), "inf");
    while (of.step()) {
    }
    double value = 0;
    EXPECT_EQ(of.text(UvTable::baselines, 1, 4), "");
    EXPECT_FALSE(of.number(UvTable::baselines, 1, 4, value));
    const std::string text = textOf(of, UvTable::telescopes);
    EXPECT_EQ(std::count(text.begin(), text.end(), '\n'), 3);
    EXPECT_EQ(std::count(text.begin(), text.end(), '\t'), 3 * of.columns(UvTable::telescopes));
}

TEST(UvObservation, opensNothingForWhoGivesUp)
{
    const std::string file = saved("uvdata.uvfits", groupsHdu(manyGroups(3)) + antennaHdu());
    UvObservation of;
    std::string error;
    std::vector<double> told;
    ASSERT_TRUE(of.open(file, error, 0, [&](double f) { return told.push_back(f), 1; })) << error;
    EXPECT_GT(of.rows(UvTable::telescopes), 0);
    EXPECT_GT(told.size(), 1U);
    EXPECT_TRUE(std::is_sorted(told.begin(), told.end()) && told[0] >= 0 && told.back() <= 1);
    for (std::size_t calls = 0; calls < told.size(); ++calls) {
        std::size_t asked = 0;
        EXPECT_FALSE(of.open(file, error, 0, [&](double) { return asked++ < calls; }));
        EXPECT_EQ(error, readingGivenUp);
        EXPECT_EQ(asked, calls + 1);  // and is not asked again
        EXPECT_FALSE(of.file().isOpen() || of.rows(UvTable::telescopes) > 0);
    }
}

TEST(UvObservation, slices)
{
    const std::string file = saved("uvdata.uvfits", groupsHdu(manyGroups(20000)) + antennaHdu());
    UvObservation of;
    std::string error;
    ASSERT_TRUE(of.open(file, error)) << error;
    EXPECT_EQ(of.text(UvTable::baselines, 0, 0), "0 %");
    EXPECT_EQ(of.stateText(UvTable::telescopes), "");
    ASSERT_TRUE(of.step(1));
    const double part = of.done();
    EXPECT_GT(part, 0);
    EXPECT_LT(part, 1);
    EXPECT_EQ(of.rows(UvTable::baselines), 3);
    of.stop();
    EXPECT_FALSE(of.step());
    double value = 0;
    double sum = 0;
    for (int row = 1; row <= 3; ++row)
        sum += of.number(UvTable::baselines, row, 5, value) ? value : 0;
    EXPECT_EQ(sum, std::round(part * 20000));
    EXPECT_EQ(of.stateText(UvTable::scans), "11 % of the visibilities, stopped");

    of.resume();
    while (of.step(1 << 16)) {
    }

    EXPECT_TRUE(of.isWhole(UvTable::baselines));
    EXPECT_EQ(of.text(UvTable::baselines, 0, 0), "");
    EXPECT_EQ(of.text(UvTable::baselines, 1, 1), "AB");
    EXPECT_EQ(of.text(UvTable::baselines, 3, 1), "3");
}

TEST(UvObservation, fileThatBecomesShorter)
{
    const std::string file = saved("uvdata.uvfits", groupsHdu(manyGroups(20000)));
    UvObservation of;
    std::string error;
    ASSERT_TRUE(of.open(file, error)) << error;
    std::filesystem::resize_file(file, 100000);
    while (of.step(1)) {
    }
    EXPECT_FALSE(of.error().empty());
    EXPECT_FALSE(of.isWhole(UvTable::baselines) || of.isFilling());
    EXPECT_NE(of.stateText(UvTable::baselines).find(of.error()), std::string::npos);
}

}  // namespace pavane
