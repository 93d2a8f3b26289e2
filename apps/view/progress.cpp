#include "apps/view/progress.h"

#include "tessel/rounding.h"

#include <cstdio>
#include <unistd.h>
#include <utility>

namespace pavane
{

ProgressLine::ProgressLine(std::string what)
    : what_(std::move(what)), start_(std::chrono::steady_clock::now()),
      terminal_(isatty(STDERR_FILENO))
{
}

ProgressLine::~ProgressLine()
{
    if (shownPercent_ >= 0)
        std::fputs("\r\033[K", stderr);
}

int ProgressLine::show(double fraction)
{
    if (!terminal_ || std::chrono::steady_clock::now() - start_ < std::chrono::seconds(1))
        return 1;
    const int percent = fraction >= 0 && fraction <= 1 ? truncated(fraction * 100) : 0;
    if (percent != shownPercent_)
        std::fprintf(stderr, "\r%s: %d %%", what_.c_str(), percent);
    shownPercent_ = percent;
    return 1;
}

}  // namespace pavane
