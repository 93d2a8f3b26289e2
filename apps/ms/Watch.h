#pragma once

#include <cstdint>

namespace pavane_ms
{

/// Makes SIGINT, SIGTERM and SIGHUP end the work at its next step; a second one ends it at once.
void catchSignals();

/// The part of the work that is done, as lines "37 %". Throws a Failure when a signal has come.
class Watch
{
public:
    explicit Watch(std::uint64_t all, int isSilent = 0) : all_(all), isSilent_(isSilent) {}
    void step(std::uint64_t done);

private:
    std::uint64_t all_;
    int isSilent_;
    int shown_ = -1;
};

}  // namespace pavane_ms
