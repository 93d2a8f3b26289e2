#include "tessel/uvfits/TimeRuns.h"
#include "tessel/uvfits/UvGroupScan.h"
#include "tests/tessel/uvfits_text.h"

#include <cmath>
#include <filesystem>
#include <limits>

namespace pavane
{

namespace
{

const std::vector<TestGroup> three = {{0, 258}, {10, 258}, {20, 258}};

int opens(const std::string& bytes, AUVXFile& file, std::string& error)
{
    const int done = file.open(saved("bad.uvfits", bytes), error);
    EXPECT_EQ(done != 0, error.empty());
    EXPECT_EQ(done, file.isOpen());
    EXPECT_EQ(error.find('\n'), std::string::npos);
    return done;
}

std::vector<UvScan> scansOf(const std::vector<TestGroup>& groups)
{
    AUVXFile file;
    std::string error;
    EXPECT_TRUE(opens(groupsHdu(groups), file, error));
    UvGroupScan scan(file, UvGroupScan::scans);
    while (scan.step()) {
    }
    return scan.foundScans();
}

std::string asText(const std::vector<UvScan>& scans)
{
    std::string text;
    for (const UvScan& s : scans)
        text += std::to_string(s.source) + '.' + std::to_string(s.subarray) + " " +
                uvTimeText(s.start) + "-" + uvTimeText(s.end) + " " + std::to_string(s.first) +
                ".." + std::to_string(s.last) + "\n";
    return text;
}

}  // namespace

TEST(Uvfits, RefusesInOneLineWhatIsNone)
{
    const std::string groups = groupsHdu(three);
    const struct {
        const char* name;
        std::string bytes;
    } cases[] = {{"empty", ""},
                 {"text", "hello, this is no FITS file at all\n"},
                 {"a map", hdu(imageCards(-32, {2, 2}), std::string(16, ' '))},
                 {"no groups keyword", replaced(groups, "GROUPS  =                    T",
                                                "GROUPS  =                    F")},
                 {"no complex axis", replaced(groups, "'COMPLEX '", "'COMPLETE'")},
                 {"complex axis of 1", replaced(groups, "NAXIS2  = 3", "NAXIS2  = 1")},
                 {"more groups than bytes", replaced(groups, "GCOUNT  = 3   ", "GCOUNT  = 1000")},
                 {"2^53 groups",
                  replaced(groups, "GCOUNT  = 3               ", "GCOUNT  = 9007199254740992")},
                 {"more parameters than a group can have",
                  replaced(groups, "PCOUNT  = 4     ", "PCOUNT  = 987654")},
                 {"negative axis", replaced(groups, "NAXIS4  = 1 ", "NAXIS4  = -1")},
                 {"2^40 channels, no groups",
                  replaced(replaced(groups, "GCOUNT  = 3", "GCOUNT  = 0"),
                           "NAXIS4  = 1            ", "NAXIS4  = 1099511627776")},
                 {"999 axes", replaced(groups, "NAXIS   = 4  ", "NAXIS   = 999")},
                 {"packed as a whole", "\x1f\x8b\x08garbage"}};
    for (const auto& c : cases) {
        AUVXFile file;
        std::string error;
        EXPECT_FALSE(opens(c.bytes, file, error)) << c.name;
    }
    AUVXFile file;
    std::string error;
    EXPECT_FALSE(file.open(testing::TempDir(), error));
    EXPECT_FALSE(file.open(testing::TempDir() + "none.uvfits", error));
}

TEST(Uvfits, OpensACutFileExactlyWhenItsGroupsAreWhole)
{
    const std::string bytes = groupsHdu(three) + antennaHdu();
    const std::size_t header = bytes.find("END") / 2880 * 2880 + 2880;
    const std::size_t groupsEnd = header + 3 * 28;
    const std::size_t tableEnd = bytes.size() - 2880 + 2 * 14;
    for (std::size_t size = 0; size <= bytes.size(); size += size % 2880 < 90 ? 1 : 37) {
        AUVXFile file;
        std::string error;
        EXPECT_EQ(opens(bytes.substr(0, size), file, error), size >= groupsEnd) << size;
        EXPECT_EQ(file.telescopes().size(), size >= tableEnd ? 2u : 0u) << size;
        const std::size_t padded = header + 2880;
        EXPECT_EQ(file.notes().size(), size > padded && size < tableEnd ? 1u : 0u) << size;
    }
}

TEST(Uvfits, LeavesADamagedTableOutAndSaysSo)
{
    const struct {
        const char* name;
        std::string table;
    } cases[] = {{"unknown format", antennaHdu("2Z")},
                 {"no format", antennaHdu("")},
                 {"length without end", antennaHdu("99999999999999999999A")},
                 {"wider than its rows", antennaHdu("3A")},
                 {"rows of nothing but a claim", antennaHdu("2A", 14, 2000000000)},
                 {"negative rows", antennaHdu("2A", 14, -2)}};
    for (const auto& c : cases) {
        AUVXFile file;
        std::string error;
        EXPECT_TRUE(opens(groupsHdu(three) + c.table, file, error)) << c.name;
        EXPECT_EQ(file.telescopes().size(), 0u) << c.name;
        EXPECT_EQ(file.notes().size(), 1u) << c.name;
    }
    // rows without a byte are no rows, and formats of no items are columns without values
    AUVXFile file;
    std::string error;
    EXPECT_TRUE(opens(groupsHdu(three) + antennaHdu("0A", 0, 2000000000), file, error));
    EXPECT_EQ(file.telescopes().size(), 0u);
    EXPECT_TRUE(opens(groupsHdu(three) + antennaHdu("0A"), file, error));
    ASSERT_EQ(file.telescopes().size(), 2u);
    EXPECT_EQ(file.telescopes()[0].name, "");
}

TEST(Uvfits, KeepsNoJunkOfNamesAndTellsOfAnIndexThatPointsOutside)
{
    std::string table = antennaHdu();
    table.replace(table.find("AB", 2880), 2, std::string("A\0", 2));
    table.replace(table.find("CD", 2880), 2, "\t\xff");
    const std::string index =
        tableHdu("AIPS NX", {{"START VIS", "1J"}, {"END VIS", "1J"}, {"TIME", "1E"}}, 12, 1,
                 bigEndian(std::uint64_t{2}, 4) + bigEndian(std::uint64_t{4}, 4) +
                     bigEndian(std::numeric_limits<float>::infinity()));
    AUVXFile file;
    std::string error;
    ASSERT_TRUE(opens(groupsHdu(three) + table + index, file, error));
    ASSERT_EQ(file.telescopes().size(), 2u);
    EXPECT_EQ(file.telescopes()[0].name, "A");
    EXPECT_EQ(file.telescopes()[1].name, "??");
    ASSERT_EQ(file.scans().size(), 1u);
    EXPECT_EQ(file.scans()[0].last, 4);
    EXPECT_EQ(uvTimeText(file.scans()[0].start), "");
    EXPECT_EQ(file.notes().size(), 1u);
}

TEST(Uvfits, NumbersBesideWholeOnesNameTheSameTelescopes)
{
    const float nan = std::numeric_limits<float>::quiet_NaN();
    const struct {
        const char* scale;
        float stored;
        int subarray, first, second;
    } cases[] = {{"1", 258, 1, 1, 2},         {"1", 257.9997f, 1, 1, 2},
                 {"1", 258.02f, 3, 1, 2},     {"1", 65279.01f, 2, 254, 255},
                 {"0.9999999", 258, 1, 1, 2}, {"1", 65536 + 2048 * 300 + 299, 1, 300, 299},
                 {"1", -3, -1, -1, -1},       {"1", nan, -1, -1, -1}};
    for (const auto& c : cases) {
        AUVXFile file;
        std::string error;
        ASSERT_TRUE(opens(replaced(groupsHdu({{0, c.stored}}), "PTYPE4  = 'SOURCE  '",
                                   "PSCAL2  = " + std::string(c.scale) + std::string(9, ' ')),
                          file, error));
        UvGroupScan scan(file, UvGroupScan::baselines);
        EXPECT_FALSE(scan.step());
        const std::vector<UvBaseline> found = scan.foundBaselines();
        ASSERT_EQ(found.size(), c.subarray < 0 ? 0u : 1u) << c.stored;
        if (found.empty())
            continue;
        EXPECT_EQ(found[0].subarray, c.subarray) << c.stored;
        EXPECT_EQ(found[0].first, c.first) << c.stored;
        EXPECT_EQ(found[0].second, c.second) << c.stored;
    }
}

TEST(Uvfits, ATableOfOneSelectionIsThatOfAllGroups)
{
    AUVXFreqs one;
    one.ifs.resize(1);
    AUVXFreqs two = one;
    two.id = 2;
    EXPECT_EQ(AUVXFqTbl(1, 1, 1, {one}).selectionOf(0), 0);
    EXPECT_EQ(AUVXFqTbl(1, 1, 1, {one, two}).selectionOf(2), 1);
    EXPECT_EQ(AUVXFqTbl(1, 1, 1, {one, two}).selectionOf(0), -1);
}

TEST(Uvfits, FindsScansByPausesSourcesAndSubarrays)
{
    std::vector<TestGroup> groups;
    for (const float t : {0.f, 10.f, 20.f, 80.f, 141.f, 151.f})  // 60 s go on, 61 s do not
        for (const float baseline : {258.f, 259.f})
            groups.push_back({t, baseline});
    groups.push_back({161, 258, 2});
    groups.push_back({171, 258, 1});
    groups.push_back({165, 258.01f, 1});
    const float nan = std::numeric_limits<float>::quiet_NaN();
    groups.push_back({nan, 258, 1});
    EXPECT_EQ(asText(scansOf(groups)), "1.1 0/00:00:00.0-0/00:01:20.0 1..8\n"
                                       "1.1 0/00:02:21.0-0/00:02:31.0 9..12\n"
                                       "2.1 0/00:02:41.0-0/00:02:41.0 13..13\n"
                                       "1.2 0/00:02:45.0-0/00:02:45.0 15..15\n"
                                       "1.1 0/00:02:51.0-0/00:02:51.0 14..14\n");
    EXPECT_EQ(scansOf({}).size(), 0u);
    // two sources at the same times are two scans beside each other
    EXPECT_EQ(asText(scansOf({{0, 258, 1}, {0, 258, 2}, {10, 258, 1}, {10, 258, 2}})),
              "1.1 0/00:00:00.0-0/00:00:10.0 1..3\n2.1 0/00:00:00.0-0/00:00:10.0 2..4\n");
}

TEST(Uvfits, FindsNoScansAmongMoreTimesThanAnObservationHas)
{
    TimeRuns runs(3);
    for (int i = 0; i < 3; ++i)
        EXPECT_TRUE(runs.add(i, {1, 1, 1}, 2 * i + 1) && runs.add(i, {1, 1, 1}, 2 * i + 2));
    EXPECT_FALSE(runs.add(3, {1, 1, 1}, 7));
    EXPECT_EQ(runs.scans().size(), 1u);  // of a day from one to the next
}

TEST(Uvfits, GoesThroughGroupsInSlicesAndEndsWhereTheFileDoes)
{
    std::vector<TestGroup> groups(200000);
    for (std::size_t i = 0; i < groups.size(); ++i)
        groups[i] = {float(i), i % 4 ? 258.f : 513.f, 1, float(i), 0, i % 10 ? 1.f : 0.f};
    groups[5].real = std::numeric_limits<float>::infinity();
    AUVXFile file;
    std::string error;
    ASSERT_TRUE(opens(groupsHdu(groups) + antennaHdu(), file, error));
    UvGroupScan scan(file, ~0);
    double done = 0;
    for (int goesOn = 1; goesOn; done = scan.done()) {
        goesOn = scan.step(1);
        EXPECT_GT(scan.done(), done);
        EXPECT_LT(scan.done() - done, 0.25);
    }
    EXPECT_EQ(done, 1);
    const std::vector<UvBaseline> baselines = scan.foundBaselines();
    ASSERT_EQ(baselines.size(), 2u);
    EXPECT_EQ(baselines[0].groups, 150000);
    EXPECT_EQ(baselines[1].first * 10 + baselines[1].second, 21);
    EXPECT_TRUE(std::isnan(file.lengthOf(baselines[0])));
    EXPECT_EQ(scan.foundTotals().flagged, 20000);
    EXPECT_EQ(scan.foundTotals().notFinite, 1);
    EXPECT_EQ(scan.foundTotals().leastAmplitude, 1);
    EXPECT_EQ(scan.foundTotals().greatestAmplitude, 199999);
    EXPECT_DOUBLE_EQ(scan.foundTotals().greatestUv, double{1e-3f} * 8.4e9);

    UvGroupScan second(file, UvGroupScan::baselines);
    EXPECT_TRUE(second.step(1));
    std::filesystem::resize_file(testing::TempDir() + "bad.uvfits", 3000000);
    while (second.step(1)) {
    }
    EXPECT_NE(second.error(), "");
    EXPECT_EQ(second.step(), 0);
    UvGroups read;
    EXPECT_FALSE(file.readGroups(-1, 1, ~0, read));
    EXPECT_FALSE(file.readGroups(199999, 2, ~0, read));
}

TEST(Uvfits, ShowsStoredNumbersWithTheirDigitsAlone)
{
    const struct {
        double value;
        int isSingle, places;
        const char* text;
    } cases[] = {{2.1319999694824219, 1, 0, "2.132"},
                 {2.132, 0, 0, "2.132"},
                 {-2112065.1047, 0, 0, "-2112065.1047"},
                 {15329521250.0, 0, 6, "15329.52125"},
                 {5e5, 1, 6, "0.5"},
                 {8e6, 1, 6, "8"},
                 {0, 0, 6, "0"},
                 {1e-7, 0, 0, "1e-07"},
                 {1.25e25, 0, 6, "1.25e+19"},
                 {1e16, 0, 0, "10000000000000000"},
                 {0.1f, 1, 0, "0.1"},
                 {std::nan(""), 0, 0, ""}};
    for (const auto& c : cases)
        EXPECT_EQ(storedText({c.value, c.isSingle}, c.places), c.text);
    EXPECT_EQ(uvTimeText(1.5), "1/12:00:00.0");
    EXPECT_EQ(uvTimeText(-0.25), "-1/18:00:00.0");
    EXPECT_EQ(uvTimeText(0.99999999), "1/00:00:00.0");
}

}  // namespace pavane
