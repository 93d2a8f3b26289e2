#include "containers/bit_text.h"
#include "containers/stored_file.h"
#include "pavane/tables/freq/ABMarkTable.h"
#include "pavane/tables/freq/FreqGroupEdit.h"
#include "pavane/tables/freq/group_look.h"

#include <gtest/gtest.h>
#include <random>

namespace pavane
{

namespace
{

AUVXFqTbl frequencies(int ifs, int channels = 2, int selections = 1)
{
    AUVXFreqs selection;
    selection.ifs.resize(static_cast<std::size_t>(ifs));
    return AUVXFqTbl(1e9, 1, channels,
                     std::vector<AUVXFreqs>(static_cast<std::size_t>(selections), selection));
}

std::string asText(const AFreqGroupArray& groups)
{
    std::string text;
    for (int i = 0; i < groups.count(); ++i)
        text += (i ? " " : "") + asText(groups(i));
    return text;
}

class Marks : public ABMarkTable
{
public:
    std::string told;

private:
    void MarksChanged(int first, int last) override
    {
        told += std::to_string(first) + "-" + std::to_string(last) + " ";
    }
};

}  // namespace

TEST(FreqGroups, BeginWithOneForEachIfAndAllSelectionsMarked)
{
    AFreqGroupArray groups(frequencies(3, 2, 5));
    EXPECT_EQ(asText(groups), "100 010 001");
    EXPECT_EQ(asText(groups.GetFqIDMark()), "11111");
    EXPECT_EQ(groups.growBy(), 256);
    const AFreqGroupArray copy = groups;
    groups.GetFqIDMark().set(1, 0);
    (void)groups.DeleteItems(0, 2);
    EXPECT_EQ(asText(copy), "100 010 001");
    EXPECT_EQ(copy.GetFqIDMark().ones(), 5);
    EXPECT_EQ(copy.FqTbl().ifCount(), 3);
    EXPECT_EQ(AFreqGroupArray().count(), 0);
}

TEST(FreqGroups, ExpandToAllChannelsOfTheirIfs)
{
    AFreqGroupArray groups(frequencies(4, 70));
    groups(1) = bits("0110");
    groups(2) = bits("0000");
    ABitMatrix cells;
    ASSERT_TRUE(groups.ItemToMatrix(1, cells));
    EXPECT_EQ(cells.rows() * 1000 + cells.columns(), 4070);
    EXPECT_EQ(cells.count(), 140);
    EXPECT_TRUE(cells.get(1, 0) && cells.get(2, 69) && !cells.get(3, 0));
    EXPECT_FALSE(groups.ItemToMatrix(4, cells));
    EXPECT_EQ(cells.rows(), 0);
    EXPECT_FALSE(groups.ItemToMatrix(-1, cells));
    const auto range = [](const AFreqGroupArray& of, int group) {
        int first = -1, last = -1;
        of.GetFreqRange(group, first, last);
        return std::pair(first, last);
    };
    const std::pair<int, int> none(0x7FFFF, 0),
        ranges[] = {{0, 69}, {70, 209}, none, {210, 279}, none};
    for (int group = 0; group < 5; ++group)
        EXPECT_EQ(range(groups, group), ranges[group]) << group;
    EXPECT_EQ(range(AFreqGroupArray(frequencies(3, 600000)), 1), std::pair(600000, 1199999));
}

TEST(FreqGroups, GoToAFileAndComeBackInOrderOrNotAtAll)
{
    AFreqGroupArray groups(frequencies(9));
    (void)groups.DeleteItems(0, 7);
    groups(0) = bits("000000011");
    groups(1) = bits("110000000");
    StoredFile file;
    ASSERT_TRUE(groups.Store(file));
    const std::string bytes("\2\0\0\0\11\0\0\0\200\1\11\0\0\0\3\0", 16);
    EXPECT_EQ(file.bytes(), bytes);
    AFreqGroupArray loaded(frequencies(9));
    file.rewind();
    ASSERT_TRUE(loaded.Load(file));
    EXPECT_EQ(asText(loaded), "110000000 000000011");
    // of another number of IFs, cut anywhere, or with a count that lies
    AFreqGroupArray other(frequencies(8));
    const std::string before = asText(other);
    file.rewind();
    EXPECT_FALSE(other.Load(file));
    EXPECT_EQ(asText(other), before);
    for (std::size_t size = 0; size < bytes.size(); ++size) {
        StoredFile cut(bytes.substr(0, size));
        EXPECT_FALSE(loaded.Load(cut)) << size;
        EXPECT_EQ(loaded.count(), 2) << size;
    }
    StoredFile lying("\377\377\377\177" + bytes.substr(4));
    EXPECT_FALSE(loaded.Load(lying));
    for (int n = 0; n < 5; ++n) {
        StoredFile failing;
        failing.failAfter(n);
        EXPECT_FALSE(groups.Store(failing)) << n;
    }
}

TEST(FreqGroups, AreMadeByStepsAndAllInOne)
{
    const struct {
        int ifs, step;
        const char* groups;
    } cases[] = {{5, 2, "11000 00110 00001"},
                 {5, 0, "10000 01000 00100 00010 00001"},
                 {3, 2147483647, "111"},
                 {0, 3, ""}};
    for (const auto& c : cases) {
        AFreqGroupArray groups(frequencies(c.ifs));
        FreqGroupEdit edit;
        edit.SetParameters(&groups);
        edit.FixedStep(c.step);
        EXPECT_EQ(asText(groups), c.groups);
        EXPECT_EQ(edit.grouped().ones(), c.ifs);
        EXPECT_EQ(edit.AllInOne(), c.ifs > 1);
        EXPECT_EQ(groups.count(), c.ifs > 0);
    }
}

TEST(FreqGroups, SayWhatTheyMiss)
{
    AFreqGroupArray groups(frequencies(4));
    int hasGroups = 0;
    std::string question;
    EXPECT_TRUE(areComplete(groups, hasGroups, question));
    groups(1) = bits("1100");
    groups(2) = bits("0000");
    EXPECT_EQ(groupRangeText(groups(2)), "");
    EXPECT_FALSE(areComplete(groups, hasGroups, question));
    EXPECT_EQ(question, "In no group: IF3.\nIn more than one group: IF1.");
    EXPECT_TRUE(hasGroups);
}

TEST(Marks, TellWhatChangedAndKeepTheirCount)
{
    Marks marks;
    EXPECT_FALSE(marks.cmMarkAll());
    marks.SetMarkCount(6);
    EXPECT_TRUE(marks.cmMark(1, 3) && marks.cmMark(2, 99));
    EXPECT_TRUE(marks.cmMark(3, 4));  // all of them have one
    EXPECT_TRUE(marks.cmInvertMarks());
    EXPECT_TRUE(marks.SetItemMark(0, 0));
    EXPECT_FALSE(marks.SetItemMark(6, 1) || marks.cmMark(4, 2) || marks.cmMark(-5, -1));
    EXPECT_EQ(marks.told, "1-3 4-5 3-4 0-5 0-0 ");
    marks.SetMark(bits("11"));
    EXPECT_EQ(asText(marks.GetMark()), "110000");
    marks.SetMarkCount(1);
    marks.SetMarkCount(3);
    EXPECT_EQ(asText(marks.GetMark()), "100");
}

}  // namespace pavane
