#include "axes/windows/axis_window_fixture.h"
#include "platform/clipboard.h"
#include "platform/message.h"

#include <cstddef>
#include <gtest/gtest.h>

using namespace pavane;

extern "C" std::size_t __sanitizer_get_current_allocated_bytes() __attribute__((weak));

namespace
{

int messages = 0;
int countMessages(const CString&, unsigned) { return ++messages, IDOK; }

/// The window's picture, or the one that it exports.
std::vector<std::uint32_t> picture(AxisWindow& window)
{
    CRect client;
    window.GetClientRect(client);
    CBitmap bitmap;
    bitmap.CreateBitmap(client.Width(), client.Height(), 1);
    CMemoryDC dc(bitmap);
    window.DrawPicture(dc, client);
    return {bitmap.bits(), bitmap.bits() + client.Width() * client.Height()};
}

/// Calls back when the message WM_USER is dispatched, in the middle of a drag.
struct Interrupted : AxisWindow {
    std::function<void()> interrupt;
    LRESULT WindowProc(unsigned message, WPARAM wParam, LPARAM lParam) override
    {
        if (message == WM_USER && interrupt) {
            const auto run = interrupt;  // may delete this
            run();
            return 0;
        }
        return AxisWindow::WindowProc(message, wParam, lParam);
    }
    /// Presses, moves, is interrupted, moves on and releases.
    void dragWithInterruption()
    {
        post(WM_MOUSEMOVE, at(20, 30));
        post(WM_USER, at(20, 30));
        post(WM_MOUSEMOVE, at(30, 40));
        post(WM_LBUTTONUP, at(30, 40), 0);
        const CPoint p = at(10, 10);
        SendMessage(WM_LBUTTONDOWN, MK_LBUTTON, MAKELPARAM(p.x, p.y));
    }
};

}  // namespace

TEST(AxisWindow, TellsWhatIsUnderThePointer)
{
    AxisWindow window;
    const AxisStatus status = window.StatusAt(window.at(12, 34));
    EXPECT_TRUE(status.inPlot);
    EXPECT_TRUE(status.inMap);
    EXPECT_EQ(CPoint(status.row, status.column), CPoint(12, 34));
    EXPECT_EQ(status.value, 12034.0f);
    EXPECT_NEAR(status.x, window.GetMap()->MPXtoRPX(34), 0.5);
    EXPECT_FALSE(status.hasAreas);
    EXPECT_FALSE(window.StatusAt(CPoint(-5000, 90000)).inPlot);
}

TEST(AxisWindow, KeepsCellsSquareAndRangeAndZoomWhenItIsSized)
{
    AxisWindow window;
    const int across = window.at(0, 60).x - window.at(0, 1).x;
    EXPECT_NEAR(across, window.at(0, 10).y - window.at(59, 10).y, 2);
    window.ZoomAbout(window.at(30, 40), 3);
    window.UpdateWindow();
    const TMinMax shown = window.GetAxis()->getMinMax();
    EXPECT_TRUE(window.IsRangeZoomed());
    for (const CSize size :
         {CSize{900, 300}, CSize{1, 1}, CSize{0, 0}, CSize{3, 700}, CSize{500, 500}}) {
        window.MoveWindow(CRect(0, 0, size.cx, size.cy));
        window.UpdateWindow();
        window.click(CPoint(size.cx / 2, size.cy / 2));
        EXPECT_EQ(window.GetAxis()->getMinMax(), shown) << size.cx;
    }
}

TEST(AxisWindow, KeepsThePlotInItsPlaceWhileItPans)
{
    AxisWindow window;
    window.ZoomAbout(window.at(30, 40), 6);
    for (int i = 0; i < 60; ++i) {
        window.Pan(0, i < 30 ? 9 : -9);
        window.UpdateWindow();
    }
    const CRect plot = window.GetAxis()->getGraphRect();  // the widest labels have been there
    for (int i = 0; i < 20; ++i) {
        window.Pan(0, 17);
        window.UpdateWindow();
        EXPECT_EQ(window.GetAxis()->getGraphRect(), plot);
    }
    // wheel turns that come before the paint are one drawing
    const int drawings = window.contentDrawings();
    for (int i = 0; i < 10; ++i)
        window.wheel(i % 2 ? 1 : -1, plot.CenterPoint(), MK_CONTROL);
    window.UpdateWindow();
    EXPECT_EQ(window.contentDrawings(), drawings + 1);
}

TEST(AxisWindow, ShowsTheSamePixelsWithACopyOfItsContentAndWithout)
{
    AxisWindow window;
    const std::vector<std::uint32_t> whole = window.pixels();
    window.ZoomAbout(window.at(30, 40), 3);
    window.Pan(40, -25);
    const std::vector<std::uint32_t> moved = window.pixels();  // without
    EXPECT_NE(moved, whole);
    const int drawings = window.contentDrawings();
    window.InvalidateRect(CRect(100, 100, 300, 200));
    EXPECT_EQ(window.pixels(), moved);
    window.ChooseTool(toolRect);
    window.drag({window.at(29, 35), window.at(31, 42)});
    EXPECT_NE(window.pixels(), moved);
    EXPECT_EQ(window.contentDrawings(), drawings + 1);
    window.Pan(9, 9);  // with
    window.Pan(-9, -9);
    window.key(VK_DELETE);
    EXPECT_EQ(window.pixels(), moved);
    window.ShowWholeMap();
    EXPECT_EQ(window.pixels(), whole);
}

TEST(AxisWindow, LeavesAreasOutOfPicturesUnlessAskedFor)
{
    AxisWindow window;
    const std::vector<std::uint32_t> empty = picture(window);
    window.ChooseTool(toolRect);
    window.drag({window.at(10, 10), window.at(40, 50)});
    window.SetCellOverlay(1);
    window.UpdateWindow();
    const CRect plot = window.GetAxis()->getGraphRect();
    EXPECT_EQ(picture(window), empty);
    EXPECT_EQ(window.GetAxis()->getGraphRect(), plot);
    window.SetAreasInPicture(1);
    const std::vector<std::uint32_t> marked = picture(window);
    EXPECT_NE(marked, empty);
    const CPoint corner = window.at(10, 10);
    const auto handle = static_cast<std::size_t>((corner.y + 2) * 640 + corner.x + 2);
    EXPECT_EQ(marked[handle], empty[handle]);
    const auto before = SetMessageFunction(countMessages);
    messages = 0;
    for (const int refusal : {1, 0}) {
        SetClipboardRefusal(refusal);
        window.SendMessage(WM_COMMAND, ID_COPY_TO_CLIPBOARD);
        EXPECT_EQ(messages, 1);
    }
    EXPECT_EQ(GetClipboardBitmapSize().cx, 640);
    SetMessageFunction(before);
}

TEST(AxisWindow, SurvivesWhateverHappensInADrag)
{
    Interrupted* window = nullptr;
    ATrackerArrayInAxis kept;
    struct Case {
        const char* what;
        std::function<void()> interrupt;
        int givesUp = 0;  ///< and the areas are as before the press
    };
    const Case cases[] = {
        {"closed", [&] { window->DestroyWindow(); }},
        {"parent closed", [&] { window->top.DestroyWindow(); }},
        {"another map", [&] { window->showMap(); }, 1},
        {"no map", [&] { window->SetAxis(nullptr, 0); }, 1},
        {"other areas", [&] { window->SetTrackers(nullptr, 0); }},
        {"areas of the host", [&] { window->SetTrackers(&kept, 0); }},
        {"cleared", [&] { window->GetTrackers()->Clear(window); }},
        {"capture lost", [] { CWnd::ReleaseCapture(); }, 1},
        {"sized", [&] { window->MoveWindow(CRect(0, 0, 1, 1)); }},
        {"key", [&] { window->key('M'); }},
        {"undo", [&] { window->key('Z', MK_CONTROL); }},
        {"deleted", [&] { delete window, window = nullptr; }},
    };
    for (const ToolMode tool : {toolRect, toolRotateRect, toolEllipse, toolArea, toolArrow})
        for (const Case& c : cases) {
            SCOPED_TRACE(testing::Message() << c.what << ", tool " << tool);
            window = new Interrupted;
            window->SetCellOverlay(1);
            window->ChooseTool(toolRect);
            window->drag({window->at(5, 5), window->at(15, 20)});
            window->ChooseTool(tool);
            window->interrupt = c.interrupt;
            ShapeValues before, after;
            window->GetTrackers()->GetShape(0, before);
            const std::string label(window->GetTrackers()->history().undoLabel());
            window->dragWithInterruption();
            AxisWindow::pump();
            EXPECT_EQ(CWnd::GetCapture(), nullptr);
            if (c.givesUp) {
                const ATrackerArrayInAxis& areas = *window->GetTrackers();
                EXPECT_TRUE(areas.GetShape(0, after) && after.rect == before.rect);
                EXPECT_TRUE(areas.trackerCount() == 1 && !areas.workingTracker());
                EXPECT_EQ(areas.history().undoLabel(), label);
            }
            delete window;
        }
}

TEST(AxisWindow, SaysOnceThatOldStepsWereGivenUp)
{
    AxisWindow window;
    window.areas().history().setByteLimit(1);
    for (int i = 0; i < 4; ++i)
        window.areas().Add(window.areas().GetNewTracker(toolRect), 1);
    ASSERT_EQ(window.notices.size(), 1u);
    EXPECT_NE(window.notices[0].find("oldest edits"), CString::npos);
}

TEST(AxisWindow, OpensAndClosesWithoutGrowing)
{
    const auto once = [] {
        AxisWindow window(30, 30, {200, 160});
        window.ChooseTool(toolRect);
        window.drag({window.at(5, 5), window.at(15, 20)});
        window.SetCellOverlay(1);
        window.UpdateWindow();
    };
    std::size_t before = 0;
    for (int i = 0; i < 200; ++i) {
        once();
        AxisWindow::runFor(1);
        if (i == 20 && __sanitizer_get_current_allocated_bytes)
            before = __sanitizer_get_current_allocated_bytes();
    }
    if (!__sanitizer_get_current_allocated_bytes)
        GTEST_SKIP() << "only the address sanitizer counts bytes";
    EXPECT_LT(__sanitizer_get_current_allocated_bytes(), before + 65536);
}
