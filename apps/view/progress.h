#pragma once

#include <chrono>
#include <string>

namespace pavane
{

/// Progress on standard error for work that takes over a second, and only on a terminal: one line
/// that is written over and wiped away at the end.
class ProgressLine
{
public:
    explicit ProgressLine(std::string what);
    ProgressLine(const ProgressLine&) = delete;
    ProgressLine& operator=(const ProgressLine&) = delete;
    ~ProgressLine();
    /// Fraction done, 0 to 1. Returns 1: the work goes on.
    int show(double fraction);

private:
    std::string what_;
    std::chrono::steady_clock::time_point start_;
    int terminal_;
    int shownPercent_ = -1;
};

}  // namespace pavane
