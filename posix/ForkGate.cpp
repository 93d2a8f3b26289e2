#include "posix/ForkGate.h"

#include <atomic>
#include <chrono>
#include <cstdint>
#include <pthread.h>
#include <thread>

namespace pavane
{

namespace
{

using std::chrono::microseconds;
using Clock = std::chrono::steady_clock;

/// How many are inside, and in the upper half how many wait to fork.
std::atomic<std::uint64_t> state = 0;
constexpr std::uint64_t oneFork = std::uint64_t{1} << 32;
std::atomic<int> isMidWork = 0;  ///< of the fork that goes on
std::atomic<int> isBroken = 0;   ///< of this process
std::atomic<int (*)()> preparation = nullptr;

constexpr microseconds pause{50};
/// What waits so long is taken for work within work, which the fork itself waits for.
constexpr microseconds patience{2000};
constexpr microseconds longestFork{700000};

std::uint64_t inside(std::uint64_t s) { return s % oneFork; }

void beforeFork()
{
    state.fetch_add(oneFork);
    const Clock::time_point end = Clock::now() + longestFork;
    while (inside(state.load()) > 0 && Clock::now() < end)
        std::this_thread::sleep_for(pause);
    int (*const prepare)() = preparation;
    isMidWork = inside(state.load()) > 0 || (prepare && !prepare());
}

void inParent()
{
    isMidWork = 0;
    state.fetch_sub(oneFork);
}

void inChild()
{
    if (isMidWork.exchange(0))
        isBroken = 1;
    state = 0;  // the other threads are not here
}

int listen()
{
    static const int isListening = pthread_atfork(beforeFork, inParent, inChild) == 0;
    return isListening;
}

}  // namespace

ForkGate::ForkGate()
{
    (void)listen();
    const Clock::time_point trusting = Clock::now() + patience;
    for (std::uint64_t s = state.load();;) {
        if (s < oneFork || (inside(s) > 0 && Clock::now() >= trusting)) {
            if (state.compare_exchange_weak(s, s + 1))
                return;
        } else {
            std::this_thread::sleep_for(pause);
            s = state.load();
        }
    }
}

ForkGate::~ForkGate()
{
    // nobody is inside in a copy that was made from inside
    for (std::uint64_t s = state.load(); inside(s) > 0;)
        if (state.compare_exchange_weak(s, s - 1))
            return;
}

int isForkedMidWork() { return isBroken.load(std::memory_order_relaxed); }

void setForkPreparation(int (*prepare)())
{
    (void)listen();
    preparation = prepare;
}

}  // namespace pavane
