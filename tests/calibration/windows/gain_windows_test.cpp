#include "pavane/axes/multi/A2DAxisMulti.h"
#include "pavane/calibration/windows/AGainGraphWnd.h"
#include "pavane/calibration/windows/AGainTbl.h"
#include "pavane/calibration/windows/AMeanGainWnd.h"
#include "pavane/resources/gain_commands.h"
#include "pavane/windows/library_resources.h"
#include "platform/CMenu.h"
#include "platform/messages.h"
#include "tests/calibration/made_gains.h"

#include <gtest/gtest.h>

#include <cmath>

using namespace pavane;
using namespace pavane::test;

namespace
{

constexpr unsigned popup = WS_POPUP | WS_VISIBLE;

struct GraphWindow : AGainGraphWnd {
    std::vector<CString> notices;
    void OnNotice(const CString& text) override { notices.push_back(text); }
    void key(int code, int modifiers = 0)
    {
        SetKeyStateOverride(modifiers);
        SendMessage(WM_KEYDOWN, static_cast<WPARAM>(code));
        SetKeyStateOverride(-1);
    }
    void drag(CPoint from, CPoint to)
    {
        SendMessage(WM_LBUTTONDOWN, MK_LBUTTON, MAKELPARAM(from.x, from.y));
        SendMessage(WM_MOUSEMOVE, MK_LBUTTON, MAKELPARAM(to.x, to.y));
        SendMessage(WM_LBUTTONUP, 0, MAKELPARAM(to.x, to.y));
        UpdateWindow();
    }
    CString menuText(unsigned id)
    {
        CMenu menu;
        (void)menu.LoadMenu(GetMenuID());
        CMenu& lines = *menu.GetSubMenu(0);
        amMenuParse(&lines);
        for (const CMenu::Line& line : lines.lines())
            if (line.id == id)
                return line.text;
        return {};
    }
};

std::size_t flaggedOf(const AGains& gains)
{
    std::size_t flagged = 0;
    for (const Gain& gain : gains.cells())
        flagged += gain.isFlagged != 0;
    return flagged;
}

struct Tables : testing::Test {
    AGains gains = madeGains(3, 4);
    EditedGains edited;
    Tables()
    {
        AddLibraryResources();
        gains.at(0, 0, 0, 0).state = GainState::missing;
        gains.at(1, 0, 0, 0).state = GainState::failed;
        edited.show(gains);
    }
};

}  // namespace

TEST(GainGraph, FlagsWhatARectangleHoldsAndTakesItBack)
{
    AddLibraryResources();
    AGains gains = madeGains(4, 50);
    gains.at(10, 0, 0, 1).state = GainState::failed;
    EditedGains edited(gains);
    GraphWindow window;
    ASSERT_TRUE(window.Create("", "", popup, CRect(0, 0, 900, 700), nullptr, 0));
    window.SetGains(&edited);
    window.UpdateWindow();
    A2DAxisMulti* const axis = window.GetAxis();
    ASSERT_TRUE(axis);
    EXPECT_EQ(axis->getPanelCount(), 8);
    EXPECT_EQ(axis->getPages(), 1);
    const CRect plot = axis->getPanelRect(5);  // phases of the second antenna
    ASSERT_FALSE(plot.IsRectEmpty());
    EXPECT_GT(plot.left, axis->getPanelRect(1).right);  // a column of their own
    EXPECT_LT(std::abs(plot.top - axis->getPanelRect(1).top), 2);
    const MultiLayout& layout = axis->getLayout();
    ASSERT_EQ(layout.legends.size(), 1U);  // groups and hands, failed ones, over all panels
    EXPECT_EQ(layout.legends[0].lines.size(), 5U);
    EXPECT_LT(layout.legends[0].box.bottom, axis->getPanelRect(0).top);
    window.key('F');
    const CPoint from(plot.left + 2, plot.top + 2), to(plot.CenterPoint().x, plot.bottom - 2);
    window.drag(from, to);
    const std::size_t flagged = flaggedOf(gains);
    EXPECT_GT(flagged, 80U);
    EXPECT_LT(flagged, 120U);
    EXPECT_EQ(window.notices.back(), "Flagged " + std::to_string(flagged) + " solutions.");
    for (std::size_t i = 0; i < gains.cells().size(); ++i)
        EXPECT_TRUE(!gains.cells()[i].isFlagged || gainIndexOf(gains, i).antenna == 1);
    EXPECT_EQ(window.menuText(ID_TRACK_UNDO),
              "&Undo flagging of " + std::to_string(flagged) + " solutions\tCtrl+Z");
    window.drag(from, to);
    EXPECT_EQ(window.notices.back(), "There is no solution to change in the rectangle.");
    window.key('R');
    window.drag(from, CPoint((from.x + to.x) / 2, to.y));
    EXPECT_LT(flaggedOf(gains), flagged);
    window.key('Z', MK_CONTROL);
    window.key('Z', MK_CONTROL);
    EXPECT_EQ(flaggedOf(gains), 0U);
    window.key('Z', MK_CONTROL | MK_SHIFT);
    EXPECT_EQ(flaggedOf(gains), flagged);
    EXPECT_EQ(window.GetAxis(), axis);  // filled again, not made anew
    window.key(VK_ESCAPE);
    EXPECT_EQ(window.GetTool(), AGainGraphWnd::Tool::zoom);
    window.drag(from, to);
    EXPECT_TRUE(window.IsRangeZoomed());  // a rubber band again
    EXPECT_EQ(flaggedOf(gains), flagged);
}

TEST(GainGraph, ShowsPagesColumnsAndNothingOfALinkThatIsGone)
{
    GainChain chain;
    const int link = chain.add("phases", madeGains(11, 6));
    EditedGains edited(chain, link);
    GraphWindow window;
    ASSERT_TRUE(window.Create("", "", popup, CRect(0, 0, 800, 600), nullptr, 0));
    window.SetGains(&edited);
    window.UpdateWindow();
    ASSERT_TRUE(window.GetAxis());
    EXPECT_EQ(window.GetAxis()->getPages(), 2);
    window.key('N');
    window.UpdateWindow();
    EXPECT_EQ(window.GetAxis()->getPage(), 1);
    window.key('A');  // phases alone: one column
    window.UpdateWindow();
    EXPECT_EQ(window.GetAxis()->getPanelCount(), 11);
    window.key('A');  // one of them is always there
    EXPECT_TRUE(window.GetChoice().amplitudes && window.GetChoice().phases);
    window.key('P');
    EXPECT_TRUE(window.GetChoice().amplitudes && !window.GetChoice().phases);
    for (const int key : {'L', 'E', 'L'})
        window.key(key);
    EXPECT_FALSE(window.GetChoice().errors);
    EXPECT_TRUE(window.GetChoice().lines);
    ASSERT_TRUE(chain.remove(link));
    edited.replaced();
    EXPECT_FALSE(window.GetAxis());
    window.key('F');
    window.drag({100, 100}, {300, 300});
    window.SetGains(nullptr);
}

TEST_F(Tables, OfGainsShowAndEditWhatTheGraphEdits)
{
    AGainTbl table;
    ASSERT_TRUE(table.Create("", "", popup, CRect(0, 0, 900, 400), nullptr, 0));
    table.SetGains(&edited);
    ASSERT_EQ(table.rows(), 3 * 4 * 4 - 1);
    const auto rowOfText = [&](const char* const antenna, const char* const state) {
        for (int row = 1; row <= table.rows(); ++row)
            if (table.cellAsStr(row, 1, nullptr) == antenna &&
                table.cellAsStr(row, 10, nullptr) == state)
                return row;
        return 0;
    };
    const int failed = rowOfText("T1", "failed");
    ASSERT_GT(failed, 0);
    EXPECT_EQ(table.cellAsStr(failed, 2, nullptr), "1-2");
    EXPECT_EQ(table.cellAsStr(failed, 3, nullptr), "R");
    EXPECT_EQ(table.cellAsStr(failed, 4, nullptr), "12:01:30.0");
    EXPECT_EQ(table.cellAsStr(failed, 5, nullptr), "");
    EXPECT_FALSE(table.isEnableAutoEdit(failed, 5) || table.pasteCell(failed, 5, "2"));
    const int row = rowOfText("T2", "solved");
    ASSERT_TRUE(table.pasteCell(row, 5, "2.5"));
    EXPECT_EQ(table.cellAsStr(row, 5, nullptr), "2.5");
    const CString phase = table.cellAsStr(row, 6, nullptr);
    ASSERT_TRUE(table.pasteCell(row, 6, "90"));
    EXPECT_NE(phase, "90");
    EXPECT_NEAR(std::abs(gains.at(0, 0, 0, 1).value - std::complex<double>(0, 2.5)), 0, 1e-12);
    EXPECT_FALSE(table.pasteCell(row, 5, "-1") || table.pasteCell(row, 6, "x") ||
                 table.pasteCell(row, 9, "3") || table.pasteCell(row, 10, "failed"));
    ASSERT_TRUE(table.pasteCell(row, 10, "flagged"));
    EXPECT_EQ(table.cellAsStr(row, 10, nullptr), "flagged");
    EXPECT_EQ(table.undoLabel(), "Edit of T2");
    for (int steps = 0; steps < 3; ++steps)
        EXPECT_TRUE(table.Undo());
    EXPECT_FALSE(table.canUndo());
    EXPECT_EQ(table.cellAsStr(row, 6, nullptr), phase);
    // the selected rows, sorted by amplitude
    ASSERT_TRUE(table.SortRows({5, SortDirection::rising}));
    ASelectRect rows{1, 1, 6, 1};
    table.SetSelectRect(rows);
    EXPECT_GE(table.FlagSelected(1), 5U);
    EXPECT_GE(flaggedOf(gains), 5U);
    edited.undo();
    EXPECT_EQ(flaggedOf(gains), 0U);
    double value = 0;
    EXPECT_TRUE(table.cellNumber(row, 4, value));
    table.SetGains(nullptr);
    EXPECT_EQ(table.rows(), 0);
}

TEST_F(Tables, OfMeansScaleAnAntennaByItsMedian)
{
    AMeanGainWnd window;
    ASSERT_TRUE(window.Create("", "", popup, CRect(0, 0, 900, 300), nullptr, 0));
    window.SetGains(&edited);
    window.UpdateWindow();
    ASSERT_EQ(window.table().rows(), 3 * 4);
    EXPECT_EQ(window.table().cellAsStr(1, 4, nullptr), "2");
    EXPECT_EQ(window.table().cellAsStr(1, 5, nullptr), "1");
    const double before = medianAmplitude(gains, 1);
    ASelectRect rows{5, 1, 6, 2};
    window.table().SetSelectRect(rows);
    (void)window.SendMessage(WM_COMMAND, ID_GAIN_SCALE);
    EXPECT_NEAR(medianAmplitude(gains, 1), 1, 1e-12);
    EXPECT_NE(before, 1);
    EXPECT_EQ(edited.history().undoLabel(), "Scaling of T2");
    ASSERT_TRUE(window.table().Undo());
    EXPECT_EQ(medianAmplitude(gains, 1), before);
    window.SetGains(nullptr);
    EXPECT_EQ(window.ScaleSelected(), 0);
}
