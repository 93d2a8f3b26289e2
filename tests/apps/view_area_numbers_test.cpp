// Numbers, names and colours of areas in the window of pavane-view.
#include "pavane/axes/A2DAxis.h"
#include "pavane/trackers/areas/area_names.h"
#include "platform/color_dialog.h"
#include "platform/controls.h"
#include "tests/apps/view_window_fixture.h"

namespace pavane
{

namespace
{

std::string cell(AreaNumbersPanel& panel, int row, const char* title)
{
    for (int c = 1; c <= panel.columns(); ++c)
        if (panel.hdrCellAsStr(0, c, nullptr).starts_with(title))
            return panel.cellAsStr(row, c, nullptr);
    return "no such column";
}

}  // namespace

TEST_F(ViewWindow, TellsWhatTheAreasHoldWhileTheyChange)
{
    MainWindow window;
    open(window);
    addArea(window, 12);
    addArea(window, 4);
    AreaNumbersPanel& panel = window.areaNumbers();
    EXPECT_EQ(panel.rows(), 0);
    window.SendMessage(WM_COMMAND, idAreaNumbers);
    EXPECT_EQ(CWnd::GetFocus(), &panel);
    ASSERT_EQ(panel.rows(), 3);
    EXPECT_GT(clientOf(panel).Height(), 80);
    EXPECT_EQ(cell(panel, 2, "Kind"), "rectangle");
    EXPECT_EQ(cell(panel, 3, "Name"), "All areas");
    const auto overlay = [&] {
        return std::to_string(window.view().StatusAt(clientOf(window.view()).CenterPoint()).cells);
    };
    EXPECT_EQ(cell(panel, 3, "Cells"), overlay());
    EXPECT_EQ(cell(panel, 3, "Cells"), cell(panel, 1, "Cells"));  // the other lies in it

    // a row chooses its area, an area its row, however the rows are ordered
    EXPECT_EQ(panel.getSelectRect().anchorRow, 2);
    panel.kbUp(1, 0);
    EXPECT_EQ(areas(window).GetCurItemNo(), 0);
    EXPECT_TRUE(panel.SortRows({3, SortDirection::rising}));
    EXPECT_EQ(cell(panel, 1, "Name"), "Area 2");
    areas(window).ChangeActiveTrack(&window.view(), 1);
    EXPECT_EQ(panel.getSelectRect().anchorRow, 1);
    EXPECT_TRUE(panel.SortRows({}));

    // inside a drag
    const std::string before = cell(panel, 2, "Sum");
    std::string inside;
    const CPoint from = window.view().GetAxis()->getGraphRect().CenterPoint();
    window.view().PostMessage(WM_MOUSEMOVE, MK_LBUTTON, MAKELPARAM(from.x + 30, from.y + 40));
    window.view().PostMessage(WM_KEYDOWN, VK_ESCAPE);
    const int cellsBefore = panel.numbers().rows()[1].numbers.leastColumn;
    int changes = 0;
    panel.measured = [&] {
        if (cell(panel, 2, "Sum") != before)
            inside = cell(panel, 2, "Sum"), ++changes;
    };
    window.view().SendMessage(WM_LBUTTONDOWN, MK_LBUTTON, MAKELPARAM(from.x, from.y));
    EXPECT_GT(changes, 0);
    EXPECT_NE(inside, before);
    EXPECT_EQ(cell(panel, 2, "Sum"), before);
    EXPECT_EQ(panel.numbers().rows()[1].numbers.leastColumn, cellsBefore);
    panel.measured = nullptr;

    window.SendMessage(WM_COMMAND, idEmptyArea);
    EXPECT_EQ(panel.emptyArea(), 1);
    EXPECT_EQ(cell(panel, 2, "Kind"), "rectangle, empty");
    areas(window).DeleteItems(0, 1);
    window.view().FollowAreas();
    EXPECT_EQ(panel.emptyArea(), 0);
    areas(window).Clear(&window.view());
    EXPECT_EQ(panel.emptyArea(), -1);
    ASSERT_EQ(panel.rows(), 1);
    EXPECT_EQ(cell(panel, 1, "Name"), "Whole map");
    EXPECT_EQ(cell(panel, 1, "Cells"), std::to_string(48 * 64));
    window.SendMessage(WM_COMMAND, idAreaNumbers);
    EXPECT_FALSE(panel.isShown());
}

TEST_F(ViewWindow, NamesAndColoursAreUndoneSavedAndBroughtBack)
{
    const auto red = [](COLORREF& color) { return color = RGB(255, 0, 16), 1; };
    SetColorDialogAnswer(red);
    {
        MainWindow window;
        open(window);
        addArea(window, 12);
        addArea(window, 6);
        window.SendMessage(WM_COMMAND, idAreaNumbers);
        AreaNumbersPanel& panel = window.areaNumbers();
        EXPECT_TRUE(panel.isEnableAutoEdit(2, 1) && !panel.isEnableAutoEdit(2, 2));
        EXPECT_FALSE(panel.isEnableAutoEdit(3, 1)) << "all areas have no name of their own";
        EXPECT_TRUE(panel.setCellStr(2, 1, " knot\tA "));
        EXPECT_EQ(cell(panel, 2, "Name"), "knot A");
        EXPECT_EQ(window.view().GetComboBox()->GetLBText(1), "knot A");
        window.SendMessage(WM_COMMAND, idAreaColour);
        EXPECT_EQ(areas(window).Label(1), (AreaLabel{"knot A", 0xFF0010}));
        EXPECT_EQ(panel.undoLabel(), "Colour of Area 2");
        areas(window).CopyTracker(&window.view());
        EXPECT_EQ(areas(window).Label(2), (AreaLabel{"knot A", 0xFF0010}));
        EXPECT_TRUE(panel.Undo() && panel.Undo());
        EXPECT_EQ(areas(window).Label(1), (AreaLabel{"knot A", -1}));
        EXPECT_TRUE(panel.Redo());
        window.SendMessage(WM_COMMAND, idAreaNames);
        window.view().UpdateWindow();
        window.DestroyWindow();  // as a crash: nothing was asked
        forgetQuit();
    }
    SetColorDialogAnswer(nullptr);
    ASSERT_EQ(copies(), 1u);
    answer = IDYES;
    MainWindow window;
    open(window);
    ASSERT_EQ(areas(window).count(), 2);
    EXPECT_EQ(areas(window).Label(1), (AreaLabel{"knot A", 0xFF0010}));
    fileAnswer = path("named.areas");
    window.SendMessage(WM_COMMAND, idSaveAreasAs);
    EXPECT_TRUE(fs::exists(path("named.areas.names")));
    areas(window).Clear(&window.view());
    window.SendMessage(WM_COMMAND, idOpenAreas);
    EXPECT_EQ(areas(window).Label(1), (AreaLabel{"knot A", 0xFF0010}));
    EXPECT_FALSE(window.session().isModified());
    // what belongs to the areas is no place for a picture
    said.clear();
    fileAnswer = path("named.areas.names");
    window.SendMessage(WM_COMMAND, idSaveMask);
    ASSERT_EQ(said.size(), 1u);
    EXPECT_NE(said[0].find("is the file of names that is open"), std::string::npos) << said[0];
}

}  // namespace pavane
