#include "pavane/axes/multi/A2DAxisMulti.h"
#include "pavane/calibration/windows/AFlagWnd.h"
#include "pavane/resources/flag_commands.h"
#include "pavane/windows/library_resources.h"
#include "platform/CMenu.h"
#include "platform/messages.h"
#include "tests/calibration/made_data.h"

#include <gtest/gtest.h>

namespace pavane
{

namespace
{

struct FlagWindow : AFlagWnd {
    std::vector<CString> notices;
    void OnNotice(const CString& text) override { notices.push_back(text); }
    void key(int code, int modifiers = 0)
    {
        SetKeyStateOverride(modifiers);
        SendMessage(WM_KEYDOWN, static_cast<WPARAM>(code));
        SetKeyStateOverride(-1);
        UpdateWindow();
    }
    void drag(CPoint from, CPoint to)
    {
        SendMessage(WM_LBUTTONDOWN, MK_LBUTTON, MAKELPARAM(from.x, from.y));
        SendMessage(WM_MOUSEMOVE, MK_LBUTTON, MAKELPARAM(to.x, to.y));
        SendMessage(WM_LBUTTONUP, 0, MAKELPARAM(to.x, to.y));
        UpdateWindow();
    }
};

}  // namespace

TEST(FlagWindow, FlagsByRectangleAndKeyAndTakesItBack)
{
    AddLibraryResources();
    AUVXFile file;
    std::string error;
    ASSERT_TRUE(
        file.open(savedData("window.uvfits", madeGroups(5, {0, 10, 20, 30, 300, 310})), error));
    EditedVisibilities data;
    FlagWindow window;
    ASSERT_TRUE(window.Create("", "", WS_POPUP | WS_VISIBLE, CRect(0, 0, 900, 700), nullptr, 0));
    window.SetData(&data);
    EXPECT_FALSE(window.GetAxis());
    data.show(&file);
    while (data.step()) {
    }
    window.UpdateWindow();
    A2DAxisMulti* const axis = window.GetAxis();
    ASSERT_TRUE(axis);
    EXPECT_EQ(axis->getPanelCount(), 24);  // ten baselines, four on a page, and empty places
    EXPECT_EQ(axis->getPages(), 3);
    EXPECT_EQ(axis->getPanelCaption(0), "1-2");
    const CRect plot = axis->getPanelRect(4);  // phases of the first
    window.key('F');
    const CPoint from(plot.left + 2, plot.top + 2), middle(plot.CenterPoint().x, plot.bottom - 2);
    window.drag(from, middle);  // four of the six times
    EXPECT_EQ(window.notices.back(), "Flagged 16 visibilities.");
    EXPECT_EQ(data.edits().undoLabel(), "Flagging of 4 points");
    EXPECT_EQ(window.GetAxis(), axis);
    window.key('T');  // an antenna, but nobody has said which
    window.drag(from, CPoint(plot.right - 2, plot.bottom - 2));
    EXPECT_EQ(data.flaggedCount(), 16U);
    window.SetScope({FlagScope::Antennas::antenna, 2});
    window.drag(from, CPoint(plot.right - 2, plot.bottom - 2));
    EXPECT_EQ(data.flaggedCount(), 16U + 2 * 16);
    window.key('Z', MK_CONTROL);
    EXPECT_EQ(data.flaggedCount(), 16U);
    window.key('R');
    window.key('B');
    window.drag(from, CPoint(plot.left + (middle.x - plot.left) / 8, plot.bottom - 2));
    EXPECT_EQ(window.notices.back(), "Restored 8 visibilities.");
    window.key(VK_ESCAPE);
    EXPECT_EQ(window.GetTool(), AFlagWnd::Tool::zoom);
    // by keys alone: the curve behind that of flagged points, its first point
    window.SetPlotFocus({MultiFocusKind::panel, 0});
    while (window.GetPlotFocus().kind != MultiFocusKind::curve)
        window.key(VK_TAB);
    window.key(VK_TAB);
    window.key(VK_HOME);
    window.key(VK_DELETE);
    EXPECT_EQ(window.notices.back(), "Flagged 4 visibilities.");
    window.key('V');  // hides them
    EXPECT_EQ(axis->getPanelCaption(0), "1-2");
    window.SetReadOnly(1);
    window.key('F');
    EXPECT_EQ(window.GetTool(), AFlagWnd::Tool::zoom);
    FlagChartChoice choice = window.GetChoice();
    choice.telescope = 3;
    window.SetChoice(choice);
    EXPECT_EQ(window.GetAxis()->getPages(), 1);
    choice.isDistance = 1;
    window.SetChoice(choice);
    EXPECT_EQ(window.GetAxis()->getPanelCount(), 2);
    data.show(nullptr);
    EXPECT_FALSE(window.GetAxis());
}

}  // namespace pavane
