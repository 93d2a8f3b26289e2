#include "pavane/trackers/ARectTracker.h"
#include "pavane/trackers/ATrackerArray.h"

#include <gtest/gtest.h>

#include "trackers/areas_window.h"
#include "trackers/stored_collection.h"

#include <memory>

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
