// A window that turns a box, and its link with that of the map.
#include "pavane/axes/A2DAxis.h"
#include "pavane/axes/box/A2_3D2ZAxis.h"
#include "pavane/axes/box/ASurfaceGraph.h"
#include "pavane/axes/windows/AAxisWnd.h"
#include "pavane/axes/windows/ASurfaceWnd.h"
#include "platform/messages.h"

#include <cmath>
#include <gtest/gtest.h>
#include <memory>

using namespace pavane;

namespace
{

AMatrix<float> hill(int side)
{
    AMatrix<float> cells(side, side);
    for (int r = 0; r < side; ++r)
        for (int c = 0; c < side; ++c)
            cells(r, c) = static_cast<float>(
                std::exp(-8 * std::hypot(2.0 * r / side - 1, 2.0 * c / side - 1)));
    return cells;
}

struct SurfaceWindow : ASurfaceWnd {
    CWnd top;
    AMatrix<float> map;
    AFloatMatrixAccess cells{map};
    A2_3D2ZAxis* axis = new A2_3D2ZAxis(1, 1, nullptr, 0);
    std::vector<CPoint> told;
    explicit SurfaceWindow(int side = 40) : map(hill(side))
    {
        const CRect all(0, 0, 400, 300);
        top.Create("", "", WS_POPUP | WS_VISIBLE, all, nullptr, 0);
        Create("", "", WS_CHILD | WS_VISIBLE, all, &top, 1);
        auto* const graph = new ASurfaceGraph(axis, cells, {-10, 10, -10, 10}, 0);
        graph->setNames("Offset", "y", "[%sJy/beam]");
        SetBox(axis, 1);
        SetCellLink([this](int row, int column) { told.emplace_back(column, row); });
        UpdateWindow();
    }
    void mouse(unsigned message, CPoint p, unsigned keys = 0)
    {
        SendMessage(message, keys, MAKELPARAM(p.x, p.y));
    }
    void drag(unsigned down, unsigned up, unsigned keys, CPoint way)
    {
        mouse(down, {200, 150}, keys);
        mouse(WM_MOUSEMOVE, CPoint(200, 150) + way, keys);
        if (up)
            mouse(up, CPoint(200, 150) + way);
    }
    CString turn() const
    {
        char text[80];
        std::snprintf(text, sizeof text, "%g %g h%.2f z%.2f", axis->GetAzimuth(),
                      axis->GetElevation(), axis->GetBoxHeight(), axis->GetZoom());
        return text;
    }
    using ASurfaceWnd::cellMark;
    using ASurfaceWnd::takeKey;
};

}  // namespace

TEST(SurfaceWindow, KeysTurnAndSizeTheBoxAndHomeTakesItBack)
{
    struct Case {
        int key;
        bool shift, control;
        const char* turn;
    };
    const Case cases[] = {
        {VK_RIGHT, false, false, "35 35 h0.50 z1.00"}, {VK_LEFT, true, false, "29 35 h0.50 z1.00"},
        {VK_UP, false, false, "30 40 h0.50 z1.00"},    {VK_DOWN, true, false, "30 34 h0.50 z1.00"},
        {VK_UP, false, true, "30 35 h0.55 z1.00"},     {VK_DOWN, false, true, "30 35 h0.45 z1.00"},
        {'X', false, false, "90 0 h0.50 z1.00"},       {'Y', false, false, "0 0 h0.50 z1.00"},
        {'Z', false, false, "0 90 h0.50 z1.00"},       {VK_ADD, false, false, "30 35 h0.50 z1.50"},
    };
    SurfaceWindow window;
    for (const Case& c : cases) {
        SCOPED_TRACE(c.turn);
        EXPECT_TRUE(window.takeKey(c.key, c.shift, c.control));
        EXPECT_EQ(window.turn(), c.turn);
        EXPECT_TRUE(window.takeKey(VK_HOME, false, false));
        EXPECT_EQ(window.turn(), "30 35 h0.50 z1.00");
    }
}

TEST(SurfaceWindow, ADragIsOneStepAndEscapeTakesItBack)
{
    SurfaceWindow window;
    window.drag(WM_LBUTTONDOWN, WM_LBUTTONUP, MK_LBUTTON, {-40, 20});
    EXPECT_EQ(window.turn(), "50 45 h0.50 z1.00");
    window.drag(WM_LBUTTONDOWN, WM_LBUTTONUP, MK_LBUTTON | MK_SHIFT, {-13, 0});
    EXPECT_EQ(window.turn(), "60 45 h0.50 z1.00");
    window.drag(WM_LBUTTONDOWN, 0, MK_LBUTTON, {100, 50});
    EXPECT_EQ(window.turn(), "10 70 h0.50 z1.00");
    EXPECT_TRUE(window.takeKey(VK_ESCAPE, false, false));
    EXPECT_EQ(window.turn(), "60 45 h0.50 z1.00");
    EXPECT_EQ(CWnd::GetCapture(), nullptr);
    window.drag(WM_MBUTTONDOWN, WM_MBUTTONUP, MK_MBUTTON, {20, 0});
    EXPECT_GT(window.axis->GetPan().x, 0);
    for (const char* const turn : {"60 45 h0.50 z1.00", "50 45 h0.50 z1.00", "30 35 h0.50 z1.00"}) {
        window.ViewBack();
        EXPECT_EQ(window.turn(), turn);
        EXPECT_EQ(window.axis->GetPan().x, 0);
    }
    EXPECT_FALSE(window.CanViewBack());
    window.ViewForward();
    EXPECT_EQ(window.turn(), "50 45 h0.50 z1.00");
    CPoint screen(200, 150);
    window.ClientToScreen(screen);
    window.SendMessage(WM_MOUSEWHEEL, MK_CONTROL | WHEEL_DELTA << 16,
                       MAKELPARAM(screen.x, screen.y));
    EXPECT_EQ(window.turn(), "50 45 h0.50 z1.25");
    window.mouse(WM_LBUTTONDBLCLK, {200, 150}, MK_LBUTTON);
    EXPECT_EQ(window.turn(), "30 35 h0.50 z1.00");
}

TEST(SurfaceWindow, MayGoInEachDrag)
{
    for (const unsigned button : {WM_LBUTTONDOWN, WM_MBUTTONDOWN})
        for (const int what : {0, 1, 2}) {
            auto window = std::make_unique<SurfaceWindow>(800);
            window->drag(button, 0, MK_LBUTTON, {30, 10});
            window->UpdateWindow();
            if (what == 0)
                window->DestroyWindow();
            if (what == 1)
                window->SetBox(nullptr, 0);
            window.reset();
            EXPECT_EQ(CWnd::GetCapture(), nullptr);
        }
}

TEST(SurfaceWindow, SharesTheMarkedCellWithTheMap)
{
    SurfaceWindow window;
    AAxisWnd map;
    A2DAxis plane(1, 1, nullptr, 0);
    auto* const graph = new AColorsGraph(&plane, window.cells, {-10, 10, -10, 10}, 0);
    map.Create("", "", WS_CHILD | WS_VISIBLE, CRect(0, 0, 400, 300), &window.top, 2);
    map.SetAxis(&plane, 0);
    map.SetMap(graph);
    map.SetCellLink([&](int row, int column) { window.SetLinkedCell(row, column); });
    map.UpdateWindow();
    const CPoint place(plane.RPXtoGPX(graph->MPXtoRPX(10)), plane.RPYtoGPY(graph->MPYtoRPY(30)));
    map.SendMessage(WM_MOUSEMOVE, 0, MAKELPARAM(place.x, place.y));
    int row = 0, column = 0;
    ASSERT_TRUE(window.GetLinkedCell(row, column));
    EXPECT_EQ(row, 30);
    EXPECT_EQ(column, 10);
    AccessPart part;
    const std::vector<AccessId> parts = window.GetAccessChildren();
    ASSERT_EQ(parts.size(), 6u);
    ASSERT_TRUE(window.GetAccessPart(parts.back(), part));
    EXPECT_NE(part.name.find("column 10, row 30"), CString::npos) << part.name;
    ASSERT_TRUE(window.GetAccessPart(parts[0], part));
    EXPECT_NE(part.name.find("x Offset, -10"), CString::npos) << part.name;
    ASSERT_TRUE(window.GetAccessPart(parts[2], part));
    EXPECT_NE(part.name.find("z [Jy/beam], 1"), CString::npos) << part.name;
    ASSERT_TRUE(window.GetAccessPart(0, part));
    EXPECT_EQ(part.value, "Azimuth 30 degrees, elevation 35 degrees, height 0.5");
    map.SendMessage(WM_MOUSELEAVE);
    EXPECT_FALSE(window.GetLinkedCell(row, column));
    // and back, by the pointer and by keys
    const CPoint top = window.axis->RPtoGP(0.256, 0.256, 1);
    window.mouse(WM_MOUSEMOVE, top + CPoint(0, 5));
    ASSERT_FALSE(window.told.empty());
    EXPECT_NEAR(window.told.back().x, 20, 2);
    EXPECT_NEAR(window.told.back().y, 20, 2);
    window.SetLinkedCell(3, 4);
    window.takeKey(VK_RIGHT, true, true);
    EXPECT_EQ(window.told.back(), CPoint(5, 3));
    // on what the range has cut off, and nowhere outside what is shown
    CRect mark;
    window.axis->setMinMax({-4, 8, -10, 10, 0, 0.25});
    window.ContentChanged();
    window.UpdateWindow();
    ASSERT_TRUE(window.cellMark(20, 20, mark));
    EXPECT_NEAR(mark.CenterPoint().y, window.axis->RPtoGP(0.256, 0.256, 0.25).y, 1);
    EXPECT_FALSE(window.cellMark(20, 2, mark));
    // a second map has cells of its own, the map is told of those that it has there
    AMatrix<float> upper = hill(8);
    const AFloatMatrixAccess upperCells(upper);
    new ASurfaceGraph(window.axis, upperCells, {-10, 10, -10, 10}, 1);
    window.axis->setMinMax({-10, 10, -10, 10});
    window.axis->SetView(0, 90);
    window.ContentChanged();
    window.UpdateWindow();
    window.mouse(WM_MOUSEMOVE, window.axis->RPtoGP(4, -4, 0));
    EXPECT_NEAR(window.told.back().x, 27, 1);
    EXPECT_NEAR(window.told.back().y, 12, 1);
    window.DestroyWindow();
    map.SetCellLink(nullptr);
    map.SetAxis(nullptr, 0);
}
