#include "axes/windows/axis_window_fixture.h"
#include "pavane/axes/windows/AAreaSelectDlg.h"
#include "pavane/axes/windows/AAxisTrkSelWnd.h"
#include "pavane/trackers/ARPRectTracker.h"
#include "platform/CMenu.h"
#include "platform/controls.h"
#include "platform/message.h"
#include "platform/picture.h"

#include <cmath>
#include <fstream>
#include <gtest/gtest.h>
#include <iterator>

using namespace pavane;

namespace
{

/// A map of 40 x 40 cells that tests share.
struct SmallMap {
    AMatrix<float> cells{40, 40};
    AFloatMatrixAccess access{cells};
    TMinMax centres;
    SmallMap()
    {
        centres.xMin = centres.yMin = 0;
        centres.xMax = centres.yMax = 39;
        for (int i = 0; i < 1600; ++i)
            cells.row(i / 40)[i % 40] = 1;
    }
    void show(AAxisWnd& window)
    {
        auto* const axis = new A2DAxis(1, 1, nullptr, 0);
        auto* const graph = new AColorsGraph(axis, access, centres, 0);
        window.SetAxis(axis, 1);
        window.SetMap(graph);
    }
};

struct Tools : AAxisTrkSelWnd {
    SmallMap map;
    CWnd top;
    Tools()
    {
        top.Create("", "", WS_POPUP | WS_VISIBLE, CRect(0, 0, 700, 500), nullptr, 0);
        Create("", "", WS_CHILD | WS_VISIBLE, CRect(0, 0, 700, 500), &top, 1);
        map.show(axisWnd());
        axisWnd().UpdateWindow();
    }
    ~Tools() override { axisWnd().SetAxis(nullptr, 0); }
};

void addRect(AAxisWnd& window, double left, double top, double right, double bottom)
{
    ABTracker* const area = window.GetTrackers()->GetNewTracker(toolRect);
    window.GetTrackers()->Add(area, 1);
    ShapeValues shape;
    shape.rect = {left, top, right, bottom};
    window.GetTrackers()->SetShape(&window, window.GetTrackers()->trackerCount() - 1, shape);
    window.GetTrackers()->ChangeActiveTrack(&window, window.GetTrackers()->trackerCount() - 1);
}

CString told;
int answerQuestion = IDNO;
int tell(const CString& text, unsigned type)
{
    told = text;
    return type & MB_YESNO ? answerQuestion : IDOK;
}

unsigned fourTimes(const CMenu& menu, CPoint)
{
    EXPECT_EQ(menu.lines().size(), 5u);
    EXPECT_TRUE(menu.lines()[0].checked);
    EXPECT_EQ(menu.lines()[2].text, "Zoom 4 times");
    return menu.lines()[2].id;
}

}  // namespace

TEST(AxisTools, FollowTheAreas)
{
    Tools window;
    AAxisWnd& axis = window.axisWnd();
    ATrackerToolBar& bar = window.toolBar();
    EXPECT_FALSE(bar.IsButtonEnabled(ID_TRACK_DELETE));
    addRect(axis, 5, 15, 9, 11);
    addRect(axis, 20, 30, 29, 21);
    EXPECT_EQ(axis.GetComboBox()->GetCount(), 2);
    EXPECT_EQ(axis.GetComboBox()->GetLBText(1), "Area 2");
    EXPECT_TRUE(bar.IsButtonEnabled(ID_TRACK_DELETE));
    axis.GetComboBox()->SetCurSel(0);
    window.SendMessage(WM_COMMAND, ID_CHANGE_AREA | CBN_SELCHANGE << 16);
    EXPECT_EQ(axis.GetTrackers()->GetCurItemNo(), 0);
    window.SendMessage(WM_COMMAND, ID_TRACK_DELETE);
    EXPECT_EQ(axis.GetComboBox()->GetCount(), 1);

    window.SendMessage(WM_COMMAND, ID_TRACK_ELLIPSE);
    EXPECT_EQ(axis.GetTrackers()->mode(), toolEllipse);
    EXPECT_TRUE(bar.IsButtonChecked(ID_TRACK_ELLIPSE));
    SetMenuAnswer(fourTimes);
    window.SendMessage(WM_COMMAND, ID_ZOOM_PLUS | TBN_DROPDOWN << 16);
    SetMenuAnswer(nullptr);
    EXPECT_EQ(axis.GetTrackers()->zoomScale(), 4);
    EXPECT_EQ(axis.GetTrackers()->mode(), toolZoomIn);
    const CPoint middle = axis.GetAxis()->getGraphRect().CenterPoint();
    axis.SendMessage(WM_LBUTTONDOWN, MK_LBUTTON, MAKELPARAM(middle.x, middle.y));
    axis.SendMessage(WM_LBUTTONUP, 0, MAKELPARAM(middle.x, middle.y));
    EXPECT_TRUE(bar.IsButtonEnabled(ID_ZOOM_MINUS));
    EXPECT_NEAR(axis.GetAxis()->getMinMax().xMax - axis.GetAxis()->getMinMax().xMin, 10, 1e-9);
    window.SendMessage(WM_COMMAND, ID_ZOOM_MINUS);
    EXPECT_FALSE(bar.IsButtonEnabled(ID_ZOOM_MINUS));
}

TEST(AxisTools, SayWhatIsThere)
{
    AAxisTrkSelWnd window;
    window.SetValueUnit("Jy/beam");
    AxisStatus status;
    status.inPlot = status.inMap = 1;
    status.x = -1.23456;
    status.y = 200;
    status.stepX = 0.04;
    status.stepY = 30;
    status.column = 7;
    status.row = 9;
    EXPECT_EQ(window.StatusText(status), "x -1.23  y 200   column 7  row 9   blank");
    status.value = 0.5f;
    status.hasAreas = 1;
    status.cells = 1;
    status.sum = 2.5;
    EXPECT_EQ(window.StatusText(status),
              "x -1.23  y 200   column 7  row 9   0.5 Jy/beam     1 cell, "
              "sum 2.5 Jy/beam");
    window.SetFluxUnit(10, "Jy");
    window.SetUnits({1000, "mas"}, {1, ""});
    status.inMap = status.hasAreas = 0;
    EXPECT_EQ(window.StatusText(status), "x -1235 mas  y 200");
    status.hasAreas = 1;
    status.inPlot = 0;
    status.cells = 40;
    EXPECT_EQ(window.StatusText(status), "40 cells, 0.25 Jy");
}

TEST(AxisTools, EditNumbersBothWays)
{
    Tools window;
    window.ShowAreaTable(1);
    AAreaTableWnd& table = window.areaTable();
    const auto shown = [&](int row) { return table.cellAsStr(row, 1, nullptr); };
    const auto key = [](int code) {
        CWnd::GetFocus()->SendMessage(WM_KEYDOWN, static_cast<WPARAM>(code), 1);
    };
    const auto type = [&](const CString& text) {
        key(VK_F2);
        auto* const field = static_cast<CEdit*>(table.GetDlgItem(1001));
        field->SetWindowText(text);
        field->SetModify(1);
    };
    EXPECT_EQ(table.rows(), 0);
    addRect(window.axisWnd(), 10, 20, 14, 12);
    EXPECT_EQ(table.rows(), 4);
    EXPECT_EQ(shown(1), "12");
    table.SetFocus();
    type("13.5");
    key(VK_RETURN);
    const auto* area = static_cast<ARPRectTracker*>(window.axisWnd().GetTrackers()->trackerAt(0));
    EXPECT_EQ(area->GetCenter().x, 13.5);
    const auto before = SetMessageFunction(tell);
    told.clear();
    table.SetSelectOneCell(1, 1);
    type("many");
    key(VK_RETURN);
    EXPECT_NE(told, "");
    ASSERT_TRUE(table.GetDlgItem(1001));  // refused: still there to be mended
    key(VK_ESCAPE);
    EXPECT_EQ(shown(1), "13.5");
    window.axisWnd().GetTrackers()->MoveByValue(&window.axisWnd(), 1, 0);
    EXPECT_EQ(shown(1), "14.5");
    type("15");
    for (int row = 1; row <= 4; ++row) {
        EXPECT_EQ(table.getSelectRect().anchorRow, row);
        key(VK_TAB);
    }
    EXPECT_EQ(CWnd::GetFocus(), &window.axisWnd());
    EXPECT_EQ(area->GetCenter().x, 15);
    EXPECT_TRUE(table.Undo());
    EXPECT_EQ(shown(1), "14.5");
    table.SetFocus();
    type("16");
    window.axisWnd().GetTrackers()->DelteTracker(&window.axisWnd());
    EXPECT_EQ(table.rows(), 0);  // and the editor went with the numbers that it was for
    EXPECT_FALSE(table.GetDlgItem(1001));
    SetMessageFunction(before);
}

TEST(AxisTools, PasteIntoALongPolygonInOneStep)
{
    Tools window;
    window.ShowAreaTable(1);
    AAreaTableWnd& table = window.areaTable();
    ATrackerArrayInAxis& areas = *window.axisWnd().GetTrackers();
    constexpr int vertices = 2000;
    ShapeValues shape;
    shape.kind = ShapeValues::Kind::polygon;
    for (int i = 0; i < vertices; ++i)
        shape.points.push_back({20 + 10 * std::cos(6.28 * i / vertices), 20.0 + i % 7});
    areas.Add(areas.GetNewTracker(toolArea), 1);
    ASSERT_TRUE(areas.SetShape(&window, 0, shape));
    areas.ChangeActiveTrack(&window, 0);
    ASSERT_EQ(table.rows(), vertices);
    ASSERT_EQ(table.columns(), 2);
    const auto steps = areas.history().undoSteps();
    int tellings = 0;
    table.beginEdits("Paste");
    for (int row = 1; row <= vertices; ++row) {
        const CString text = row % 2   ? "11.25"
                             : row % 3 ? "500"
                                       : "x";  // beyond the map, no number
        tellings += table.pasteCell(row, 2, text);
    }
    EXPECT_EQ(table.cellAsStr(1, 2, nullptr), "11.25");  // whoever pastes on reads what is there
    EXPECT_EQ(areas.history().undoSteps(), steps);
    table.endEdits();
    EXPECT_EQ(tellings, vertices / 2);
    EXPECT_EQ(areas.history().undoSteps(), steps + 1);
    EXPECT_EQ(areas.history().undoLabel(), "Paste");
    ShapeValues now;
    ASSERT_TRUE(areas.GetShape(0, now));
    EXPECT_EQ(now.points[0].y, 11.25);
    EXPECT_EQ(now.points[1].y, shape.points[1].y);
    EXPECT_EQ(now.points[2].x, shape.points[2].x);
    table.Undo();
    ASSERT_TRUE(areas.GetShape(0, now));
    EXPECT_TRUE(now == shape);
    EXPECT_FALSE(table.isSortable(1));
}

TEST(ToolWindow, PrintsItsAxisWindow)
{
    Tools open;
    SmallMap map;
    AAxisTrkSelWnd closed;
    map.show(closed.axisWnd());
    for (AAxisTrkSelWnd* const window : {static_cast<AAxisTrkSelWnd*>(&open), &closed}) {
        std::string pages[2];
        for (ABWindow* const printed :
             {static_cast<ABWindow*>(window), static_cast<ABWindow*>(&window->axisWnd())}) {
            const CString file = ::testing::TempDir() + "tools.svg";
            CPageFile page(CPageFile::Format::svg, 400, 300, "");
            EXPECT_EQ(printed->GetPages(page.dc()), 1);
            CRect rect(120, 120, 4680, 3480);
            printed->PrintWindow(page.dc(), rect, 1);
            CString error;
            ASSERT_TRUE(page.Close(file, error)) << error;
            std::ifstream in(file);
            pages[printed == window].assign(std::istreambuf_iterator<char>(in), {});
        }
        EXPECT_GT(pages[0].size(), 1000u);
        EXPECT_EQ(pages[0], pages[1]);
    }
    closed.axisWnd().SetAxis(nullptr, 0);
}

TEST(AreaDialog, BringsTheAreasBackWhenItIsCancelled)
{
    SmallMap map;
    const auto before = SetMessageFunction(tell);
    AAreaSelectDlg dialog;
    AAxisWnd& axis = dialog.window().axisWnd();
    map.show(axis);
    addRect(axis, 5, 15, 9, 11);
    ASSERT_TRUE(dialog.CreateModeless());
    dialog.ShowWindow(SW_SHOW);
    AxisWindow::pump();
    axis.SetFocus();
    for (int tabs = 0; tabs < 30 && CWnd::GetFocus() == &axis; ++tabs)
        axis.SendMessage(WM_KEYDOWN, VK_TAB);  // the area and its handles, then out
    EXPECT_NE(CWnd::GetFocus(), &axis);
    dialog.SetClientSize(900, 700);
    AxisWindow::pump();
    CRect place;
    dialog.window().GetClientRect(place);
    EXPECT_GT(place.Width(), 850);
    told.clear();
    addRect(axis, 20, 30, 29, 21);
    answerQuestion = IDNO;
    dialog.SendMessage(WM_CLOSE);
    EXPECT_NE(told, "");
    EXPECT_EQ(axis.GetTrackers()->trackerCount(), 2);
    answerQuestion = IDYES;
    dialog.SendMessage(WM_CLOSE);
    EXPECT_EQ(axis.GetTrackers()->trackerCount(), 1);
    SetMessageFunction(before);
}
