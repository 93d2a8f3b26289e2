#pragma once

#include <functional>
#include <map>
#include <utility>
#include <vector>

namespace pavane
{

/// Whom a value tells of its changes, in the order in which they began to listen.
class Listeners
{
public:
    /// Calls `changed` at each `tell`, until `forget` with the number that this gives, above 0.
    int listen(std::function<void()> changed)
    {
        all_[++last_] = std::move(changed);
        return last_;
    }
    void forget(int listener) { all_.erase(listener); }
    /// Who is told may forget itself or others.
    void tell() const
    {
        std::vector<int> known;
        for (const auto& [number, changed] : all_)
            known.push_back(number);
        for (const int number : known)
            if (const auto found = all_.find(number); found != all_.end()) {
                const std::function<void()> changed = found->second;
                changed();
            }
    }

private:
    std::map<int, std::function<void()>> all_;
    int last_ = 0;
};

}  // namespace pavane
