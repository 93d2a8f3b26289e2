#include "posix/ForkGate.h"
#include "threads/drawn_figure.h"

#include <atomic>
#include <csignal>
#include <cstdio>
#include <map>
#include <sys/wait.h>
#include <thread>
#include <unistd.h>

namespace pavane
{

namespace
{

enum Ending { drawnRight, saidWhy, drawnWrong, saidNothing, hung, died };

/// What a copy of this process makes of a figure.
[[noreturn]] void drawInChild(const DrawnFigure& expected)
{
    CString why;
    if (!CPicture::CanDrawText(&why))
        _exit(why.find("spawn") != CString::npos ? saidWhy : saidNothing);
    _exit(drawnFigure(3) == expected ? drawnRight : drawnWrong);
}

Ending endOf(pid_t child, std::chrono::milliseconds longest)
{
    int status = 0;
    constexpr std::chrono::milliseconds pause{1};
    for (std::chrono::milliseconds waited{0}; waited < longest; waited += pause) {
        if (waitpid(child, &status, WNOHANG) == child)
            return WIFEXITED(status) ? static_cast<Ending>(WEXITSTATUS(status)) : died;
        std::this_thread::sleep_for(pause);
    }
    (void)kill(child, SIGKILL);
    (void)waitpid(child, &status, 0);
    return hung;
}

}  // namespace

// A copy has one thread, and every lock that another held stays locked in it.
TEST(Forks, EndInTheRightPictureOrSayWhyNot)
{
    const DrawnFigure expected = drawnFigure(3);
    std::atomic<int> stop = 0;
    std::thread sibling([&] {
        for (int i = 0; !stop; ++i)
            (void)drawnFigure(i % 8);
    });
    std::map<Ending, int> endings;
    const int times = timesOf(hasUnforkableMalloc() ? 5 : 60);
    for (int i = 0; i < times; ++i) {
        const pid_t child = fork();
        ASSERT_GE(child, 0);
        if (child == 0)
            drawInChild(expected);
        // a fresh figure takes long where every access is checked
        ++endings[endOf(child, std::chrono::milliseconds(hasUnforkableMalloc() ? 4000 : 20000))];
        std::this_thread::sleep_for(std::chrono::microseconds(137 * (i % 16)));
    }
    stop = 1;
    sibling.join();
    std::printf("%d forks: %d drew, %d said why, %d hung\n", times, endings[drawnRight],
                endings[saidWhy], endings[hung]);
    const int hangs = hasUnforkableMalloc() ? endings[hung] : 0;
    EXPECT_EQ(endings[drawnRight] + endings[saidWhy] + hangs, times);
    EXPECT_GT(endings[drawnRight] + hangs, times / 2);
}

TEST(Forks, InTheMiddleOfWorkAreToldInTheChildAndHoldNobodyUp)
{
    std::atomic<int> isInside = 0;
    std::atomic<int> stop = 0;
    std::thread worker([&] {
        const ForkGate gate;
        isInside = 1;
        while (!stop)
            std::this_thread::sleep_for(std::chrono::milliseconds(1));
    });
    while (!isInside)
        std::this_thread::yield();
    const DrawnFigure expected;
    const pid_t child = fork();
    ASSERT_GE(child, 0);
    if (child == 0)
        drawInChild(expected);
    EXPECT_EQ(endOf(child, std::chrono::milliseconds(1000)), saidWhy);
    EXPECT_FALSE(isForkedMidWork());
    {
        const ForkGate next;
    }
    stop = 1;
    worker.join();
}

}  // namespace pavane
