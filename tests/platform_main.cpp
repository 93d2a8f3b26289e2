#include "platform/platform.h"

#include <gtest/gtest.h>

int main(int argc, char** argv)
{
    testing::InitGoogleTest(&argc, argv);
    if (!pavane::InitPlatform(argc, argv, pavane::PlatformUse::pictures))
        return 1;
    const int result = RUN_ALL_TESTS();
    pavane::ShutdownPlatform();
    return result;
}
