#include "pavane/axes/axis_settings.h"
#include "platform/message.h"
#include "platform/platform.h"
#include "threads/drawn_figure.h"

#include <array>
#include <atomic>
#include <thread>

namespace pavane
{

// Each thread has its own size, fonts, palette and page, while another sets what the module has for
// those that come later. Whoever looks at somebody else's draws other pixels.
TEST(Threads, EightDrawFiguresAsOneAfterTheOther)
{
    constexpr int count = 8;
    char name[] = "test";
    char* arguments[] = {name, nullptr};
    LoadBuiltInPalette();
    std::array<DrawnFigure, count> alone;
    for (int i = 0; i < count; ++i)
        alone[static_cast<std::size_t>(i)] = drawnFigure(i);
    for (int round = 0; round < timesOf(1); ++round) {
        // fonts that are there already would hide what happens when two threads make the same
        ShutdownPlatform();
        ASSERT_TRUE(InitPlatform(1, arguments, PlatformUse::pictures));
        std::array<DrawnFigure, count> together;
        std::atomic<int> left = count;
        std::vector<std::thread> threads;
        for (int i = 0; i < count; ++i)
            threads.emplace_back([&, i] {
                together[static_cast<std::size_t>(i)] = drawnFigure(i);
                --left;
            });
        while (left > 0) {
            SetPartCrossHeight(3 + left);
            (void)SetMessageFunction([](const CString&, unsigned) { return IDOK; });
            (void)PaletteNames();
            (void)LoadBuiltInPalette();
            std::this_thread::sleep_for(std::chrono::milliseconds(2));
        }
        for (std::thread& thread : threads)
            thread.join();
        SetPartCrossHeight(AxisParts().cross);
        (void)SetMessageFunction(nullptr);
        for (std::size_t i = 0; i < count; ++i)
            EXPECT_TRUE(together[i] == alone[i]) << i;
    }
}

}  // namespace pavane
