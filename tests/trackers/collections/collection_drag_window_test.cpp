#include "pavane/axes/ABAxis.h"
#include "pavane/trackers/ARectTracker.h"
#include "pavane/trackers/ARPRectTracker.h"
#include "pavane/trackers/collections/ATrackerArray.h"
#include "pavane/trackers/collections/ATrackerArrayInAxis.h"
#include "platform/message.h"

#include <gtest/gtest.h>

#include "trackers/collections/areas_window.h"
#include "trackers/collections/stored_collection.h"

#include <memory>
#include <utility>

using namespace pavane;
using namespace pavane::test;

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

TEST(CollectionDrag, ForgetsAWindowThatIsDeletedInIt)
{
    for (const int tool : {int{toolArrow}, int{toolRect}, int{toolArea}})
        for (const int several : {0, 1}) {
            SCOPED_TRACE(tool);
            auto* window = new AreasWindow<PixelAreas>;
            const std::unique_ptr<PixelAreas> outlives(window->areas.get());
            PixelAreas& areas = *outlives;
            areas.CheckMinMax({0, 0, 300, 200}, {0, 100, 0, 50}, 1, 1);
            areas.Add(new ARectTracker({40, 40, 120, 120}, trackerNew), 1);
            areas.Add(new ARectTracker({140, 40, 220, 120}, trackerNew), 0);
            if (several)
                areas.SelectAll(nullptr);
            areas.BeginMode(nullptr, tool);
            window->happens = [&] {
                (void)window->areas.release();
                delete std::exchange(window, nullptr);
            };
            window->post(WM_LBUTTONDOWN, {80, 80});
            window->post(WM_MOUSEMOVE, {95, 90});
            window->post(window->happening, {});
            settle();
            EXPECT_EQ(window, nullptr);
            EXPECT_EQ(areas.count(), 2);
            EXPECT_EQ(static_cast<ARectTracker*>(areas(0))->rect(), CRect(40, 40, 120, 120));
        }
}

namespace
{

using MapAreas = AreasWindow<ATrackerArrayInAxis>;

/// Two areas and three corners of an open polygon on an axis whose values are its pixels.
class MapDrag : public testing::Test
{
protected:
    MapDrag() : areas(*window.areas)
    {
        axis.setGraphRect({0, 0, 300, 200});
        axis.setMinMax({0, 300, 0, 200});
        areas.SetAxis(&axis);
        for (const double x : {40.0, 140.0}) {
            auto* const rect = new ARPRectTracker;
            rect->SetRect({x, 40, x + 60, 120});
            areas.Add(rect, 1);
        }
    }
    void openPolygon(int corners)
    {
        areas.BeginMode(&window, toolArea);
        const CPoint at[] = {{20, 20}, {250, 20}, {250, 150}};
        for (int i = 0; i < corners; ++i)
            window.drag({at[i]});
    }
    std::string kept() const
    {
        MemoryFile file;
        EXPECT_TRUE(areas.StoreKept(file));
        return file.bytes();
    }
    ABAxis axis{1, -1, nullptr, 0};
    MapAreas window;
    ATrackerArrayInAxis& areas;
};

}  // namespace

TEST_F(MapDrag, PutsTheShapeBackAsSoonAsTheCaptureIsLost)
{
    const struct {
        const char* how;
        void (*take)(MapAreas&);
    } cases[] = {
        {"released", [](MapAreas&) { CWnd::ReleaseCapture(); }},
        {"another window", [](MapAreas& w) { w.other.SetCapture(), CWnd::ReleaseCapture(); }},
        {"a question", [](MapAreas&) { (void)AfxMessageBox("?"); }},
        {"disabled", [](MapAreas& w) { w.EnableWindow(0), w.EnableWindow(1); }},
        {"closed", [](MapAreas& w) { w.DestroyWindow(); }}};
    const MessageFunction before =
        SetMessageFunction([](const CString&, unsigned) { return IDOK; });
    for (const auto& c : cases)
        for (const int tool : {int{toolArrow}, int{toolRect}, int{toolArea}})
            for (const int several : {0, 1}) {
                SCOPED_TRACE(c.how + std::to_string(tool) + std::to_string(several));
                MapAreas own;
                (void)own.other.Create("other", "", WS_POPUP, {0, 0, 9, 9}, nullptr, 0);
                own.areas->SetAxis(&axis);
                MemoryFile file(stored(areas));
                ASSERT_TRUE(own.areas->Load(file));
                own.areas->ChangeActiveTrack(&own, 1);
                if (several)
                    own.areas->SelectAll(&own);
                own.areas->BeginMode(&own, tool);
                const std::string start = stored(*own.areas);
                std::string inside, after;
                own.happens = [&] {
                    inside = stored(*own.areas);
                    c.take(own);
                    after = stored(*own.areas);
                    // what comes before the loop wakes stays
                    if (tool == toolArea && !several)
                        own.areas->DeleteItems(0, 1);
                };
                own.post(WM_LBUTTONDOWN, {170, 80});
                own.post(WM_MOUSEMOVE, {190, 95});
                own.post(MapAreas::happening, {});
                settle();
                // the rectangles that a press refreshes are no part of the shape
                EXPECT_EQ(shapesOf(after), shapesOf(start));
                EXPECT_EQ(shapesOf(inside) != shapesOf(start), tool == toolArrow);
                EXPECT_EQ(own.areas->workingTracker(), nullptr);
                EXPECT_EQ(own.areas->count(), tool == toolArea && !several ? 1 : 2);
                EXPECT_EQ(CWnd::GetCapture(), nullptr);
            }
    (void)SetMessageFunction(before);
}

TEST_F(MapDrag, KeepsForACopyWhatACancelWouldLeave)
{
    for (const int corners : {0, 1, 2, 3})
        for (const int cancels : {0, 1}) {
            SCOPED_TRACE(corners * 10 + cancels);
            openPolygon(corners);
            if (!corners)
                areas.BeginMode(&window, toolArrow);
            const std::string start = kept();
            std::string inside;
            window.happens = [&] { inside = kept(); };
            window.post(WM_LBUTTONDOWN, {170, 80});
            window.post(WM_MOUSEMOVE, {190, 95});
            window.post(MapAreas::happening, {});
            if (cancels)
                (void)window.PostMessage(WM_KEYDOWN, VK_ESCAPE);
            window.post(WM_LBUTTONUP, {190, 95});
            settle();
            EXPECT_EQ(shapesOf(inside), shapesOf(start));
            EXPECT_EQ(shapesOf(kept()) == shapesOf(start), cancels != 0);

            MemoryFile file(kept());
            ATrackerArrayInAxis back;
            ASSERT_TRUE(back.Load(file));
            EXPECT_EQ(back.ReopenLast(nullptr), corners > 0);
            EXPECT_EQ(back.count(), 2);
            MemoryFile again;
            ASSERT_TRUE(back.StoreKept(again));
            EXPECT_EQ(again.bytes(), kept());
            if (corners) {
                EXPECT_EQ(back.mode(), toolArea);
                EXPECT_EQ(back.CloseArea(&window), corners - cancels > 1);
                while (back.Undo(nullptr)) {
                }
                EXPECT_TRUE(!back.workingTracker() && back.count() == 0);
                areas.BeginMode(&window, toolArea);
            }
        }
}
