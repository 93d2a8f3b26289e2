#include "pavane/windows/ASelRectAlt.h"
#include "platform/window_dc.h"

#include <cstdlib>
#include <gtest/gtest.h>
#include <vector>

using namespace pavane;

namespace
{

template <typename Window>
struct Noting : Window {
    CWnd top;
    std::vector<CRect> told;
    int ends = 0;
    explicit Noting(int flags)
    {
        this->SetFlag(flags, 1);
        top.Create("", "", WS_POPUP | WS_VISIBLE, CRect(0, 0, 100, 100), nullptr, 0);
        this->Create("", "", WS_CHILD | WS_VISIBLE, CRect(0, 0, 100, 100), &top, 0);
        this->UpdateWindow();
    }
    void DrawWindow(CDC& dc, CRect&, CRect& update) override
    {
        dc.FillSolidRect(update, RGB(255, 255, 255));
    }
    void SendAboutRect(CRect& sel) override { told.push_back(sel); }
    void mouse(unsigned message, int x, int y, unsigned keys = MK_LBUTTON)
    {
        this->SendMessage(message, keys, MAKELPARAM(x, y));
    }
};

struct Band : Noting<ASelRectAlt> {
    Band() : Noting(selectionBand) {}
    void SendRectAltTrackEnd() override { ++ends; }
};

COLORREF pixel(CWnd& window, int x, int y)
{
    CClientDC dc(&window);
    return dc.GetPixel(x, y);
}

}  // namespace

TEST(SelectionLines, AreDraggedAndStopBeforeTheOppositeEdge)
{
    Noting<ASelRectWnd> window(selectionShown);
    EXPECT_EQ(window.GetSelRect(), CRect(0, 0, 100, 100));
    window.mouse(WM_MOUSEMOVE, 1, 50, 0);
    EXPECT_EQ(GetCursor(), IDC_SIZEWE);
    window.mouse(WM_LBUTTONDOWN, 1, 50);
    window.mouse(WM_MOUSEMOVE, 30, 50);
    EXPECT_EQ(window.GetSelRect(), CRect(30, 0, 100, 100));
    EXPECT_EQ(pixel(window, 30, 50), 0u);
    window.mouse(WM_MOUSEMOVE, 180, 50);
    EXPECT_EQ(window.GetSelRect(), CRect(99, 0, 100, 100));
    window.mouse(WM_MOUSEMOVE, 30, 50);
    window.mouse(WM_LBUTTONUP, 30, 50, 0);
    EXPECT_EQ(window.told.size(), 3u);
    EXPECT_EQ(CWnd::GetCapture(), nullptr);
    // repainting a part leaves the inverted lines as they are
    window.InvalidateRect(CRect(20, 20, 60, 40));
    window.UpdateWindow();
    EXPECT_EQ(pixel(window, 30, 30), 0u);
}

TEST(SelectionLines, MoveTogetherAndKeepTheirSize)
{
    Noting<ASelRectWnd> window(selectionShown);
    for (const auto& [from, to] : {std::pair{CPoint(1, 50), CPoint(40, 50)}, {{70, 1}, {70, 60}}}) {
        window.mouse(WM_MOUSEMOVE, from.x, from.y, 0);
        window.mouse(WM_LBUTTONDOWN, from.x, from.y);
        window.mouse(WM_MOUSEMOVE, to.x, to.y);
        window.mouse(WM_LBUTTONUP, to.x, to.y, 0);
    }
    EXPECT_EQ(window.GetSelRect(), CRect(40, 60, 100, 100));
    window.mouse(WM_MOUSEMOVE, 70, 80, 0);
    window.mouse(WM_RBUTTONDOWN, 70, 80, MK_RBUTTON);  // without Shift: nothing
    EXPECT_EQ(CWnd::GetCapture(), nullptr);
    window.mouse(WM_RBUTTONDOWN, 70, 80, MK_RBUTTON | MK_SHIFT);
    window.mouse(WM_MOUSEMOVE, 50, 70, MK_RBUTTON);
    EXPECT_EQ(window.GetSelRect(), CRect(20, 50, 80, 90));
    window.mouse(WM_RBUTTONUP, 95, 70, 0);
    EXPECT_EQ(CWnd::GetCapture(), nullptr);
}

TEST(SelectionLines, CountARefusedMoveFromTheSamePoint)
{
    struct Choosy : Noting<ASelRectWnd> {
        using Noting::Noting;
        int IsValidMoveRect(CRect& candidate, int resize) override
        {
            const int wide = resize || std::abs(candidate.left - sel_.left) >= 10;
            return wide && ASelRectWnd::IsValidMoveRect(candidate, resize);
        }
    };
    Choosy window(selectionShown);
    window.mouse(WM_MOUSEMOVE, 1, 50, 0);
    window.mouse(WM_LBUTTONDOWN, 1, 50);
    window.mouse(WM_MOUSEMOVE, 40, 50);
    window.mouse(WM_LBUTTONUP, 40, 50, 0);
    window.mouse(WM_MOUSEMOVE, 70, 50, 0);
    window.mouse(WM_RBUTTONDOWN, 70, 50, MK_RBUTTON | MK_SHIFT);
    for (const int x : {64, 60})
        window.mouse(WM_MOUSEMOVE, x, 50, MK_RBUTTON);
    EXPECT_EQ(window.GetSelRect(), CRect(30, 0, 90, 100));
    window.mouse(WM_RBUTTONUP, 60, 50, 0);
}

TEST(SelectionLines, EndWithAWindowThatIsDeletedAtTheirNotice)
{
    struct Doomed : Noting<ASelRectAlt> {
        using Noting::Noting;
        void SendAboutRect(CRect&) override { delete this; }
    };
    for (const int flags : {selectionShown, selectionBand}) {
        auto* const window = new Doomed(flags);
        const HWND handle = window->GetSafeHwnd();
        window->mouse(WM_MOUSEMOVE, 1, 50, 0);
        SendMessage(handle, WM_LBUTTONDOWN, MK_LBUTTON, MAKELPARAM(1, 50));
        SendMessage(handle, WM_MOUSEMOVE, MK_LBUTTON, MAKELPARAM(30, 50));
        EXPECT_EQ(CWnd::FromHandle(handle), nullptr);
        EXPECT_EQ(CWnd::GetCapture(), nullptr);
    }
}

TEST(SelectionLines, WithoutAWidthAreNeitherDrawnNorTaken)
{
    Noting<ASelRectWnd> window(0);
    window.SetLineWidthLR(-1);
    window.SetFlag(selectionShown, 1);
    window.Invalidate();
    window.UpdateWindow();
    EXPECT_EQ(pixel(window, 0, 50), RGB(255, 255, 255));
    EXPECT_EQ(pixel(window, 50, 0), 0u);
    window.mouse(WM_MOUSEMOVE, 1, 50, 0);
    EXPECT_FALSE(window.IsFlagSet(selectionCursor));
    window.mouse(WM_LBUTTONDOWN, 1, 50);
    window.DestroyWindow();
    EXPECT_EQ(CWnd::GetCapture(), nullptr);
}

TEST(SelectionBand, IsDrawnFromThePressInAnyDirection)
{
    Band window;
    EXPECT_EQ(window.GetSelRect(), CRect(-1, -1, -1, -1));
    EXPECT_EQ(pixel(window, 50, 50), RGB(255, 255, 255));
    window.mouse(WM_LBUTTONDOWN, 50, 50);
    window.mouse(WM_MOUSEMOVE, 20, 80);
    window.mouse(WM_MOUSEMOVE, 20, 80);  // the same again is no change
    EXPECT_EQ(window.told, (std::vector<CRect>{{50, 50, 50, 50}, {50, 50, 20, 80}}));
    EXPECT_EQ(pixel(window, 20, 70), 0u);
    window.mouse(WM_MOUSEMOVE, -30, 300);
    EXPECT_EQ(window.GetSelRect(), CRect(50, 50, 0, 100));
    window.mouse(WM_LBUTTONUP, -30, 300, 0);
    EXPECT_EQ(window.ends, 1);
    EXPECT_EQ(CWnd::GetCapture(), nullptr);
    window.mouse(WM_LBUTTONDOWN, 10, 10);
    EXPECT_EQ(pixel(window, 50, 70), RGB(255, 255, 255));  // the first one is gone
    window.mouse(WM_LBUTTONUP, 10, 10, 0);
}
