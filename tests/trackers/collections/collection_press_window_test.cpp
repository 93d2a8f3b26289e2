#include "pavane/axes/ABAxis.h"
#include "pavane/resources/resource_ids.h"
#include "pavane/trackers/AAreaTracker.h"
#include "pavane/trackers/ARectTracker.h"
#include "pavane/trackers/collections/ATrackerArrayInAxis.h"
#include "pavane/trackers/shapes/shape_handles.h"
#include "platform/controls.h"
#include "platform/message.h"

#include <gtest/gtest.h>

#include "trackers/collections/areas_window.h"
#include "trackers/collections/stored_collection.h"

#include <limits>
#include <random>

using namespace pavane;
using namespace pavane::test;

namespace
{

class PressedCollection : public testing::Test
{
protected:
    PressedCollection() : areas(*window.areas)
    {
        bar.Create("bar", "", WS_CHILD, {0, 0, 9, 9}, &window, 4);
        list.Create(CBS_DROPDOWNLIST | WS_VISIBLE, {0, 0, 80, 20}, &window, 5);
        areas.list = &list;
        areas.bar = &bar;
        areas.CheckMinMax({0, 0, 300, 200}, {0, 100, 0, 50}, 1, 1);
        settle();
    }
    std::vector<std::string> lines() const
    {
        std::vector<std::string> all;
        for (int i = 0; i < list.GetCount(); ++i)
            all.push_back(list.GetLBText(i));
        return all;
    }
    int commands() { return bar.enabled[ID_TRACK_DELETE] + bar.enabled[ID_TRACK_COPY]; }
    void drawTool(int mode, const std::vector<CPoint>& way)
    {
        areas.BeginMode(&window, mode);
        window.drag(way);
    }
    CRect rect(int i) const { return static_cast<ARectTracker*>(areas(i))->rect(); }

    AreasWindow<PixelAreas> window;
    Buttons bar;
    CComboBox list;
    PixelAreas& areas;
};

}  // namespace

TEST_F(PressedCollection, DrawsEachShapeInEveryDirectionAndPutsTheToolAway)
{
    const CPoint ends[] = {{120, 110}, {40, 110}, {40, 50}, {120, 50}};
    const int tools[] = {toolRect, toolRotateRect, toolEllipse, toolRect};
    for (int k = 0; k < 4; ++k) {
        drawTool(tools[k], {{80, 80}, {90, 85}, ends[k]});
        ASSERT_EQ(areas.count(), k + 1);
        EXPECT_EQ(areas.mode(), toolArrow);
        EXPECT_EQ(bar.checked, ID_TRACK_ARROW);
        EXPECT_EQ(areas.GetCurItemNo(), k);
        ShapeValues shape;
        ASSERT_TRUE(areas.GetShape(k, shape));
        EXPECT_EQ(std::abs(shape.rect.right - shape.rect.left), 40) << k;
        EXPECT_EQ(std::abs(shape.rect.bottom - shape.rect.top), 30) << k;
        EXPECT_EQ(areas.SelectedItems(), std::vector<int>{k});
    }
    EXPECT_EQ(list.GetCurSel(), 3);
    EXPECT_EQ(commands(), 2);
    drawTool(toolRect, {{200, 100}});  // a release without a move
    EXPECT_EQ(areas.count(), 4);
    drawTool(toolRect, {{310, 100}, {290, 120}});  // outside the device rectangle
    EXPECT_EQ(window.used, 0);
    EXPECT_EQ(areas.count(), 4);
}

TEST_F(PressedCollection, BuildsPolygonsThatUndoTakesBackVertexByVertex)
{
    areas.BeginMode(&window, toolArea);
    for (const CPoint p : {CPoint(50, 50), CPoint(100, 50), CPoint(100, 100)})
        window.drag({p});
    ASSERT_TRUE(areas.workingTracker());
    EXPECT_EQ(commands(), 2);
    window.doubleClick({100, 100});
    ASSERT_EQ(areas.count(), 1);
    EXPECT_FALSE(areas.workingTracker());
    EXPECT_TRUE(areas(0)->IsReady());
    const std::string closed = stored(areas);
    for (const std::size_t left : {3u, 2u, 1u}) {
        ASSERT_TRUE(areas.Undo(&window));
        EXPECT_EQ(areas.count(), 0);
        ASSERT_TRUE(areas.workingTracker());
        EXPECT_EQ(areas.mode(), toolArea);
        EXPECT_EQ(static_cast<AAreaTracker*>(areas.workingTracker())->points().count(),
                  static_cast<int>(left));
    }
    ASSERT_TRUE(areas.Undo(&window));
    EXPECT_FALSE(areas.workingTracker());
    while (areas.Redo(&window)) {
    }
    EXPECT_EQ(stored(areas), closed);
    EXPECT_EQ(areas.mode(), toolArrow);
    areas.BeginMode(&window, toolArea);
    window.drag({{150, 150}});
    EXPECT_EQ(areas.DelteTracker(&window), 1);
    EXPECT_FALSE(areas.workingTracker());
    EXPECT_EQ(areas.count(), 1);
}

TEST_F(PressedCollection, ActivatesTheTopmostOnADoubleClickAndLeavesItOnAPressBeside)
{
    for (int k = 0; k < 3; ++k)
        areas.Add(new ARectTracker({50 + 20 * k, 50, 150 + 20 * k, 150}, 0x0D), 0);
    EXPECT_EQ(areas.changes, 3);
    areas.FillAreasCB(&window);
    EXPECT_EQ(list.GetCurSel(), -1);
    EXPECT_EQ(commands(), 0);
    window.doubleClick({100, 100});
    EXPECT_EQ(areas.GetCurItemNo(), 2);
    EXPECT_EQ(list.GetCurSel(), 2);
    window.doubleClick({52, 100});
    EXPECT_EQ(areas.GetCurItemNo(), 0);
    EXPECT_FALSE(areas(2)->IsActive());
    window.drag({{250, 180}});
    EXPECT_EQ(window.used, 0);
    EXPECT_FALSE(areas(0)->IsActive());
    EXPECT_EQ(list.GetCurSel(), -1);
    EXPECT_EQ(commands(), 0);
    EXPECT_EQ(areas.DelteTracker(&window), 0);
    areas.SetItemActive(1, 1);
    areas.FillAreasCB(&window);
    EXPECT_EQ(lines(), (std::vector<std::string>{"Area 1", "Area 2", "Area 3"}));
    EXPECT_EQ(list.GetCurSel(), 1);
    EXPECT_EQ(areas.GetCurItemNo(), 1);
    EXPECT_EQ(areas.DelteTracker(&window), 1);
    EXPECT_EQ(lines(), (std::vector<std::string>{"Area 1", "Area 2"}));
}

TEST_F(PressedCollection, ChoosesByASingleClickWhereThatIsWanted)
{
    for (int k = 0; k < 2; ++k)
        areas.Add(new ARectTracker({50 + 60 * k, 50, 100 + 60 * k, 150}, 0x0D), 0);
    window.drag({{130, 100}});
    EXPECT_EQ(areas.GetCurItemNo(), -1);
    areas.SetClickSelects(1);
    areas.SetDeadZone(3);
    const auto steps = areas.history().steps();
    window.drag({{130, 100}, {131, 100}});
    EXPECT_TRUE(areas.GetCurItemNo() == 1 && areas(1)->IsActive());
    EXPECT_EQ(areas.history().steps(), steps);
    EXPECT_EQ(rect(1), CRect(110, 50, 160, 150));
    window.drag({{70, 100}, {80, 100}});  // chosen and dragged at once
    EXPECT_TRUE(areas.GetCurItemNo() == 0 && !areas(1)->IsActive());
    EXPECT_EQ(rect(0), CRect(60, 50, 110, 150));
}

TEST_F(PressedCollection, ZoomsInStepsAndBack)
{
    areas.BeginMode(&window, toolZoomIn);
    window.drag({{270, 100}});
    EXPECT_EQ(areas.range(), (TMinMax{50, 100, 12.5, 37.5}));
    EXPECT_EQ(bar.enabled[ID_ZOOM_MINUS], 1);
    areas.SetZoomScaleNo(4);
    EXPECT_EQ(areas.zoomScale(), 8);
    window.drag({{150, 100}});
    EXPECT_EQ(areas.zoomHistory().count(), 2);
    areas.ZoomBack(&window);
    areas.ZoomBack(&window);
    areas.ZoomBack(&window);
    EXPECT_EQ(areas.range(), (TMinMax{0, 100, 0, 50}));
    EXPECT_EQ(bar.enabled[ID_ZOOM_MINUS], 0);
    EXPECT_EQ(areas.count(), 0);
}

TEST_F(PressedCollection, MovesSeveralAreasTogetherAsOneStep)
{
    for (int k = 0; k < 3; ++k)
        areas.Add(new ARectTracker({30 + 80 * k, 50, 70 + 80 * k, 90}, 0x0D), 0);
    window.drag({{50, 70}}, MK_LBUTTON | MK_CONTROL);
    window.drag({{130, 70}}, MK_LBUTTON | MK_CONTROL);
    EXPECT_EQ(areas.SelectedItems(), (std::vector<int>{0, 1}));
    const auto steps = areas.history().steps();
    window.drag({{50, 70}, {20, 100}, {60, 75}});
    EXPECT_EQ(areas.history().steps(), steps + 1);
    EXPECT_EQ(rect(0), CRect(40, 55, 80, 95));
    EXPECT_EQ(rect(1), CRect(120, 55, 160, 95));
    EXPECT_EQ(rect(2), CRect(190, 50, 230, 90));
    window.post(WM_LBUTTONDOWN, {60, 75});
    window.post(WM_MOUSEMOVE, {80, 95});
    (void)window.PostMessage(WM_KEYDOWN, VK_ESCAPE);
    settle();
    EXPECT_EQ(rect(1), CRect(120, 55, 160, 95));
    EXPECT_EQ(areas.history().steps(), steps + 1);
    window.drag({{280, 20}});
    EXPECT_TRUE(areas.SelectedItems().empty());
}

TEST_F(PressedCollection, ClosesAPolygonWhoseLastVertexIsOutOfSight)
{
    areas.BeginMode(&window, toolArea);
    for (const CPoint p : {CPoint(50, 50), CPoint(250, 50), CPoint(250, 150)})
        window.drag({p});
    areas.CheckMinMax({0, 0, 300, 200}, {0, 25, 0, 50}, 1, 1);
    EXPECT_TRUE(areas.CloseArea(&window));
    ASSERT_EQ(areas.count(), 1);
    EXPECT_EQ(static_cast<AAreaTracker*>(areas(0))->points()(2), CPoint(1000, 150));
    EXPECT_EQ(areas.mode(), toolArrow);
}

TEST_F(PressedCollection, DrawsWithoutAWindowAndAsksNothing)
{
    areas.Add(new ARectTracker({40, 40, 120, 120}, trackerNew), 1);
    window.drag({{80, 80}, {90, 90}});
    static int asked;
    asked = 0;
    const MessageFunction before =
        SetMessageFunction([](const CString&, unsigned) { return ++asked; });
    CBitmap picture;
    ASSERT_TRUE(picture.CreateBitmap(320, 240, 1));
    CMemoryDC dc(picture);
    areas.Draw(&dc, nullptr);
    (void)SetMessageFunction(before);
    EXPECT_EQ(asked, 0);
    EXPECT_EQ(dc.GetPixel(49, 70), RGB(0, 0, 0));
}

TEST_F(PressedCollection, MovesSeveralAreasBesideOneAtTheEndsOfTheNumbers)
{
    constexpr int most = std::numeric_limits<int>::max();
    areas.Add(new ARectTracker({40, 40, 120, 120}, trackerNew), 1);
    areas.Add(new ARectTracker({-most - 1, -most - 1, -most + 50, -most + 50}, trackerNew), 0);
    areas.SelectAll(&window);
    window.drag({{80, 80}, {90, 90}});
    EXPECT_EQ(areas.count(), 2);
    EXPECT_EQ(CWnd::GetCapture(), nullptr);
}

TEST(CollectionInAxis, DrawsShapesOfItsOwnClassesInsideTheGraphRectangle)
{
    AreasWindow<ATrackerArrayInAxis> window;
    ATrackerArrayInAxis& areas = *window.areas;
    ABAxis axis(-1, 1, nullptr, 0);
    axis.setGraphRect({50, 40, 250, 140});
    axis.setMinMax({0, 200, 0, 100});
    areas.SetAxis(&axis);
    const std::pair<int, const char*> tools[] = {{toolRect, "ARectTrackerInAxis"},
                                                 {toolRotateRect, "ARotateRectTrackerInAxis"},
                                                 {toolEllipse, "AEllipseTrackerInAxis"}};
    for (const auto& [tool, name] : tools) {
        areas.BeginMode(&window, tool);
        window.drag({{250, 140}, {100, 100}, {10, 10}});  // from the corner, which belongs to it
        ASSERT_GT(areas.count(), 0);
        ATracker& tracker = *areas.GetCurItem();
        EXPECT_STREQ(tracker.GetClassName(), name);
        ShapeValues shape;
        ASSERT_TRUE(areas.GetShape(areas.GetCurItemNo(), shape));
        const ARect<double> box = shapeBox(shape);
        EXPECT_EQ(box, (ARect<double>{0, 0, 200, 100})) << name;
    }
    areas.BeginMode(&window, toolArea);
    for (const CPoint p : {CPoint(60, 60), CPoint(250, 60), CPoint(60, 140)})
        window.drag({p});
    ASSERT_TRUE(areas.CloseArea(&window));
    EXPECT_STREQ(areas.GetCurItem()->GetClassName(), "AAreaTrackerInAxis");
    const std::string bytes = stored(areas);
    MemoryFile file(bytes);
    ATrackerArrayInAxis back;
    ASSERT_TRUE(back.Load(file));
    EXPECT_EQ(stored(back), bytes);
    window.drag({{251, 60}, {100, 100}});
    EXPECT_EQ(window.used, 0);
    EXPECT_TRUE(areas.Escape(&window));
    EXPECT_FALSE(areas.Escape(&window));
}

TEST(CollectionInAxis, TakesNoVertexWhereThePlotHasNoRoomLeft)
{
    struct : AreasWindow<ATrackerArrayInAxis> {
        ABAxis axis{1, -1, nullptr, 0};
        CRect painted{0, 0, 0, 0};
        void OnPaint() override { axis.setGraphRect(painted); }
    } window;
    ATrackerArrayInAxis& areas = *window.areas;
    areas.SetAxis(&window.axis);
    for (const CRect& painted : {CRect(0, 0, 0, 0), CRect(0, 0, 40, 30)}) {
        window.axis.setGraphRect({0, 0, 40, 30});
        window.axis.setMinMax({0, 1, 0, 1});
        window.painted = painted;
        areas.BeginMode(&window, toolArea);
        window.Invalidate();
        window.drag({{1, 1}, {20, 20}});  // paints before the first vertex
        EXPECT_EQ(areas.workingTracker() != nullptr, !painted.IsRectEmpty());
    }
    while (areas.Undo(&window)) {
    }
    EXPECT_FALSE(areas.workingTracker() || areas.CanUndo());
}

TEST(CollectionInAxis, UndoesRandomDragsToTheByte)
{
    AreasWindow<ATrackerArrayInAxis> window;
    ATrackerArrayInAxis& areas = *window.areas;
    ABAxis axis(1, -1, nullptr, 0);
    axis.setGraphRect({20, 20, 300, 220});
    axis.setMinMax({-1, 1, 3, 7});
    areas.SetAxis(&axis);
    std::mt19937 random(3);
    const auto point = [&] {
        return CPoint(static_cast<int>(random() % 320), static_cast<int>(random() % 240));
    };
    const auto round = [&] {
        const int tools[] = {0, 0, 0, toolRect, toolRotateRect, toolEllipse, toolArea, toolArea};
        const int tool = areas.workingTracker() ? int{toolArea} : tools[random() % 8];
        if (tool != areas.mode())
            areas.BeginMode(&window, tool);
        CPoint from = point();
        if (ATracker* const current = areas.GetCurItem(); current && tool == 0) {
            CRect box;
            current->GetTrueRect(&box);
            from = random() % 2 ? box.CenterPoint() : CPoint(box.left + 4, box.top + 4);
        }
        window.drag({from, point(), point()}, random() % 8 ? MK_LBUTTON : MK_LBUTTON | MK_CONTROL);
        if (random() % 4 == 0)
            window.doubleClick(point());
    };
    for (int i = 0; i < 20; ++i)
        round();
    areas.history().clear();
    const std::string before = stored(areas);
    for (int i = 0; i < 200; ++i)
        round();
    const std::string after = stored(areas);
    EXPECT_GT(areas.history().steps(), 50u);
    while (areas.Undo(&window)) {
    }
    EXPECT_EQ(stored(areas), before);
    while (areas.Redo(&window)) {
    }
    EXPECT_EQ(stored(areas), after);
}
