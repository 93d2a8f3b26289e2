// Work of pavane-view that lasts.
#include "apps/view/long_work.h"
#include "apps/view/picture_file.h"
#include "platform/CDC.h"
#include "platform/CWnd.h"
#include "platform/messages.h"
#include "tessel/paths.h"

#include <chrono>
#include <cstdio>
#include <gtest/gtest.h>
#include <thread>

namespace pavane
{

namespace
{

/// A frame that goes, and with it the dialog that keeps input from it: its job is to stop then.
struct LeavingFrame : CWnd {
    LeavingFrame()
    {
        (void)Create("Frame", "frame", WS_OVERLAPPEDWINDOW, CRect(0, 0, 300, 200), nullptr, 0);
        (void)ShowWindow(SW_SHOW);
        (void)SetTimer(1, 20);
    }
    void OnTimer(unsigned) override
    {
        if (!IsWindowEnabled())
            (void)DestroyWindow();
    }
};

int tellUntilTheEnd(const ProgressFunction& tell)
{
    const auto end = std::chrono::steady_clock::now() + std::chrono::seconds(20);
    int goesOn = 1;
    while ((goesOn = tell(0.5)) && std::chrono::steady_clock::now() < end)
        std::this_thread::sleep_for(std::chrono::milliseconds(2));
    return !goesOn;
}

}  // namespace

TEST(LongWork, KeepsWhatWasDoneAlthoughTheUserGaveUp)
{
    const struct {
        int isGivenUp, isDone, result;
    } rows[] = {{0, 1, 1}, {0, 0, 1}, {1, 0, 0}, {1, 1, 1}};
    for (const auto& row : rows) {
        LeavingFrame frame;
        const auto work = [&](const ProgressFunction& tell) {
            EXPECT_TRUE(tell(0.5) && tell(-1) && tell(0.2) && tell(7));
            if (row.isGivenUp) {
                EXPECT_TRUE(tellUntilTheEnd(tell));
                EXPECT_FALSE(tell(0.6));
            }
            return row.isDone;
        };
        EXPECT_EQ(doLongWork(&frame, "Working", work), row.result);
    }
}

TEST(PictureFile, IsWrittenWholeOrGivenUp)
{
    for (const char* const name : {"p.png", "p.pdf", "p.svg"})
        for (const int goesOn : {0, 1}) {
            const std::string file = testing::TempDir() + name;
            (void)std::remove(file.c_str());
            int asked = 0;
            const PictureJob job{"Title",
                                 900,
                                 700,
                                 2,
                                 [](CDC& dc, const CRect& rect) { dc.FillSolidRect(rect, 255); },
                                 [&] { return ++asked, goesOn; }};
            PictureFormat format = PictureFormat::png;
            std::string error;
            ASSERT_TRUE(pictureFormatOf(file, format));
            EXPECT_EQ(writePicture(file, format, job, error), goesOn) << error;
            EXPECT_GT(asked, 0) << name;
            EXPECT_EQ(IsFileExists(file), goesOn) << name;
        }
}

}  // namespace pavane
