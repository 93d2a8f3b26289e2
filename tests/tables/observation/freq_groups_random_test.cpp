#include "tables/observation/freq_fixture.h"

#include <algorithm>
#include <gtest/gtest.h>
#include <random>

using namespace pavane;

namespace
{

/// Frequency groups as plain sets of IFs.
struct PlainGroups {
    std::vector<std::string> groups;
    std::string marks;
    std::string fault;

    int ifs() const { return static_cast<int>(marks.size()); }
    static std::string::size_type firstOf(const std::string& group)
    {
        const auto at = group.find('1');
        return at == std::string::npos ? 0 : at;
    }
    void add()
    {
        if (marks.find('1') == std::string::npos)
            return;
        const std::string inside =
            marks.substr(marks.find('1'), marks.rfind('1') - marks.find('1'));
        if (inside.find('0') != std::string::npos)
            return (void)(fault = "Infalid selection. Selected IFs must be neighbor");
        const auto place = std::find_if(groups.begin(), groups.end(), [&](const auto& group) {
            return firstOf(group) > firstOf(marks);
        });
        groups.insert(place, marks);
        marks.assign(marks.size(), '0');
    }
    void remove(int i)
    {
        if (i < 0 || i >= static_cast<int>(groups.size()))
            return;
        const std::string group = groups[static_cast<std::size_t>(i)];
        for (std::size_t b = 1; b < group.size(); ++b)
            if (group[b] == '1')
                marks[b - 1] = '0';
        groups.erase(groups.begin() + i);
    }
    void fixedStep(int step)
    {
        groups.clear();
        for (int i = 0; i < ifs(); i += step) {
            groups.emplace_back(marks.size(), '0');
            for (int b = i; b < std::min(i + step, ifs()); ++b)
                groups.back()[static_cast<std::size_t>(b)] = '1';
        }
        marks.assign(marks.size(), '0');
    }
    void toggle(int first, int last)
    {
        const auto from = marks.begin() + first, to = marks.begin() + last + 1;
        const bool all = std::find(from, to, '0') == to;
        std::fill(from, to, all ? '0' : '1');
    }
    std::string state() const
    {
        std::string all;
        for (const std::string& group : groups)
            all += group + " ";
        return all + "|" + marks;
    }
    std::string grouped() const
    {
        std::string all(marks.size(), '0');
        for (const std::string& group : groups)
            for (std::size_t i = 0; i < group.size(); ++i)
                all[i] = std::max(all[i], group[i]);
        return all;
    }
};

void doSomething(ShownGroups& shown, PlainGroups& plain, std::mt19937& random)
{
    AFreqGroupTbl& table = shown.window.GroupTbl();
    const auto any = [&](int n) { return static_cast<int>(random() % static_cast<unsigned>(n)); };
    const int i = any(plain.ifs() + 1);
    switch (any(9)) {
    case 0: {
        const int from = std::min(i, plain.ifs() - 1), to = any(plain.ifs());
        ASelectRect columns{1, from + 1, 2, to + 1};
        table.SetSelectRect(columns);
        shown.key(table, VK_SPACE);
        return plain.toggle(std::min(from, to), std::max(from, to));
    }
    case 1:
        table.changeHeader(0, i);
        return i > 0 ? plain.toggle(i - 1, i - 1) : void();
    case 2:
    case 3:
    case 4:
        (void)table.AddFreqGroup();
        return plain.add();
    case 5:
        (void)table.DeleteFreqGroup(i - 1);
        return plain.remove(i - 1);
    case 6:
        if (any(5))
            return;
        (void)table.AllInOne();
        return plain.ifs() > 1 ? plain.fixedStep(plain.ifs()) : void();
    case 7:
        if (any(4))
            return;
        ShownGroups::step = 1 + any(plain.ifs());
        table.OnFixedStepGroup();
        return plain.fixedStep(ShownGroups::step);
    default:
        if (any(9))
            return;
        table.DeleteAllFreqGroup();
        return plain.groups.clear();
    }
}

}  // namespace

TEST(FreqGroupsRandom, AreThoseOfAPlainModelAndAllOfItIsUndone)
{
    for (const int ifs : {1, 2, 5, 40}) {
        std::mt19937 random(static_cast<unsigned>(ifs));
        ShownGroups shown(ifs);
        PlainGroups plain;
        plain.marks.assign(static_cast<std::size_t>(ifs), '0');
        plain.fixedStep(1);
        std::vector<std::string> states{plain.state()};
        for (int n = 0; n < 250; ++n) {
            ShownGroups::message.clear();
            plain.fault.clear();
            doSomething(shown, plain, random);
            ASSERT_EQ(shown.state(), plain.state()) << ifs << " " << n;
            ASSERT_EQ(asText(shown.window.GroupTbl().GetGrouped()), plain.grouped());
            if (!plain.fault.empty()) {
                ASSERT_EQ(ShownGroups::message, plain.fault);
            }
            const ASelectRect list = shown.window.InfoTbl().getSelectRect();
            const int rows = static_cast<int>(shown.window.InfoTbl().rows());
            ASSERT_EQ(rows, static_cast<int>(plain.groups.size()));
            ASSERT_TRUE(list.anchorRow >= 1 && list.anchorRow <= std::max(rows, 1));
            if (plain.state() != states.back())
                states.push_back(plain.state());
        }
        for (std::size_t s = states.size() - 1; s-- > 0;) {
            ASSERT_TRUE(shown.window.Undo());
            ASSERT_EQ(shown.state(), states[s]) << ifs << " " << s;
        }
        EXPECT_FALSE(shown.window.Undo());
        for (std::size_t s = 1; s < states.size(); ++s) {
            ASSERT_TRUE(shown.window.Redo());
            ASSERT_EQ(shown.state(), states[s]);
        }
    }
}

TEST(FreqGroupsRandom, ManyIfsAndChannelsAreShown)
{
    ShownGroups shown(1000, 65536);
    AFreqGroupTbl& table = shown.window.GroupTbl();
    table.SetSelectOneCell(65536, 1000);
    EXPECT_EQ(table.cellAsStr(65536, 1000, nullptr), "45734.490000");
    EXPECT_EQ(shown.listSelection(), "1000,1-1000,1");
    table.UpdateWindow();
    EXPECT_TRUE(table.cmMarkAll());
    EXPECT_EQ(table.AddFreqGroup(), 1000);
    EXPECT_EQ(shown.listSelection(), "2,1-2,1");  // behind the group of the first IF
    EXPECT_TRUE(shown.window.Undo());
    EXPECT_EQ(shown.groups.count(), 1000);
}
