#include "apps/ms/Watch.h"

#include "apps/ms/Failure.h"

#include <algorithm>
#include <csignal>
#include <cstdio>

namespace pavane_ms
{

namespace
{

volatile std::sig_atomic_t isStopped = 0;

extern "C" void stopWork(int) { isStopped = 1; }

}  // namespace

void catchSignals()
{
    struct sigaction action = {};
    action.sa_handler = stopWork;
    action.sa_flags = static_cast<int>(SA_RESETHAND);
    for (const int each : {SIGINT, SIGTERM, SIGHUP})
        sigaction(each, &action, nullptr);
    // a file that grows beyond the limit is an error of its write, a reader that is gone none
    std::signal(SIGXFSZ, SIG_IGN);
    std::signal(SIGPIPE, SIG_IGN);
}

void Watch::step(std::uint64_t done)
{
    if (isStopped)
        throw Failure("stopped");
    const int percent = all_ == 0
                            ? 100
                            : static_cast<int>(100 * static_cast<double>(std::min(done, all_)) /
                                               static_cast<double>(all_));
    if (percent == shown_ || isSilent_)
        return;
    shown_ = percent;
    std::printf("%d %%\n", percent);
    std::fflush(stdout);
}

}  // namespace pavane_ms
