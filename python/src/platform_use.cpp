#include "python/src/platform_use.h"

#include "platform/message.h"
#include "platform/platform.h"
#include "python/src/bind.h"
#include "python/src/run.h"

#include <atomic>
#include <chrono>
#include <mutex>
#include <pthread.h>
#include <shared_mutex>
#include <stdexcept>
#include <unistd.h>
#include <utility>

namespace pavane::python
{

namespace
{

// held by those who draw, alone by who lets go
std::shared_timed_mutex running;
std::mutex starting;
std::mutex telling;
std::vector<CString> messages;

int keepMessage(const CString& text, unsigned)
{
    const std::lock_guard<std::mutex> lock(telling);
    messages.push_back(text);
    return IDOK;
}

constexpr std::chrono::seconds patience{10};

void release()
{
    const Unlocked unlocked;
    const std::unique_lock<std::shared_timed_mutex> alone(running, patience);
    if (!alone.owns_lock())
        throw std::runtime_error("figures are being drawn in other threads");
    ShutdownPlatform();
}

// nobody but the thread that ends the process draws any more
std::atomic<int> isEnding{0};

/// What others draw when the interpreter ends is waited for: the toolkit goes soon.
void endDrawing()
{
    isEnding = 1;
    const Unlocked unlocked;
    (void)running.try_lock_for(std::chrono::seconds(2));
}

/// Without waiting: 0 while somebody draws.
int releaseIdle()
{
    const std::unique_lock<std::shared_timed_mutex> alone(running, std::try_to_lock);
    if (alone.owns_lock())
        ShutdownPlatform();
    return alone.owns_lock();
}

// A fork waits until nobody starts the platform or tells a message, so that the child can.
void beforeFork()
{
    starting.lock();
    telling.lock();
}

void afterFork()
{
    telling.unlock();
    starting.unlock();
}

}  // namespace

RunningPlatform::RunningPlatform() : isHeld_(!isEnding || !isFirstThread())
{
    while (isHeld_ && isEnding)
        (void)pause();
    if (isHeld_)
        running.lock_shared();
    static char name[] = "python";
    static char* arguments[] = {name, nullptr};
    const std::lock_guard<std::mutex> lock(starting);
    (void)SetMessageFunction(&keepMessage);
    if (!InitPlatform(1, arguments, PlatformUse::pictures, fault_) && fault_.empty())
        fault_ = "the platform cannot be started";
}

RunningPlatform::~RunningPlatform()
{
    if (isHeld_)
        running.unlock_shared();
}

std::vector<CString> takeMessages()
{
    const std::lock_guard<std::mutex> lock(telling);
    return std::exchange(messages, {});
}

void bindPlatform(py::module_& m)
{
    (void)pthread_atfork(&beforeFork, &afterFork, &afterFork);
    py::module_::import("atexit").attr("register")(py::cpp_function(&endDrawing));
    m.def("release", &release,
          "Lets go of the window system, so that a program can make its own application object. "
          "Pictures stay, and drawing starts again by itself.\n\n"
          ">>> release()");
    m.def("release_idle", [] { return releaseIdle() != 0; });
}

}  // namespace pavane::python
