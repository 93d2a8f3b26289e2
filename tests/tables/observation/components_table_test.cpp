#include "pavane/resources/resource_ids.h"
#include "pavane/tables/components/component_table.h"
#include "pavane/tables/observation/AComponentsTbl.h"
#include "platform/controls.h"
#include "platform/message.h"

#include <cstring>
#include <gtest/gtest.h>
#include <random>
#include <sstream>
#include <string>
#include <vector>

using namespace pavane;

namespace
{

CString told;
int tell(const CString& text, unsigned) { return told = text, IDOK; }

struct ShownComponents : AComponentsTbl {
    int changes = 0;
    ShownComponents()
    {
        AComponents model;
        model.Add(ACompItem("1 1 0 1 0 0 0 0.5"));
        model.Add(ACompItem("2 0.5 0.001 0.5 30 60 0.002 0.5"));
        model.Add(ACompItem("9 0.25 0 1 0 0 0.003 0.5"));
        EXPECT_TRUE(GetComponents().reset(model));
        Refresh();
        CreateEx(0, "", "", WS_POPUP | WS_VISIBLE | WS_VSCROLL | WS_HSCROLL, {0, 0, 700, 300},
                 nullptr, 0);
        SetFocus();
    }
    void OnComponentsChanged() override { ++changes; }
    void key(int code, int held = -1)
    {
        SetKeyStateOverride(held);
        CWnd::GetFocus()->SendMessage(WM_KEYDOWN, static_cast<WPARAM>(code), 1);
        SetKeyStateOverride(-1);
    }
    CString text()
    {
        std::ostringstream out;
        EXPECT_TRUE(CopyAsTextInStream(out, 0));
        return out.str();
    }
    CString kinds()
    {
        CString all;
        for (int row = 1; row <= rows(); ++row)
            all += cellAsStr(row, 1, nullptr) + (row < rows() ? "," : "");
        return all;
    }
};

}  // namespace

TEST(ComponentsTable, IsEditedWithKeys)
{
    ShownComponents table;
    EXPECT_EQ(table.text(), componentTsv(table.components()));
    EXPECT_EQ(table.kinds(), "Point,Gaussian,9");
    table.key(VK_INSERT);
    EXPECT_EQ(table.kinds(), "Point,Point,Gaussian,9");
    EXPECT_EQ(table.selectedComponent(), 1);
    table.SelectComponent(3);
    table.key(VK_F2);
    auto* const list = static_cast<CComboBox*>(table.GetDlgItem(1002));
    ASSERT_TRUE(list);
    EXPECT_EQ(list->GetCount(), componentKinds + 1);
    EXPECT_EQ(list->GetLBText(list->GetCurSel()), "9");
    table.key(VK_RETURN);
    EXPECT_EQ(table.changes, 1) << "the unknown kind stays";
    table.key(VK_F2);
    static_cast<CComboBox*>(table.GetDlgItem(1002))->SetCurSel(2);
    table.key(VK_RETURN);
    EXPECT_EQ(table.kinds(), "Point,Point,Gaussian,Disk");
    table.getSelectRect() = {2, 1, 3, 4};
    table.key('D', MK_CONTROL);
    EXPECT_EQ(table.kinds(), "Point,Point,Gaussian,Point,Gaussian,Disk");
    EXPECT_EQ(table.selectedComponent(), 3);
    table.key(VK_DELETE, MK_CONTROL);
    EXPECT_EQ(table.kinds(), "Point,Point,Gaussian,Disk") << "the copies were selected";
    const auto before = SetMessageFunction(tell);
    EXPECT_FALSE(table.setCellStr(1, componentAxisRatioColumn, "2"));
    EXPECT_NE(told, "");
    SetMessageFunction(before);
    while (table.Undo()) {
    }
    EXPECT_EQ(table.kinds(), "Point,Gaussian,9");
    EXPECT_FALSE(table.GetComponents().isModified());
    table.getSelectRect() = {1, 1, 3, 1};
    table.key(VK_DELETE, MK_CONTROL);
    EXPECT_EQ(table.rows(), 0);
    table.key(VK_DELETE, MK_CONTROL);
    table.key('D', MK_CONTROL);
    table.key(VK_INSERT);
    EXPECT_EQ(table.kinds(), "Point");
}

TEST(ComponentsTable, FollowsAPlainListThroughRandomWork)
{
    ShownComponents table;
    using State = std::vector<ACompItem>;
    std::mt19937 random(9);
    const auto below = [&](int n) { return static_cast<int>(random() % static_cast<unsigned>(n)); };
    State plain(table.components().lpArray(), table.components().lpArray() + 3);
    std::vector<State> past;  // the state before each step
    const char* const texts[] = {
        "0.1234567890123456789", "-1", "0.5", "Gaussian", "7", "1e300", "nan", "", "x\ty", "41"};
    const auto isSame = [&](const State& state) {
        const AComponents& list = table.components();
        return static_cast<std::size_t>(list.count()) == state.size() &&
               table.rows() == list.count() &&
               (state.empty() ||
                std::memcmp(list.lpArray(), state.data(), state.size() * sizeof(ACompItem)) == 0);
    };
    for (int step = 0; step < 500; ++step) {
        State next = plain;
        const int count = static_cast<int>(plain.size());
        const int first = count ? below(count) : 0,
                  last = count ? first + below(count - first) : -1;
        table.getSelectRect() = {last + 1, 1 + below(8), first + 1, 1 + below(8)};
        switch (count > 40 ? 2 : below(6)) {
        case 0:
            table.AddComponent();
            next.insert(next.begin() + (count ? last + 1 : 0), ACompItem());
            break;
        case 1:
            table.CopyComponents();
            next.insert(next.begin() + (last + 1), plain.begin() + first,
                        plain.begin() + (last + 1));
            break;
        case 2:
            table.DeleteComponents();
            next.erase(next.begin() + first, next.begin() + (last + 1));
            break;
        default:
            table.beginEdits("Paste");
            for (int i = below(10); i >= 0; --i) {
                const int row = below(count + 2), column = 1 + below(componentColumns + 1);
                const char* const text = texts[below(10)];
                std::string ignored;
                const int takes = row >= 1 && row <= count &&
                                  setComponentText(next[static_cast<std::size_t>(row) - 1], column,
                                                   text, ignored);
                EXPECT_EQ(table.pasteCell(row, column, text), takes);
            }
            table.endEdits();
        }
        const bool changed =
            next.size() != plain.size() ||
            (count && std::memcmp(next.data(), plain.data(), next.size() * sizeof(ACompItem)) != 0);
        if (changed)
            past.push_back(plain);
        plain = next;
        ASSERT_TRUE(isSame(plain)) << step;
        if (past.size() > 3 && below(5) == 0) {
            ASSERT_TRUE(table.Undo() && isSame(past.back()));
            ASSERT_TRUE(table.Redo() && isSame(plain));
        }
    }
    for (; !past.empty(); past.pop_back())
        ASSERT_TRUE(table.Undo() && isSame(past.back())) << past.size();
    EXPECT_FALSE(table.Undo());
}
