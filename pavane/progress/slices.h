#pragma once

#include <chrono>

namespace pavane
{

/// A slice of long work in the user's thread: calls `piece`, which does a little of it and answers
/// whether more remains, for about so long and at least `least` times. Non-zero while more
/// remains.
template <class Piece>
int runSlice(std::chrono::milliseconds time, const Piece& piece, int least = 1)
{
    using Clock = std::chrono::steady_clock;
    // all of it, for who does not know how long that is
    const bool isEndless = time == std::chrono::milliseconds::max();
    const auto end = isEndless ? Clock::time_point::max() : Clock::now() + time;
    for (;; --least) {
        if (!piece())
            return 0;
        if (least <= 1 && Clock::now() >= end)
            return 1;
    }
}

}  // namespace pavane
