#pragma once

#include "posix/api.h"

#include <atomic>
#include <chrono>
#include <functional>

namespace pavane
{

/// Ends long work early: drawing, contours, reading, masks and sums look at it every 50 ms or more
/// often. What is stopped says so and leaves what it was to change as it was.
///
/// Whoever starts the work owns the flag, which has to outlive it. `stop` may be called by any
/// thread and by a signal handler. The flag stays up until `clear`. One with a question (`ask`) is
/// for work in one thread at a time.
class PAVANE_API StopFlag
{
public:
    StopFlag() = default;
    StopFlag(const StopFlag&) = delete;
    StopFlag& operator=(const StopFlag&) = delete;

    void stop() noexcept { stopped_.store(1); }
    /// For the next piece of work; the question stays.
    void clear() noexcept;
    /// Non-zero after `stop`, or when `goesOn` has answered 0. Without a question it costs no more
    /// than reading a number.
    int isStopped() const { return stopped_.load() || (ask_ && hasAnsweredNo()); }
    /// From now on isStopped asks `goesOn`, in the thread that works and at most every 20 ms,
    /// whether the work goes on; 0 stops it. It may look at this flag again, and must
    /// neither throw nor draw or change what the work uses. An empty function asks nobody.
    void ask(std::function<int()> goesOn);

private:
    int hasAnsweredNo() const;

    mutable std::atomic<int> stopped_{0};
    std::function<int()> ask_;
    mutable std::chrono::steady_clock::time_point next_;
    mutable int asking_ = 0;
};

static_assert(std::atomic<int>::is_always_lock_free, "a signal handler may set it");

/// Non-zero when there is a flag and it is up.
inline int isStopped(const StopFlag* stop) { return stop && stop->isStopped(); }

}  // namespace pavane
