// What presses of a pointer find, take and close in an axis window.
#include "axes/windows/axis_window_fixture.h"
#include "pavane/axes/windows/AAreaSelectDlg.h"
#include "pavane/resources/tracker_messages.h"
#include "pavane/trackers/ARectTracker.h"
#include "pavane/trackers/ARPRectTracker.h"
#include "pavane/trackers/collections/ATrackerArray.h"
#include "platform/message.h"
#include "tests/trackers/made_tracker.h"

#include <gtest/gtest.h>
#include <memory>
#include <set>

using namespace pavane;

namespace
{

struct PointerWindow : AxisWindow {
    std::size_t corners(int i)
    {
        ShapeValues shape;
        return areas().GetShape(i, shape) ? shape.points.size() : 0;
    }
    /// A polygon of those corners as the current area.
    void polygon(std::initializer_list<CPoint> points)
    {
        ChooseTool(toolArea);
        for (const CPoint p : points)
            click(p);
        (void)areas().CloseArea(this);
    }
    std::pair<int, int> focus() { return {areas().focusItem(), areas().focusHandle()}; }
    void rightClick(CPoint p)
    {
        ClientToScreen(p);
        SendMessage(WM_CONTEXTMENU, 0, MAKELPARAM(p.x, p.y));
    }
    int GetMenuID() override { return 0; }
};

/// Shapes in pixels, and in values that are the same.
std::vector<std::unique_ptr<ATracker>> shapesInPixels(const std::string& kind)
{
    const ShapeValues shape{
        {}, {100, 100, 200, 200}, 0, {{100, 100}, {200, 100}, {200, 200}, {100, 200}}};
    std::vector<std::unique_ptr<ATracker>> shapes;
    for (const std::string prefix : {"A", "ARP"}) {
        shapes.push_back(test::madeTracker(prefix + kind, shape));
        shapes.back()->SetStyle(shapes.back()->GetStyle() | trackerReady);
    }
    return shapes;
}

}  // namespace

TEST(PointerCatch, FindsVerticesAndEdgesAsFarAwayAsTheHostWants)
{
    const char *const polygon = "AreaTracker", *rectangle = "RectTracker",
                      *ellipse = "EllipseTracker";
    const struct {
        const char* kind;
        int vertex, edge;
        CPoint p;
        int code;
    } cases[] = {
        // as trackers are at first: handles of 6 pixels and the inside
        {polygon, 0, 0, {98, 98}, 2},     {polygon, 0, 0, {95, 95}, -1},
        {polygon, 0, 0, {106, 106}, 1},   {polygon, 0, 0, {150, 97}, -1},
        {polygon, 8, 4, {95, 95}, 2},                                      // 7.07 away
        {polygon, 8, 4, {92, 100}, 2},                                     // 8
        {polygon, 8, 4, {94, 94}, -1},                                     // 8.5
        {polygon, 8, 4, {205, 205}, 4},   {polygon, 8, 4, {106, 105}, 2},  // inside too
        {polygon, 8, 4, {106, 106}, 1},   {polygon, 8, 4, {150, 96}, 1},
        {polygon, 8, 4, {150, 95}, -1},   {polygon, 8, 4, {204, 150}, 1},
        {polygon, 60, 0, {140, 130}, 1},  // in a small polygon there is room to move it by
        {polygon, 60, 0, {155, 95}, 3},   // the nearer of two
        {rectangle, 0, 0, {150, 97}, -1}, {rectangle, 8, 4, {130, 97}, 8},
        {rectangle, 8, 4, {130, 95}, -1}, {ellipse, 0, 0, {113, 113}, -1},
        {ellipse, 8, 4, {113, 113}, 1},   {ellipse, 8, 4, {108, 108}, -1},
    };
    for (const auto& c : cases)
        for (const auto& shape : shapesInPixels(c.kind)) {
            shape->SetCatch(c.vertex, c.edge);
            EXPECT_EQ(shape->HitTest(c.p, nullptr), c.code)
                << shape->GetClassName() << " at " << c.p.x << ", " << c.p.y;
        }
    // among so many that they are found by an index
    ATrackerArray many;
    many.SetCatch(8, 4);
    for (int i = 0; i < 400; ++i)
        many.Add(new ARectTracker({1000 + 40 * (i % 20), 1000 + 40 * (i / 20), 1020 + 40 * (i % 20),
                                   1020 + 40 * (i / 20)},
                                  trackerNew),
                 0);
    many.Add(static_cast<ABaseTracker*>(shapesInPixels(polygon)[0].release()), 0);
    EXPECT_EQ(many.TopmostAt({95, 95}, nullptr), 400);
    many.SetCatch(0, 0);
    EXPECT_EQ(many.TopmostAt({95, 95}, nullptr), -1);
}

TEST(PointerFocus, IsWithTheVertexThatWasPressedAndDeleteTakesIt)
{
    PointerWindow window;
    const CPoint corner[] = {window.at(10, 10), window.at(10, 50), window.at(40, 50),
                             window.at(40, 10)};
    const CPoint inside = window.at(25, 30);
    const std::pair<int, int> none(-1, -1);
    window.polygon({corner[0], corner[1], corner[2], corner[3]});
    ASSERT_EQ(window.areas().trackerCount(), 1);
    for (int i = 0; i < 4; ++i) {
        window.click(corner[i]);
        EXPECT_EQ(window.focus(), std::pair(0, i));
    }
    window.click(inside);
    EXPECT_EQ(window.focus(), none);
    window.drag({corner[2], corner[2] + CPoint(9, 9), corner[2] + CPoint(20, 5)});
    EXPECT_EQ(window.focus(), std::pair(0, 2));
    window.key(VK_DELETE);
    EXPECT_EQ(window.corners(0), 3u);
    EXPECT_TRUE(window.notices.empty());
    window.click(corner[1]);
    window.key(VK_DELETE);  // a triangle keeps its corners, and says so
    EXPECT_EQ(window.corners(0), 3u);
    EXPECT_EQ(window.notices, std::vector<CString>{threeVerticesStay});
    window.click(window.at(20, 20));
    window.key(VK_DELETE);
    EXPECT_EQ(window.areas().trackerCount(), 0);
    // handles of other shapes are no vertices: Delete takes the area
    window.ChooseTool(toolRect);
    window.drag({corner[0], corner[2]});
    window.click(corner[0]);
    EXPECT_EQ(window.focus(), none);
    window.key(VK_TAB);
    window.key(VK_TAB);
    EXPECT_EQ(window.focus(), std::pair(0, 0));
    EXPECT_TRUE(window.DeleteFocused());
    EXPECT_EQ(window.areas().trackerCount(), 0);
}

TEST(PointerClosing, FollowsTheSettingsOfTheHost)
{
    const struct {
        int firstCloses, fewest, corners;
        CPoint offset;  ///< of the press from the first vertex
        int areas;      ///< after it, and after a double click there instead
        int byDouble;
    } cases[] = {{0, 1, 3, {1, 1}, 0, 1}, {0, 1, 1, {60, 60}, 0, 1}, {1, 3, 1, {1, 1}, 0, 0},
                 {1, 3, 2, {1, 1}, 0, 0}, {1, 3, 3, {5, 5}, 1, 1},   {1, 3, 3, {7, 7}, 0, 1},
                 {1, 3, 4, {0, -8}, 1, 1}};
    for (const auto& c : cases)
        for (const int twice : {0, 1}) {
            SCOPED_TRACE(testing::Message() << c.corners << " corners, " << c.offset.x << twice);
            PointerWindow window;
            window.areas().SetCatch(8, 4);
            window.areas().SetFirstVertexCloses(c.firstCloses);
            window.areas().SetFewestCorners(c.fewest);
            window.ChooseTool(toolArea);
            const CPoint corner[] = {window.at(10, 10), window.at(10, 50), window.at(40, 50),
                                     window.at(40, 10)};
            for (int i = 0; i < c.corners; ++i)
                window.click(corner[i]);
            if (twice)
                window.doubleClick(corner[0] + c.offset);
            else
                window.click(corner[0] + c.offset);
            EXPECT_EQ(window.areas().trackerCount(), twice ? c.byDouble : c.areas);
            EXPECT_EQ(window.areas().workingTracker() == nullptr,
                      window.areas().trackerCount() == 1);
            if (window.areas().trackerCount() == 1) {
                EXPECT_EQ(window.corners(0), static_cast<std::size_t>(c.corners));
            }
        }
}

TEST(PointerStatus, FollowsADragWhetherCellsAreShownOrNot)
{
    std::vector<std::int64_t> seen[2];
    for (const int shown : {0, 1}) {
        PointerWindow window;
        window.SetCellOverlay(shown);
        window.ChooseTool(toolRect);
        window.statuses.clear();
        window.drag({window.at(5, 5), window.at(10, 12), window.at(20, 30), window.at(30, 60)});
        window.drag({window.at(30, 60), window.at(25, 50), window.at(12, 20)});
        for (const AxisStatus& status : window.statuses)
            if (status.hasAreas)
                seen[shown].push_back(status.cells);
        EXPECT_EQ(seen[shown].back(), window.mask().count());
    }
    EXPECT_EQ(seen[0], seen[1]);
    EXPECT_GE(std::set<std::int64_t>(seen[0].begin(), seen[0].end()).size(), 5u);
}

TEST(PointerStatus, FollowsManyThatMoveTogetherOrWaitsForAPauseWhenTheyAreVeryMany)
{
    struct Moving : PointerWindow {
        std::vector<double> sums;  ///< that were shown in the drag
        CPoint to;
        int rests = 0;
        void OnStatus(const AxisStatus& status) override
        {
            if (GetCapture() == this)
                sums.push_back(status.sum);
        }
        void OnTimer(unsigned id) override
        {
            PointerWindow::OnTimer(id);
            ++rests;
            post(WM_LBUTTONUP, to, 0);
        }
    };
    for (const int n : {3, 1001}) {
        SCOPED_TRACE(n);
        Moving window;
        window.areas().BeginEdits("Setup");
        for (int i = 0; i < n; ++i) {
            auto* const rect = new ARPRectTracker;
            const double x = window.GetMap()->MPXtoRPX(i % 60);
            const double y = window.GetMap()->MPYtoRPY(i / 60);
            rect->SetRect({x, y, x - 1.2, y + 2});
            (void)window.areas().Add(rect, 0);
        }
        window.areas().EndEdits(&window);
        window.areas().SelectAll(&window);
        window.UpdateWindow();
        const CPoint from = window.at(1, 1);
        ASSERT_TRUE(window.areas().IsSelected(window.areas().TopmostAt(from, &window)));
        window.to = from + CPoint(90, -60);
        window.post(WM_MOUSEMOVE, from + CPoint(0, -30));
        window.post(WM_MOUSEMOVE, window.to);
        if (n == 3)
            window.post(WM_LBUTTONUP, window.to, 0);
        window.SendMessage(WM_LBUTTONDOWN, MK_LBUTTON, MAKELPARAM(from.x, from.y));
        double sum = 0;
        const ABitMatrix mask = window.mask();
        for (int i = 0; i < 60 * 80; ++i)
            sum +=
                mask.get(i / 80, i % 80) ? static_cast<double>(window.map.row(i / 80)[i % 80]) : 0;
        ASSERT_FALSE(window.sums.empty());
        EXPECT_NEAR(window.sums.back(), sum, 1e-9 * sum);
        EXPECT_EQ(window.rests, n == 3 ? 0 : 1);
        EXPECT_EQ(window.areas().history().undoLabel(), "Move of " + std::to_string(n) + " areas");
    }
}

TEST(PointerMenu, MakesTheAreaUnderItCurrentAlsoWhenItWasLeft)
{
    PointerWindow window;
    for (const int row : {5, 30}) {
        window.ChooseTool(toolRect);
        window.drag({window.at(row, 10), window.at(row + 15, 40)});
    }
    for (const int i : {1, 0}) {  // the current one, left by Escape, and another
        window.key(VK_ESCAPE);
        ASSERT_TRUE(window.areas().SelectedItems().empty());
        window.rightClick(window.at(i ? 36 : 12, 20));
        EXPECT_EQ(window.areas().SelectedItems(), std::vector<int>{i});
    }
    window.key('A', MK_CONTROL);
    window.rightClick(window.at(36, 20));  // one of several leaves them chosen
    EXPECT_EQ(window.areas().SelectedItems().size(), 2u);
}

TEST(PointerZoom, CountsQuickClicksOneEach)
{
    PointerWindow window;
    const CPoint at = window.at(30, 40);
    window.ChooseTool(toolZoomIn);
    for (int i = 0; i < 4; ++i)
        if (i % 2)
            window.doubleClick(at);
        else
            window.click(at);
    EXPECT_EQ(window.areas().zoomHistory().count(), 4);
}

TEST(AreaCollection, TellsOfWhatEndWorkingChanges)
{
    PointerWindow window;
    window.ChooseTool(toolArea);
    window.click(window.at(10, 10));
    window.changes = 0;
    window.areas().EndWorking();
    EXPECT_EQ(window.changes, 1);
    window.ChooseTool(toolRect);
    window.drag({window.at(10, 10), window.at(20, 20)});
    window.changes = 0;
    window.areas().EndWorking();  // nothing is active any more
    window.areas().EndWorking();
    EXPECT_EQ(window.changes, 1);
}

TEST(AreaDialog, LeavesNoTraceInTheHistoryWhenItIsCancelled)
{
    const auto add = [](ATrackerArrayInAxis& areas) {
        ABTracker* const rect = areas.GetNewTracker(toolRect);
        static_cast<ARPRectTracker*>(rect)->SetRect({1, 2, 3 + areas.trackerCount() * 1.0, 4});
        areas.Add(rect, 1);
    };
    const struct {
        const char* what;
        int saved;  ///< the areas when the dialog opens
        std::function<void(ATrackerArrayInAxis&)> edit;
        std::size_t steps, undoable;  ///< afterwards
    } cases[] = {
        {"nothing", 1, [](auto&) {}, 3, 2},
        {"edits", 1, [&](auto& a) { add(a), a.Clear(nullptr), add(a); }, 2, 2},
        {"undo goes no further back", 1, [](auto& a) { a.Undo(nullptr), a.Undo(nullptr); }, 3, 2},
        {"unsaved before", 0, [&](auto& a) { add(a), a.Undo(nullptr), a.Undo(nullptr); }, 2, 2},
        {"redo of an older step", 1, [&](auto& a) { a.Redo(nullptr), add(a); }, 3, 2},
        {"steps given up", 1, [&](auto& a) { a.history().setByteLimit(1), add(a), add(a); }, 0, 0},
        {"steps given up, unsaved", 0, [&](auto& a) { a.history().setByteLimit(1), add(a); }, 0, 0},
    };
    const auto before = SetMessageFunction([](const CString&, unsigned) { return int{IDYES}; });
    for (const auto& c : cases) {
        SCOPED_TRACE(c.what);
        PointerWindow other;  // has the axis
        ATrackerArrayInAxis areas;
        AAreaSelectDlg dialog;
        dialog.window().axisWnd().SetAxis(other.GetAxis(), 0);
        dialog.window().axisWnd().SetTrackers(&areas, 0);
        for (int i = 0; i < 3; ++i)
            add(areas);
        areas.Undo(nullptr);
        if (c.saved)
            areas.SetSaved();
        ASSERT_TRUE(dialog.CreateModeless());
        c.edit(areas);
        dialog.SendMessage(WM_CLOSE);
        EXPECT_EQ(areas.trackerCount(), 2);
        EXPECT_EQ(areas.IsModified(), !c.saved);
        EXPECT_EQ(areas.history().steps(), c.steps);
        EXPECT_EQ(areas.history().undoSteps(), c.undoable);
        EXPECT_EQ(areas.Undo(nullptr), c.undoable > 0);  // no floor is left behind
        dialog.window().axisWnd().SetTrackers(nullptr, 0);
        dialog.window().axisWnd().SetAxis(nullptr, 0);
    }
    SetMessageFunction(before);
}
