#pragma once

#include <cstddef>
#include <cstdint>
#include <unordered_map>
#include <vector>

namespace pavane
{

/// How often each step between successive times occurs, in microseconds.
class TimeSteps
{
public:
    /// Steps of 0 or less, or of a year and more, are left out; so are new ones when there are too
    /// many different ones.
    void add(double seconds);
    /// Seconds of the commonest step, of those that are as common the shortest; 0 without any.
    /// Steps as near to each other as stored dates jitter count as one: their mean, rounded as
    /// coarsely as they jitter.
    double commonest() const;

private:
    std::unordered_map<std::int64_t, std::int64_t> counts_;
};

}  // namespace pavane
