#include "pavane/axes/ABAxis.h"
#include "pavane/resources/resource_ids.h"
#include "pavane/trackers/AAreaTracker.h"
#include "pavane/trackers/ARectTracker.h"
#include "pavane/trackers/ATrackerArrayInAxis.h"
#include "pavane/trackers/shape_handles.h"
#include "platform/controls.h"
#include "platform/message.h"
#include "platform/window_dc.h"

#include <gtest/gtest.h>

#include "trackers/stored_collection.h"

#include <functional>
#include <limits>
#include <map>
#include <memory>
#include <random>

using namespace pavane;
using namespace pavane::test;

namespace
{

/// A toolbar that only writes down what it is told.
struct Buttons : CWnd {
    std::map<unsigned, int> enabled;
    unsigned checked = 0;
    LRESULT WindowProc(unsigned message, WPARAM w, LPARAM l) override
    {
        if (message == TB_ENABLEBUTTON)
            enabled[static_cast<unsigned>(w)] = static_cast<int>(l);
        if (message == TB_CHECKBUTTON)
            checked = static_cast<unsigned>(w);
        return CWnd::WindowProc(message, w, l);
    }
};

void settle()
{
    MSG m;
    while (PeekMessage(m))
        (void)DispatchMessage(m);
}

struct PixelAreas : ATrackerArray {
    CComboBox* list = nullptr;
    CWnd* bar = nullptr;
    int changes = 0;
    CComboBox* GetComboBox(CWnd*) override { return list; }
    CWnd* GetToolBar(CWnd*) override { return bar; }
    void OnChanged() override { ++changes; }
};

/// A window of 320 x 240 that hands everything to a collection, as hosts do.
template <typename Areas>
class AreasWindow : public CWnd
{
public:
    static constexpr unsigned happening = WM_USER + 77;

    AreasWindow() : areas(new Areas)
    {
        (void)Create("areas", "Areas", WS_VISIBLE | WS_POPUP, {0, 0, 320, 240}, nullptr, 0);
    }
    std::unique_ptr<Areas> areas;
    std::function<void()> happens;  ///< when the message comes
    int used = -1;

    void post(unsigned message, CPoint p, unsigned keys = MK_LBUTTON)
    {
        (void)PostMessage(message, keys, MAKELPARAM(p.x, p.y));
    }
    /// Press, moves and release.
    void drag(const std::vector<CPoint>& way, unsigned keys = MK_LBUTTON)
    {
        post(WM_LBUTTONDOWN, way.front(), keys);
        for (const CPoint p : way)
            post(WM_MOUSEMOVE, p, keys);
        post(WM_LBUTTONUP, way.back(), keys);
        settle();
    }
    void doubleClick(CPoint p)
    {
        post(WM_LBUTTONDBLCLK, p);
        settle();
    }

    LRESULT WindowProc(unsigned message, WPARAM w, LPARAM l) override
    {
        if (message == happening && happens)
            happens();
        return CWnd::WindowProc(message, w, l);
    }

protected:
    void OnPaint() override
    {
        CPaintDC dc(this);
        if (areas)
            areas->Draw(&dc, this);
    }
    void OnLButtonDown(unsigned flags, CPoint p) override
    {
        if (areas)
            used = areas->OnLButtonDown(this, flags, p);
    }
    void OnLButtonDblClk(unsigned flags, CPoint p) override
    {
        if (areas)
            (void)areas->OnLButtonDblClk(this, flags, p);
    }
};

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
    EXPECT_EQ(lines(), (std::vector<std::string>{"Area 1", "Area 2", "Area 3", "Area 4"}));
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

TEST_F(PressedCollection, WaitsForTheDeadZoneAndMakesNoStepOfAClick)
{
    areas.Add(new ARectTracker({50, 50, 150, 150}, trackerNew), 1);
    areas.SetDeadZone(3);
    const auto steps = areas.history().steps();
    window.drag({{100, 100}, {102, 101}});
    EXPECT_EQ(rect(0), CRect(50, 50, 150, 150));
    EXPECT_EQ(areas.history().steps(), steps);
    window.drag({{100, 100}, {110, 101}});
    EXPECT_NE(rect(0), CRect(50, 50, 150, 150));
    EXPECT_EQ(areas.history().steps(), steps + 1);
}

TEST(CollectionDrag, EndsWellWhateverHappensInside)
{
    using Window = AreasWindow<PixelAreas>;
    const struct {
        const char* what;
        void (*happens)(Window&);
        int ends;  ///< the drag: the tracker is no longer the dragged one
    } cases[] = {
        {"load",
         [](Window& w) {
             MemoryFile file(stored(ATrackerArray()));
             EXPECT_TRUE(w.areas->Load(file));
         },
         1},
        {"clear", [](Window& w) { w.areas->Clear(&w); }, 1},
        {"end of work", [](Window& w) { w.areas->EndWorking(); }, 1},
        {"undo", [](Window& w) { EXPECT_FALSE(w.areas->Undo(&w)); }, 0},
        {"another mapping",
         [](Window& w) {
             w.areas->CheckMinMax({0, 0, 150, 100}, {0, 100, 0, 50}, 1, 1);
         },
         1},
        {"another press",
         [](Window& w) {
             EXPECT_FALSE(w.areas->OnLButtonDown(&w, 0, {10, 10}));
         },
         0},
        {"end of the window", [](Window& w) { w.DestroyWindow(); }, 1},
        {"end of the collection", [](Window& w) { w.areas.reset(); }, 1},
    };
    for (const int tool : {int{toolArrow}, int{toolRect}, int{toolEllipse}, int{toolArea}})
        for (const auto& c : cases) {
            SCOPED_TRACE(c.what + std::to_string(tool));
            Window window;
            window.areas->CheckMinMax({0, 0, 300, 200}, {0, 100, 0, 50}, 1, 1);
            window.areas->Add(new ARectTracker({40, 40, 120, 120}, trackerNew), 1);
            window.areas->BeginMode(&window, tool);
            const std::string before = stored(*window.areas);
            window.happens = [&] { c.happens(window); };
            window.post(WM_LBUTTONDOWN, {80, 80});
            window.post(WM_MOUSEMOVE, {95, 90});
            window.post(Window::happening, {});
            window.post(WM_MOUSEMOVE, {100, 100});
            window.post(WM_LBUTTONUP, {100, 100});
            settle();
            EXPECT_EQ(CWnd::GetCapture(), nullptr);
            if (!window.areas)
                continue;
            const int count = window.areas->count();
            EXPECT_LE(count, c.ends ? 1 : 2);
            while (window.areas->Undo(nullptr)) {
            }
            EXPECT_EQ(window.areas->count(), 0);
            while (window.areas->Redo(nullptr)) {
            }
            EXPECT_EQ(window.areas->count(), count);
        }
}

namespace
{

/// A window on the heap over a collection that outlives it.
struct GuestWindow : CWnd {
    explicit GuestWindow(ATrackerArray& shown) : areas(shown)
    {
        (void)Create("guest", "Guest", WS_VISIBLE | WS_POPUP, {0, 0, 320, 240}, nullptr, 0);
    }
    void OnLButtonDown(unsigned flags, CPoint p) override
    {
        (void)areas.OnLButtonDown(this, flags, p);
    }
    ATrackerArray& areas;
};

/// Deletes it when a message comes.
struct Deleter : CWnd {
    explicit Deleter(CWnd* doomed) : window(doomed)
    {
        (void)Create("deleter", "", WS_POPUP, {0, 0, 9, 9}, nullptr, 0);
    }
    LRESULT WindowProc(unsigned message, WPARAM w, LPARAM l) override
    {
        if (message == WM_USER)
            window.reset();
        return CWnd::WindowProc(message, w, l);
    }
    std::unique_ptr<CWnd> window;
};

}  // namespace

TEST(CollectionDrag, ForgetsAWindowThatIsDeletedInIt)
{
    for (const int tool : {int{toolArrow}, int{toolRect}, int{toolArea}})
        for (const int several : {0, 1}) {
            SCOPED_TRACE(tool);
            PixelAreas areas;
            areas.CheckMinMax({0, 0, 300, 200}, {0, 100, 0, 50}, 1, 1);
            areas.Add(new ARectTracker({40, 40, 120, 120}, trackerNew), 1);
            areas.Add(new ARectTracker({140, 40, 220, 120}, trackerNew), 0);
            if (several)
                areas.SelectAll(nullptr);
            areas.BeginMode(nullptr, tool);
            auto* const window = new GuestWindow(areas);
            Deleter deleter(window);
            const auto post = [&](unsigned message, CPoint p) {
                (void)window->PostMessage(message, MK_LBUTTON, MAKELPARAM(p.x, p.y));
            };
            post(WM_LBUTTONDOWN, {80, 80});
            post(WM_MOUSEMOVE, {95, 90});
            (void)deleter.PostMessage(WM_USER);
            settle();
            EXPECT_EQ(deleter.window, nullptr);
            EXPECT_EQ(areas.count(), 2);
            EXPECT_EQ(static_cast<ARectTracker*>(areas(0))->rect(), CRect(40, 40, 120, 120));
        }
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
