#include "posix/StopFlag.h"

#include <utility>

namespace pavane
{

namespace
{

constexpr std::chrono::milliseconds betweenQuestions{20};

}  // namespace

void StopFlag::clear() noexcept
{
    stopped_.store(0);
    next_ = {};
}

void StopFlag::ask(std::function<int()> goesOn)
{
    ask_ = std::move(goesOn);
    next_ = {};
}

int StopFlag::hasAnsweredNo() const
{
    const auto now = std::chrono::steady_clock::now();
    if (asking_ || now < next_)
        return 0;
    asking_ = 1;
    const std::function<int()> question = ask_;  // whoever is asked may replace it
    if (!question())
        stopped_.store(1);
    asking_ = 0;
    next_ = std::chrono::steady_clock::now() + betweenQuestions;
    return stopped_.load();
}

}  // namespace pavane
