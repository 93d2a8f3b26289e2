// Colours of a map that the right button plays with.
#include "pavane/axes/maps/AAxisColorOP.h"
#include "pavane/axes/maps/ColorLook.h"
#include "pavane/axes/windows/PlayDrag.h"
#include "platform/picture.h"
#include "tests/axes/windows/axis_window_fixture.h"

#include <gtest/gtest.h>

using namespace pavane;

namespace
{

/// The window of a map with its bar that is played with, and counts its menus.
struct PlayedWindow : AxisWindow {
    int menus = 0, told = 0, heard = 0;
    PlayedWindow()
    {
        SetColorBar(new AAxisColorOP(*GetColorsGraph()), 1);
        SetPlayByMouse(1);
        SetColorsListener([this] { ++heard; });
        (void)pixels();
    }
    void amContextMenu(CPoint, unsigned) override { ++menus; }
    void OnColorsChanged() override { ++told; }
    const AColorPlay& play() const { return GetColorsGraph()->GetColorPlay(); }
    void right(unsigned message, CPoint p, unsigned keys = MK_RBUTTON)
    {
        SendMessage(message, keys, MAKELPARAM(p.x, p.y));
    }
    CPoint middle() const { return GetAxis()->getGraphRect().CenterPoint(); }
    /// Presses in the middle and goes on by so many pixels.
    void drag(int right, int up, unsigned keys = MK_RBUTTON)
    {
        this->right(WM_RBUTTONDOWN, middle());
        this->right(WM_MOUSEMOVE, {middle().x + right / 2, middle().y - up}, keys);
        this->right(WM_MOUSEMOVE, {middle().x + right, middle().y - up}, keys);
    }
    void release() { right(WM_RBUTTONUP, middle(), 0); }
    std::vector<std::uint32_t> copied()
    {
        CPicture picture(640, 480);
        DrawPicture(*picture.dc(), CRect(0, 0, 640, 480));
        std::vector<std::uint32_t> pixels;
        for (int i = 0; i < 640 * 480; ++i)
            pixels.push_back(picture.dc()->GetPixel(i % 640, i / 640));
        return pixels;
    }
};

}  // namespace

TEST(PlayDrag, SetsBiasAcrossAndContrastUp)
{
    struct Case {
        AColorPlay before;
        int right, up, fine;
        double contrast, bias;
    };
    const Case cases[] = {
        {{1, 0.5, 2, 1}, 50, 0, 0, 1, 0.75},     {{2, 0.5, 1, 0}, 0, 100, 0, 20, 0.5},
        {{2, 0.5, 1, 0}, -100, -100, 0, 0.2, 0}, {{1, 0.5, 1, 0}, 40, 0, 1, 1, 0.52},
        {{-1, 0.5, 1, 0}, 0, 100, 0, -10, 0.5},  {{0, 0.5, 1, 0}, 20, 0, 0, 0, 0.6},
        {{0, 0.5, 1, 0}, 0, 100, 0, 0.1, 0.5},   {{1e9, 0.5, 1, 0}, 0, -100, 0, 100, 0.5},
        {{1, 0.5, 1, 0}, 0, -900, 0, 0.01, 0.5},
    };
    for (const Case& c : cases) {
        PlayDrag drag;
        EXPECT_FALSE(drag.moveTo({1, 1}, 0));
        drag.press({10, 10}, {200, 100}, c.before);
        EXPECT_FALSE(drag.moveTo({12, 8}, 0));
        EXPECT_TRUE(drag.isWaiting());
        EXPECT_TRUE(drag.moveTo({10 + c.right, 10 - c.up}, c.fine));
        EXPECT_NEAR(drag.play().contrast, c.contrast, 1e-9);
        EXPECT_NEAR(drag.play().bias, c.bias, 1e-9);
        EXPECT_EQ(drag.play().gamma, c.before.gamma);
        EXPECT_EQ(drag.play().invert, c.before.invert);
    }
}

TEST(PalettePlay, ADragLooksLikeAFreshDrawingAndIsOneStepOfTheViews)
{
    PlayedWindow window, fresh;
    const auto before = window.pixels();
    const auto copiedBefore = window.copied();
    window.drag(60, 40);
    const AColorPlay played = window.play();
    EXPECT_GT(played.bias, 0.5);
    EXPECT_GT(played.contrast, 1);
    ColorLook look(*fresh.GetColorsGraph());
    look.play = played;
    look.give(*fresh.GetColorsGraph());
    fresh.ContentChanged();
    const auto shown = window.pixels();
    EXPECT_EQ(shown, fresh.pixels());
    EXPECT_NE(shown, before);
    EXPECT_EQ(window.copied(), copiedBefore);  // what is not settled is on the screen only
    EXPECT_EQ(window.play(), played);
    window.release();
    EXPECT_EQ(window.pixels(), shown);
    EXPECT_NE(window.copied(), copiedBefore);
    EXPECT_EQ(window.menus, 0);
    EXPECT_EQ(window.told, 3);
    EXPECT_EQ(window.heard, 3);
    EXPECT_NE(CWnd::GetCapture(), &window);
    look.range = {100, 20000};
    look.scale = MapScaleKind::squareRoot;
    look.colours = {RGB(0, 0, 0), RGB(250, 250, 0), RGB(255, 255, 255)};
    window.BeginView();
    window.ShowColorLook(look);
    window.EndView();
    const auto last = window.pixels();
    for (int i = 0; i < 2; ++i) {
        window.ViewBack();
        EXPECT_EQ(window.pixels(), shown);
        window.ViewBack();
        EXPECT_EQ(window.pixels(), before);
        EXPECT_FALSE(window.CanViewBack());
        window.ViewForward();
        EXPECT_EQ(window.pixels(), shown);
        window.ViewForward();
        EXPECT_EQ(window.pixels(), last);
        EXPECT_EQ(ColorLook(*window.GetColorsGraph()), look);
    }
    EXPECT_EQ(ColorLook::of(look.values()), look);
    for (const std::vector<double>& none :
         {std::vector<double>{}, {1, 2, 99, std::nan(""), 0, 0, 0, -5, 1e99}, {1, 2}})
        EXPECT_EQ(ColorLook::of(none).play, AColorPlay());
}

TEST(PalettePlay, IsTakenBackOrGivenUp)
{
    struct Case {
        const char* what;
        void (*end)(PlayedWindow&);
    };
    const Case cases[] = {
        {"Escape", [](PlayedWindow& w) { w.key(VK_ESCAPE); }},
        {"left button", [](PlayedWindow& w) { w.right(WM_LBUTTONDOWN, w.middle(), MK_RBUTTON); }},
        {"capture lost", [](PlayedWindow&) { CWnd::ReleaseCapture(); }},
        {"another map", [](PlayedWindow& w) { w.SetMap(w.GetMap()); }},
        {"another axis", [](PlayedWindow& w) { w.showMap(); }},
        {"play switched off", [](PlayedWindow& w) { w.SetPlayByMouse(0); }},
    };
    for (const Case& c : cases) {
        SCOPED_TRACE(c.what);
        PlayedWindow window;
        const auto before = window.pixels();
        window.drag(50, -30);
        c.end(window);
        EXPECT_TRUE(window.play().isNeutral());
        const auto after = window.pixels();
        EXPECT_TRUE(after == before || c.what == std::string("another axis"));  // without its bar
        window.release();
        const int isUsers = c.what == std::string("Escape") || c.what == std::string("left button");
        EXPECT_EQ(window.menus, isUsers ? 0 : 1);
        EXPECT_FALSE(window.CanViewBack());
    }
    PlayedWindow closed;
    closed.drag(50, 50);
    closed.DestroyWindow();
    EXPECT_TRUE(closed.play().isNeutral());
}

TEST(PalettePlay, LeavesTheMenuAndAreasAlone)
{
    PlayedWindow window;
    window.right(WM_RBUTTONDOWN, window.middle());
    window.right(WM_MOUSEMOVE, {window.middle().x + 2, window.middle().y - 2});
    window.release();
    EXPECT_EQ(window.menus, 1);
    EXPECT_EQ(window.told, 0);
    window.right(WM_RBUTTONDOWN, {1, 1});  // beside the plot
    window.right(WM_MOUSEMOVE, {30, 30});
    window.right(WM_RBUTTONUP, {30, 30}, 0);
    EXPECT_EQ(window.menus, 2);
    EXPECT_TRUE(window.play().isNeutral());
    window.ChooseTool(toolRect);  // the right button cancels the shape, and nothing else
    window.post(WM_MOUSEMOVE, window.at(30, 40));
    window.post(WM_RBUTTONDOWN, window.at(30, 40), MK_LBUTTON | MK_RBUTTON);
    window.click(window.at(10, 10));
    window.right(WM_MOUSEMOVE, window.at(20, 60));
    window.release();
    EXPECT_EQ(window.areas().trackerCount(), 0);
    EXPECT_TRUE(window.play().isNeutral());
    window.right(WM_RBUTTONDBLCLK, window.middle());
    window.right(WM_MOUSEMOVE, {window.middle().x + 20, window.middle().y});
    window.release();
    EXPECT_FALSE(window.play().isNeutral());
    window.SetPlayByMouse(0);
    const int menus = window.menus;
    const AColorPlay play = window.play();
    window.drag(50, 50);
    window.release();
    EXPECT_EQ(window.play(), play);
    EXPECT_EQ(window.menus, menus + 1);
}
