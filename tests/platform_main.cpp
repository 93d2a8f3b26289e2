#include "platform/messages.h"
#include "platform/platform.h"

#include <gtest/gtest.h>

int main(int argc, char** argv)
{
    testing::InitGoogleTest(&argc, argv);
#ifdef PAVANE_TEST_WINDOWS
    constexpr auto use = pavane::PlatformUse::windows;
    pavane::SetMessageWatchdog(5000);  // a loop without an end fails its test instead
#else
    constexpr auto use = pavane::PlatformUse::pictures;
#endif
    if (!pavane::InitPlatform(argc, argv, use))
        return 1;
    const int result = RUN_ALL_TESTS();
    pavane::ShutdownPlatform();
    return result;
}
