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

ABitArray bits(const std::string& text)
{
    ABitArray result(static_cast<int>(text.size()));
    for (int i = 0; i < result.count(); ++i)
        result.set(i, text[static_cast<std::size_t>(i)] == '1');
    return result;
}

std::string asText(const ABitArray& bits)
{
    std::string text;
    for (int i = 0; i < bits.count(); ++i)
        text += bits.get(i) ? '1' : '0';
    return text;
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
    const struct {
        int group, first, last;
    } cases[] = {{0, 0, 69}, {1, 70, 209}, {2, 0x7FFFF, 0}, {3, 210, 279}, {4, 0x7FFFF, 0}};
    for (const auto& c : cases) {
        int first = -1;
        int last = -1;
        groups.GetFreqRange(c.group, first, last);
        EXPECT_EQ(first, c.first) << c.group;
        EXPECT_EQ(last, c.last) << c.group;
    }
    int first = 0;
    int last = 0;
    AFreqGroupArray(frequencies(3, 600000)).GetFreqRange(1, first, last);
    EXPECT_EQ(first, 600000);
    EXPECT_EQ(last, 1199999);
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

TEST(FreqGroups, AddMarkedNeighboursWhereTheyBelong)
{
    AFreqGroupArray groups(frequencies(5));
    FreqGroupEdit edit;
    edit.SetParameters(&groups);
    EXPECT_EQ(asText(edit.grouped()), "11111");
    int place = -1;
    FreqGroupEdit::Fault fault{};
    EXPECT_EQ(edit.AddFreqGroup(place, fault), -1);
    EXPECT_EQ(fault, FreqGroupEdit::Fault::none);
    edit.SetMarked(bits("10100"));
    EXPECT_EQ(edit.AddFreqGroup(place, fault), -1);
    EXPECT_EQ(fault, FreqGroupEdit::Fault::notNeighbours);
    EXPECT_EQ(asText(edit.marked()), "10100");
    edit.SetMarked(bits("01100"));
    EXPECT_EQ(edit.AddFreqGroup(place, fault), 5);
    EXPECT_EQ(place, 2);
    EXPECT_EQ(asText(groups), "10000 01000 01100 00100 00010 00001");
    EXPECT_EQ(asText(edit.marked()), "00000");
    EXPECT_EQ(edit.GetGroupNumber(2), 2);
    EXPECT_EQ(edit.GetGroupNumber(5), -1);
}

TEST(FreqGroups, DeletedLeaveAnIfGroupedThatAnotherHolds)
{
    AFreqGroupArray groups(frequencies(4));
    groups(1) = bits("0110");
    FreqGroupEdit edit;
    edit.SetParameters(&groups);
    edit.SetMarked(bits("1111"));
    EXPECT_TRUE(edit.DeleteFreqGroup(1));
    EXPECT_EQ(asText(groups), "1000 0010 0001");
    EXPECT_EQ(asText(edit.grouped()), "1011");
    EXPECT_EQ(asText(edit.marked()), "0011");  // the IFs before those of the group
    EXPECT_TRUE(edit.DeleteFreqGroup(0));
    EXPECT_EQ(asText(edit.marked()), "0011");
    EXPECT_FALSE(edit.DeleteFreqGroup(2));
    EXPECT_FALSE(edit.DeleteFreqGroup(-1));
    edit.DeleteAllFreqGroup();
    EXPECT_EQ(groups.count() + edit.grouped().ones(), 0);
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
    AFreqGroupArray one(frequencies(1));
    FreqGroupEdit edit;
    edit.SetParameters(&one);
    EXPECT_FALSE(edit.AllInOne());
    EXPECT_EQ(asText(one), "1");
    edit.SetParameters(nullptr);
    edit.FixedStep(1);
    EXPECT_FALSE(edit.DeleteFreqGroup(0));
}

TEST(FreqGroups, SayWhatTheyHoldAndWhatTheyMiss)
{
    EXPECT_EQ(groupRangeText(bits("0111")), "  IF2..IF4");
    EXPECT_EQ(groupRangeText(bits("0100")), "IF2");
    EXPECT_EQ(groupRangeText(bits("0000")), "");
    EXPECT_EQ(groupNameText(2), "  Frequency group #3");
    AFreqGroupArray groups(frequencies(4));
    int hasGroups = 0;
    std::string question;
    EXPECT_TRUE(areComplete(groups, hasGroups, question));
    groups(1) = bits("1100");
    groups(2) = bits("0000");
    EXPECT_FALSE(areComplete(groups, hasGroups, question));
    EXPECT_EQ(question, "In no group: IF3.\nIn more than one group: IF1.");
    EXPECT_TRUE(hasGroups);
    (void)groups.DeleteItems(0, 4);
    EXPECT_FALSE(areComplete(groups, hasGroups, question));
    EXPECT_FALSE(hasGroups);
    for (int i = 0; i < 20; ++i)
        EXPECT_NE(groupColor(i), groupColor(i + 1));
}

TEST(Marks, AreSetTakenAndTurnedAndTellWhatChanged)
{
    Marks marks;
    EXPECT_FALSE(marks.cmMarkAll());
    marks.SetMarkCount(6);
    EXPECT_TRUE(marks.cmMark(1, 3));
    EXPECT_TRUE(marks.cmMark(2, 99));
    EXPECT_EQ(asText(marks.GetMark()), "011111");
    EXPECT_TRUE(marks.cmMark(3, 4));  // all of them have one
    EXPECT_EQ(asText(marks.GetMark()), "011001");
    EXPECT_TRUE(marks.cmInvertMarks());
    EXPECT_EQ(asText(marks.GetMark()), "100110");
    EXPECT_TRUE(marks.SetItemMark(0, 0));
    EXPECT_FALSE(marks.SetItemMark(6, 1));
    EXPECT_FALSE(marks.cmMark(4, 2));
    EXPECT_FALSE(marks.cmMark(-5, -1));
    EXPECT_EQ(marks.told, "1-3 4-5 3-4 0-5 0-0 ");
    marks.SetMark(bits("11"));
    EXPECT_EQ(asText(marks.GetMark()), "110000");
    marks.SetMarkCount(1);
    EXPECT_EQ(asText(marks.GetMark()), "1");
    marks.SetMarkCount(3);
    EXPECT_EQ(marks.markedCount(), 1);
    EXPECT_TRUE(marks.cmMarkAll());
    EXPECT_TRUE(marks.cmMarkNone());
    EXPECT_FALSE(marks.cmMarkNone());
}

}  // namespace pavane
