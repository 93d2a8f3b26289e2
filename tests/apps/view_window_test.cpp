// What the window of pavane-view shows and where it stands.
#include "pavane/axes/maps/AColorsGraph.h"
#include "platform/clipboard.h"
#include "tessel/paths.h"
#include "tests/apps/view_window_fixture.h"

#include <functional>
#if defined(__SANITIZE_ADDRESS__)
extern "C" std::size_t __sanitizer_get_current_allocated_bytes();
#endif

namespace pavane
{

TEST_F(ViewWindow, PicturesShowTheZoomAndAreasOnlyWhenAsked)
{
    MainWindow window;
    open(window);
    const auto picture = [&](const char* name) {
        fileAnswer = path(name);
        window.SendMessage(WM_COMMAND, idSavePicture);
        std::ifstream in(fileAnswer, std::ios::binary);
        return std::string(std::istreambuf_iterator<char>(in), {});
    };
    const std::string plain = picture("plain.svg");
    ASSERT_FALSE(plain.empty());
    addArea(window, 20);
    EXPECT_EQ(picture("hidden.svg"), plain);
    window.SendMessage(WM_COMMAND, idAreasInPictures);
    EXPECT_GT(picture("areas.svg").size(), plain.size());
    window.SendMessage(WM_COMMAND, idAreasInPictures);
    window.SendMessage(WM_COMMAND, idContours);
    EXPECT_LT(picture("bare.svg").size(), plain.size());
    window.SendMessage(WM_COMMAND, idContours);
    window.SendMessage(WM_COMMAND, idZoomIn);
    EXPECT_NE(picture("zoomed.svg"), plain);
    window.SendMessage(WM_COMMAND, ID_WHOLE_MAP);
    EXPECT_EQ(picture("whole.svg"), plain);
    EXPECT_TRUE(said.empty());
}

TEST_F(ViewWindow, CopiesItsPictureByCommandMenuAndKeyUnderOneName)
{
    MainWindow window;
    open(window);
    const CRect whole = clientOf(window.view());
    const std::function<void()> ways[] = {
        [&] { window.SendMessage(WM_COMMAND, ID_COPY_TO_CLIPBOARD); },
        [&] { window.view().SendMessage(WM_COMMAND, ID_COPY_TO_CLIPBOARD); },
        [&] {
            SetKeyStateOverride(MK_CONTROL);
            window.view().SendMessage(WM_KEYDOWN, 'C');
            SetKeyStateOverride(-1);
        }};
    for (const auto& way : ways) {
        ASSERT_TRUE(SetClipboardText("before"));
        way();
        EXPECT_EQ(GetClipboardBitmapSize().cx, whole.Width());
        EXPECT_EQ(GetClipboardBitmapSize().cy, whole.Height());
    }
    CMenu library;
    ASSERT_TRUE(library.LoadMenu(window.view().GetMenuID()));
    CMenu* const popup = library.GetSubMenu(0);
    window.view().amMenuParse(popup);
    std::string texts;
    for (const CMenu::Line& line : popup->lines())
        texts += line.text + "|";
    EXPECT_NE(texts.find("|Copy &picture\tCtrl+C|Save p&icture...\tCtrl+Shift+P|"),
              std::string::npos)
        << texts;
    // both ways to save ask for the same kinds of pictures
    for (const char* name : {"context.pdf", "context.svg"}) {
        fileAnswer = path(name);
        window.view().SendMessage(WM_COMMAND, ID_COPY_TO_BMP);
        EXPECT_TRUE(IsFileExists(fileAnswer)) << name;
    }
    EXPECT_TRUE(said.empty());
}

TEST_F(ViewWindow, ShowsItselfWhereAHiddenOneWasKept)
{
    for (const char* kept : {"0,0,-1,-1,-1,-1,90,80,690,480", "0,6,-1,-1,-1,-1,90,80,690,480",
                             "0,1,-1,-1,-1,-1,90,80,190,120"}) {
        WriteProfileString("pavane-view", "WindowPos", kept);
        MainWindow window;
        open(window);
        EXPECT_TRUE(window.IsWindowVisible() && !window.IsIconic()) << kept;
        EXPECT_GE(clientOf(window).Width(), 200) << kept;
        window.SendMessage(WM_CLOSE);
    }
}

TEST_F(ViewWindow, OpensAndClosesManyTimesWithoutGrowing)
{
    for (const char* garbage : {"", "8,1,-1", "%s%s", "8,9,9,9,9,9,99999999999,0,0,-5"})
        WriteProfileString("pavane-view", "WindowPos", garbage);
    std::size_t early = 0;
    for (int i = 0; i < 200; ++i) {
        {
            MainWindow window;
            open(window);
            window.PostMessage(WM_CLOSE);
            (void)RunMessages();
        }
#if defined(__SANITIZE_ADDRESS__)
        if (i == 40)
            early = __sanitizer_get_current_allocated_bytes();
#endif
    }
#if defined(__SANITIZE_ADDRESS__)
    EXPECT_LT(__sanitizer_get_current_allocated_bytes(), early + 100000);
#endif
    (void)early;
}

TEST_F(ViewWindow, PlaysWithColoursAndKeepsWhatIsNoMatterOfOneMap)
{
    ViewOptions options;
    std::string error;
    ASSERT_TRUE(parseOptions({"--range", "p:10,90", "--contrast", "2,0.4", path("map.fits")},
                             options, error));
    {
        MainWindow window;
        ASSERT_TRUE(window.Create(options));
        ASSERT_TRUE(window.OpenFirst(options));
        window.Show();
        AAxisWnd& view = window.view();
        view.UpdateWindow();
        const auto graph = [&]() -> AColorsGraph& { return *view.GetColorsGraph(); };
        EXPECT_GT(graph().scale().low(), -0.999);
        EXPECT_EQ(graph().GetColorPlay().contrast, 2);
        window.SendMessage(WM_COMMAND, idScale + 1);
        window.SendMessage(WM_COMMAND, idContours);  // changes nothing of the colours
        EXPECT_EQ(graph().scaleKind(), MapScaleKind::squareRoot);
        EXPECT_GT(graph().scale().low(), -0.999);
        view.ViewBack();  // the contours
        view.ViewBack();
        EXPECT_EQ(graph().scaleKind(), MapScaleKind::linear);
        view.ViewForward();
        view.ViewForward();
        const CPoint middle = view.GetPlot()->getGraphRect().CenterPoint();
        const auto send = [&](unsigned message, int right) {
            view.SendMessage(message, MK_RBUTTON, MAKELPARAM(middle.x + right, middle.y));
        };
        send(WM_RBUTTONDOWN, 0);
        send(WM_MOUSEMOVE, 40);
        send(WM_RBUTTONUP, 40);
        EXPECT_GT(graph().GetColorPlay().bias, 0.4);
        view.SendMessage(WM_KEYDOWN, 'P');
        writeMap("next.fits");
        ASSERT_TRUE(window.OpenMap(path("next.fits"), -1));
        EXPECT_LT(graph().scale().low(), -0.999);
        EXPECT_TRUE(graph().GetColorPlay().isNeutral());
        EXPECT_EQ(graph().scaleKind(), MapScaleKind::squareRoot);
        ASSERT_TRUE(LoadPalette("heat"));
        window.SendMessage(WM_CLOSE);
    }
    forgetQuit();
    LoadBuiltInPalette();
    MainWindow again;
    open(again);
    EXPECT_EQ(again.view().GetColorsGraph()->scaleKind(), MapScaleKind::squareRoot);
    EXPECT_EQ(baseNameOf(GetGlobalPaletteName()), "heat.pal");
    again.SendMessage(WM_CLOSE);
}

}  // namespace pavane
