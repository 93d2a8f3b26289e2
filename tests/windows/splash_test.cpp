#include "pavane/windows/ASplash.h"
#include "pavane/windows/window_centre.h"
#include "platform/CDialog.h"
#include "platform/message_translator.h"
#include "platform/picture_file.h"
#include "platform/test_window.h"

#include <chrono>
#include <cstdlib>
#include <fstream>
#include <gtest/gtest.h>
#include <sstream>

using namespace pavane;

namespace
{

std::string fileIn(const char* name)
{
    return std::string(std::getenv("TEST_TMPDIR")) + "/" + name;
}

/// A picture of 40 x 20 pixels in one colour, twice as large with "@2x" in its name.
std::string pictureFile()
{
    for (const int k : {1, 2}) {
        CPicture picture(40 * k, 20 * k);
        picture.dc()->FillSolidRect({0, 0, 40 * k, 20 * k}, RGB(0, 100 * k, 0));
        CString error;
        EXPECT_TRUE(SavePNG(picture, fileIn(k == 1 ? "splash.png" : "splash@2x.png"), error));
    }
    return fileIn("splash.png");
}

/// One frame of one pixel.
std::string clipFile()
{
    std::ofstream(fileIn("clip.gif"), std::ios::binary)
        << std::string("GIF89a\1\0\1\0\x80\0\0\xFF\0\0\0\0\xFF,\0\0\0\0\1\0\1\0\0\2\2D\1\0;", 35);
    return fileIn("clip.gif");
}

/// Tests look for the splash among all windows: a handle that did not exist before.
CWnd* splash()
{
    for (HWND hwnd = 1; hwnd < 10'000; ++hwnd)
        if (auto* const found = dynamic_cast<ASplash*>(CWnd::FromHandle(hwnd)))
            return found;
    return nullptr;
}

/// Hands messages out for so long, or until the splash is gone; 1 when it is.
int runUntilGone(int milliseconds)
{
    const auto end = std::chrono::steady_clock::now() + std::chrono::milliseconds(milliseconds);
    while (splash() && std::chrono::steady_clock::now() < end)
        settle();
    return !splash();
}

int offer(unsigned kind)
{
    MSG message;
    message.message = kind;
    return ASplash::PreTranslateAppMessage(&message);
}

}  // namespace

TEST(Splash, ShowsOnePictureAtATimeInTheMiddleOfItsParent)
{
    TestWindow frame(nullptr, WS_VISIBLE, {100, 100, 300, 200});
    ASplash::EnableSplashScreen(0);
    ASplash::ShowSplashScreen(pictureFile(), 0, &frame);
    EXPECT_FALSE(splash());
    ASplash::EnableSplashScreen(1);
    ASplash::ShowSplashScreen(pictureFile(), 0, &frame);
    const CWnd* const first = splash();
    ASSERT_TRUE(first);
    CRect rect;
    first->GetWindowRect(rect);
    EXPECT_EQ(rect, CRect(180, 140, 220, 160));
    EXPECT_TRUE(first->IsWindowVisible());
    CClientDC dc(splash());
    EXPECT_EQ(dc.GetPixel(39, 19), RGB(0, first->GetPixelRatio() == 1 ? 100 : 200, 0));
    ASplash::ShowSplashScreen(clipFile(), 1, &frame);
    EXPECT_EQ(splash(), first);
    ASplash::CloseSplashScreen();
    EXPECT_FALSE(splash());
    ASplash::CloseSplashScreen();
}

TEST(Splash, GoesByItselfAndWithItsParent)
{
    ASplash::EnableSplashScreen(1);
    auto frame = std::make_unique<TestWindow>(nullptr, WS_VISIBLE);
    ASplash::ShowSplashScreen(pictureFile(), 0, frame.get());
    ASSERT_TRUE(splash());
    EXPECT_FALSE(runUntilGone(1500));
    EXPECT_TRUE(runUntilGone(20'000));
    ASplash::ShowSplashScreen(clipFile(), 1, nullptr);
    ASSERT_TRUE(splash());
    EXPECT_FALSE(runUntilGone(500));
    EXPECT_TRUE(runUntilGone(20'000));
    ASplash::ShowSplashScreen(pictureFile(), 0, frame.get());
    ASSERT_TRUE(splash());
    frame.reset();
    EXPECT_FALSE(splash());
}

TEST(Splash, LeavesNothingBehindWhenItCannotBeShown)
{
    ASplash::EnableSplashScreen(1);
    std::ofstream(fileIn("no-frames.gif"), std::ios::binary)
        << std::string("GIF89a\1\0\1\0\0\0\0;", 14);
    std::stringstream whole;
    whole << std::ifstream(pictureFile(), std::ios::binary).rdbuf();
    std::ofstream(fileIn("cut.png"), std::ios::binary)
        << whole.str().substr(0, whole.str().size() * 2 / 3);
    std::ofstream(fileIn("wide.bmp"), std::ios::binary)  // 100 000 x 1
        << std::string("BM\x16\x94\4\0\0\0\0\0\x36\0\0\0\x28\0\0\0\xA0\x86\1\0\1\0\0\0\1\0\x18\0",
                       30)
        << std::string(24 + 300'000, '\0');
    for (const int mode : {0, 1}) {
        for (const std::string& file :
             {std::string(), fileIn("missing.png"), fileIn("no-frames.gif"), fileIn("cut.png"),
              fileIn("wide.bmp"), std::string("/tmp")}) {
            ASplash::ShowSplashScreen(file, mode, nullptr);
            EXPECT_FALSE(splash()) << file << mode;
            EXPECT_EQ(offer(WM_KEYDOWN), 0) << file << mode;
        }
    }
}

TEST(Splash, TakesKeysAndPressesAndNothingElse)
{
    ASplash::EnableSplashScreen(1);
    EXPECT_EQ(ASplash::PreTranslateAppMessage(nullptr), 0);
    for (const unsigned kind :
         {WM_KEYDOWN, WM_SYSKEYDOWN, WM_LBUTTONDOWN, WM_RBUTTONDOWN, WM_MBUTTONDOWN,
          WM_NCLBUTTONDOWN, WM_NCRBUTTONDOWN, WM_NCMBUTTONDOWN}) {
        EXPECT_EQ(offer(kind), 0) << kind;
        ASplash::ShowSplashScreen(pictureFile(), 0, nullptr);
        for (const unsigned other : {WM_MOUSEMOVE, WM_LBUTTONUP, WM_KEYUP, WM_CHAR, WM_COMMAND})
            EXPECT_EQ(offer(other), 0) << other;
        ASSERT_TRUE(splash()) << kind;
        EXPECT_EQ(offer(kind), 1) << kind;
        EXPECT_FALSE(splash()) << kind;
    }
}

TEST(WindowCentre, StaysOnTheScreenThatHoldsTheMiddle)
{
    const std::vector<CRect> screens = {{0, 0, 1000, 800}, {1000, 0, 1600, 600}};
    const auto centred = [&](const CRect& about, int width = 100) {
        return centredRect({width, 50}, about, screens);
    };
    EXPECT_EQ(centred({}), CRect(450, 375, 550, 425));
    EXPECT_EQ(centred({1100, 100, 1300, 200}), CRect(1150, 125, 1250, 175));
    EXPECT_EQ(centred({1580, 580, 1590, 590}), CRect(1500, 550, 1600, 600));
    EXPECT_EQ(centred({0, 0, 20, 20}, 2000), CRect(0, 0, 2000, 50));
    EXPECT_EQ(centredRect({10, 10}, {}, {}), CRect(0, 0, 10, 10));
}
